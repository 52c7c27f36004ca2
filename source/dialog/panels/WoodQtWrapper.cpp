#include "dialog/panels/WoodQtWrapper.h"

#include <QSignalBlocker>

#include "core/FloatToInt.h"
#include "ui_CommonWidget.h"

namespace gritwell {

namespace {
// Hundredths: colours and amplitude run 0..100 for 0..1, the frequency
// slider 0..1000 for 0..10.
constexpr float kSliderUnits = 100.0f;

int toSlider(float value) { return truncToInt(static_cast<double>(value * kSliderUnits)); }
float fromSlider(int value) { return static_cast<float>(value) / kSliderUnits; }
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
}

void WoodQtWrapper::updateUI() {
    {
        // Show the record without writing rounded control values back into
        // it: a stored ring scale of 6.7 shows as 6 and stays 6.7.
        const QSignalBlocker b0(ui_->ringScale), b1(ui_->octaves), b2(ui_->frequency), b3(ui_->amplitude),
            b4(ui_->darkColor), b5(ui_->lightColor);
        ui_->ringScale->setValue(texture_->ringScale());
        ui_->octaves->setValue(texture_->octaves());
        ui_->frequency->setValue(toSlider(texture_->frequency()));
        ui_->amplitude->setValue(toSlider(texture_->amplitude()));
        ui_->darkColor->setValue(toSlider(texture_->darkColor()));
        ui_->lightColor->setValue(toSlider(texture_->lightColor()));
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
    texture_->setFrequency(fromSlider(value));
    redraw();
}

void WoodQtWrapper::amplitudeChanged(int value) {
    texture_->setAmplitude(fromSlider(value));
    redraw();
}

void WoodQtWrapper::darkColorChanged(int value) {
    texture_->setDarkColor(fromSlider(value));
    redraw();
}

void WoodQtWrapper::lightColorChanged(int value) {
    texture_->setLightColor(fromSlider(value));
    redraw();
}

}  // namespace gritwell
