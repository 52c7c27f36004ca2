#include "dialog/panels/CamouflageQtWrapper.h"

#include <QSignalBlocker>

#include "ui_CommonWidget.h"

namespace gritwell {

namespace {
// Threshold and base colour run 0..1 on 0..100 sliders; a threshold of 1 is
// already above any noise magnitude, so the slider's end leaves the base bare.
constexpr SliderScale kHundredths(100);
}  // namespace

CamouflageQtWrapper::CamouflageQtWrapper(CamouflageTexture3D* texture, ImageArea* imageArea, Ui_CamouflageWidget* ui,
                                         QWidget* page, QObject* parent)
    : QtWrapperBase(texture, imageArea, page, parent), ui_(ui), texture_(texture) {
    connect(commonUi_->newInteractiveUpdate, &QPushButton::toggled, this,
            &CamouflageQtWrapper::interactiveUpdateToggled);
    connect(ui_->frequency, &QDoubleSpinBox::valueChanged, this, &CamouflageQtWrapper::frequencyChanged);
    connect(ui_->threshold, &QSlider::valueChanged, this, &CamouflageQtWrapper::thresholdChanged);
    connect(ui_->baseColor, &QSlider::valueChanged, this, &CamouflageQtWrapper::baseColorChanged);
    addValueBoxes(kHundredths, {ui_->threshold, ui_->baseColor});
    describeControls();
}

void CamouflageQtWrapper::updateUI() {
    {
        // Show the record without writing rounded control values back into it.
        const QSignalBlocker b0(ui_->frequency);
        ui_->frequency->setValue(texture_->getFrequency());
        loadSlider(ui_->threshold, texture_->getThreshold());
        loadSlider(ui_->baseColor, texture_->getBaseColor());
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
    texture_->setThreshold(kHundredths.word(value));
    redraw();
}

void CamouflageQtWrapper::baseColorChanged(int value) {
    texture_->setBaseColor(kHundredths.word(value));
    redraw();
}

}  // namespace gritwell
