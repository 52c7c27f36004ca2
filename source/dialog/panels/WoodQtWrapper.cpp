#include "dialog/panels/WoodQtWrapper.h"

#include <QSignalBlocker>

#include "ui_CommonWidget.h"

namespace gritwell {

namespace {
// Hundredths: colours and amplitude run 0..100 for 0..1, the frequency
// slider 0..1000 for 0..10.
constexpr SliderScale kHundredths(100);
}  // namespace

WoodQtWrapper::WoodQtWrapper(WoodTexture3D* texture, ImageArea* imageArea, Ui_WoodWidget* ui, QWidget* page,
                             QObject* parent)
    : QtWrapperBase(texture, imageArea, page, parent), ui_(ui), texture_(texture) {
    connect(commonUi_->newInteractiveUpdate, &QPushButton::toggled, this, &WoodQtWrapper::interactiveUpdateToggled);
    connect(ui_->ringScale, &QDoubleSpinBox::valueChanged, this, &WoodQtWrapper::ringScaleChanged);
    connect(ui_->octaves, &QSpinBox::valueChanged, this, &WoodQtWrapper::octavesChanged);
    connect(ui_->frequency, &QSlider::valueChanged, this, &WoodQtWrapper::frequencyChanged);
    connect(ui_->amplitude, &QSlider::valueChanged, this, &WoodQtWrapper::amplitudeChanged);
    connect(ui_->darkColor, &QSlider::valueChanged, this, &WoodQtWrapper::darkColorChanged);
    connect(ui_->lightColor, &QSlider::valueChanged, this, &WoodQtWrapper::lightColorChanged);
    addValueBoxes(kHundredths, {ui_->frequency, ui_->amplitude, ui_->darkColor, ui_->lightColor});
    describeControls();
}

void WoodQtWrapper::updateUI() {
    {
        // Show the record without writing rounded control values back into
        // it: a stored ring scale of 6.7 shows as 6 and stays 6.7.
        const QSignalBlocker b0(ui_->ringScale), b1(ui_->octaves);
        ui_->ringScale->setValue(texture_->ringScale());
        ui_->octaves->setValue(texture_->octaves());
        loadSlider(ui_->frequency, texture_->frequency());
        loadSlider(ui_->amplitude, texture_->amplitude());
        loadSlider(ui_->darkColor, texture_->darkColor());
        loadSlider(ui_->lightColor, texture_->lightColor());
    }
    const bool interactive = texture_->interactiveUpdate();
    commonUi_->newInteractiveUpdate->setChecked(interactive);
    setInteractivity(interactive);
}

void WoodQtWrapper::setInteractivity(bool on) {
    ui_->ringScale->setKeyboardTracking(on);
    ui_->octaves->setKeyboardTracking(on);
    for (QSlider* slider : {ui_->frequency, ui_->amplitude, ui_->darkColor, ui_->lightColor}) slider->setTracking(on);
}

void WoodQtWrapper::interactiveUpdateToggled(bool on) {
    texture_->setInteractiveUpdate(on);
    setInteractivity(on);
    redraw();
}

void WoodQtWrapper::ringScaleChanged(double value) {
    texture_->setRingScale(static_cast<float>(value));
    redraw();
}

void WoodQtWrapper::octavesChanged(int value) {
    texture_->setOctaves(value);
    redraw();
}

void WoodQtWrapper::frequencyChanged(int value) {
    texture_->setFrequency(kHundredths.word(value));
    redraw();
}

void WoodQtWrapper::amplitudeChanged(int value) {
    texture_->setAmplitude(kHundredths.word(value));
    redraw();
}

void WoodQtWrapper::darkColorChanged(int value) {
    texture_->setDarkColor(kHundredths.word(value));
    redraw();
}

void WoodQtWrapper::lightColorChanged(int value) {
    texture_->setLightColor(kHundredths.word(value));
    redraw();
}

}  // namespace gritwell
