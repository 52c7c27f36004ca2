#include "dialog/panels/CamouflageQtWrapper.h"

#include <QSignalBlocker>

#include "core/FloatToInt.h"
#include "ui_CommonWidget.h"

namespace gritwell {

namespace {
// Threshold and base colour run 0..1 on 0..100 sliders; a threshold of 1 is
// already above any noise magnitude, so the slider's end leaves the base bare.
constexpr float kSliderUnits = 100.0f;

int toSlider(float value) { return truncToInt(static_cast<double>(value * kSliderUnits)); }
float fromSlider(int value) { return static_cast<float>(value) / kSliderUnits; }
}  // namespace

CamouflageQtWrapper::CamouflageQtWrapper(CamouflageTexture3D* texture, ImageArea* imageArea, Ui_CamouflageWidget* ui,
                                         QWidget* page, QObject* parent)
    : QtWrapperBase(texture, imageArea, page, parent), ui_(ui), texture_(texture) {
    connect(commonUi_->newInteractiveUpdate, &QPushButton::toggled, this,
            &CamouflageQtWrapper::interactiveUpdateToggled);
    connect(ui_->frequency, &QDoubleSpinBox::valueChanged, this, &CamouflageQtWrapper::frequencyChanged);
    connect(ui_->threshold, &QSlider::valueChanged, this, &CamouflageQtWrapper::thresholdChanged);
    connect(ui_->baseColor, &QSlider::valueChanged, this, &CamouflageQtWrapper::baseColorChanged);
}

void CamouflageQtWrapper::updateUI() {
    {
        // Show the record without writing rounded control values back into it.
        const QSignalBlocker b0(ui_->frequency), b1(ui_->threshold), b2(ui_->baseColor);
        ui_->frequency->setValue(texture_->getFrequency());
        ui_->threshold->setValue(toSlider(texture_->getThreshold()));
        ui_->baseColor->setValue(toSlider(texture_->getBaseColor()));
    }
    const bool interactive = texture_->interactiveUpdate();
    commonUi_->newInteractiveUpdate->setChecked(interactive);
    setInteractivity(interactive);
}

void CamouflageQtWrapper::setInteractivity(bool on) {
    ui_->frequency->setKeyboardTracking(on);
    for (QSlider* slider : {ui_->threshold, ui_->baseColor}) slider->setTracking(on);
}

void CamouflageQtWrapper::interactiveUpdateToggled(bool on) {
    texture_->setInteractiveUpdate(on);
    setInteractivity(on);
    redraw();
}

void CamouflageQtWrapper::frequencyChanged(double value) {
    texture_->setFrequency(static_cast<float>(value));
    redraw();
}

void CamouflageQtWrapper::thresholdChanged(int value) {
    texture_->setThreshold(fromSlider(value));
    redraw();
}

void CamouflageQtWrapper::baseColorChanged(int value) {
    texture_->setBaseColor(fromSlider(value));
    redraw();
}

}  // namespace gritwell
