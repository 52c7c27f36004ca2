#include "dialog/panels/PerlinQtWrapper.h"

#include <QSignalBlocker>

#include "core/FloatToInt.h"
#include "ui_CommonWidget.h"

namespace gritwell {

namespace {
// Hundredths: the frequency slider runs 0..1600 for 0..16, the amplitude
// slider 0..400 for 0..4, beyond which the sum only clips harder.
constexpr float kSliderUnits = 100.0f;

int toSlider(float value) { return truncToInt(static_cast<double>(value * kSliderUnits)); }
float fromSlider(int value) { return static_cast<float>(value) / kSliderUnits; }
}  // namespace

PerlinQtWrapper::PerlinQtWrapper(PerlinTexture3D* texture, ImageArea* imageArea, Ui_PerlinWidget* ui, QWidget* page,
                                 QObject* parent)
    : QtWrapperBase(texture, imageArea, page, parent), ui_(ui), texture_(texture) {
    connect(commonUi_->newInteractiveUpdate, &QPushButton::toggled, this, &PerlinQtWrapper::interactiveUpdateToggled);
    connect(ui_->octaves, &QSpinBox::valueChanged, this, &PerlinQtWrapper::octavesChanged);
    connect(ui_->frequency, &QSlider::valueChanged, this, &PerlinQtWrapper::frequencyChanged);
    connect(ui_->amplitude, &QSlider::valueChanged, this, &PerlinQtWrapper::amplitudeChanged);
}

void PerlinQtWrapper::updateUI() {
    {
        // Show the record without writing rounded control values back into it.
        const QSignalBlocker b0(ui_->octaves), b1(ui_->frequency), b2(ui_->amplitude);
        ui_->octaves->setValue(texture_->octaves());
        ui_->frequency->setValue(toSlider(texture_->frequency()));
        ui_->amplitude->setValue(toSlider(texture_->amplitude()));
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
    texture_->setFrequency(fromSlider(value));
    redraw();
}

void PerlinQtWrapper::amplitudeChanged(int value) {
    texture_->setAmplitude(fromSlider(value));
    redraw();
}

}  // namespace gritwell
