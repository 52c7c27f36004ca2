#include "dialog/panels/PerlinQtWrapper.h"

#include <QSignalBlocker>

#include "ui_CommonWidget.h"

namespace gritwell {

namespace {
// Hundredths: the frequency slider runs 0..1600 for 0..16, the amplitude
// slider 0..400 for 0..4, beyond which the sum only clips harder.
constexpr SliderScale kHundredths(100);
}  // namespace

PerlinQtWrapper::PerlinQtWrapper(PerlinTexture3D* texture, ImageArea* imageArea, Ui_PerlinWidget* ui, QWidget* page,
                                 QObject* parent)
    : QtWrapperBase(texture, imageArea, page, parent), ui_(ui), texture_(texture) {
    connect(commonUi_->newInteractiveUpdate, &QPushButton::toggled, this, &PerlinQtWrapper::interactiveUpdateToggled);
    connect(ui_->octaves, &QSpinBox::valueChanged, this, &PerlinQtWrapper::octavesChanged);
    connect(ui_->frequency, &QSlider::valueChanged, this, &PerlinQtWrapper::frequencyChanged);
    connect(ui_->amplitude, &QSlider::valueChanged, this, &PerlinQtWrapper::amplitudeChanged);
    addValueBoxes(kHundredths, {ui_->frequency, ui_->amplitude});
    describeControls();
}

void PerlinQtWrapper::updateUI() {
    {
        // Show the record without writing rounded control values back into it.
        const QSignalBlocker b0(ui_->octaves);
        ui_->octaves->setValue(texture_->octaves());
        loadSlider(ui_->frequency, texture_->frequency());
        loadSlider(ui_->amplitude, texture_->amplitude());
    }
    const bool interactive = texture_->interactiveUpdate();
    commonUi_->newInteractiveUpdate->setChecked(interactive);
    setInteractivity(interactive);
}

void PerlinQtWrapper::setInteractivity(bool on) {
    ui_->octaves->setKeyboardTracking(on);
    ui_->frequency->setTracking(on);
    ui_->amplitude->setTracking(on);
}

void PerlinQtWrapper::interactiveUpdateToggled(bool on) {
    texture_->setInteractiveUpdate(on);
    setInteractivity(on);
    redraw();
}

void PerlinQtWrapper::octavesChanged(int value) {
    texture_->setOctaves(value);
    redraw();
}

void PerlinQtWrapper::frequencyChanged(int value) {
    texture_->setFrequency(kHundredths.word(value));
    redraw();
}

void PerlinQtWrapper::amplitudeChanged(int value) {
    texture_->setAmplitude(kHundredths.word(value));
    redraw();
}

}  // namespace gritwell
