#include "dialog/panels/SpiralQtWrapper.h"

#include <QSignalBlocker>

#include "ui_CommonWidget.h"

namespace gritwell {

namespace {
// The line width runs 0..1 of the line spacing on a 0..100 slider; at 1 the
// lines fill the whole spacing, so nothing wider means anything.
constexpr SliderScale kHundredths(100);
}  // namespace

SpiralQtWrapper::SpiralQtWrapper(SpiralTexture3D* texture, ImageArea* imageArea, Ui_SpiralWidget* ui, QWidget* page,
                                 QObject* parent)
    : QtWrapperBase(texture, imageArea, page, parent), ui_(ui), texture_(texture) {
    connect(commonUi_->newInteractiveUpdate, &QPushButton::toggled, this, &SpiralQtWrapper::interactiveUpdateToggled);
    connect(ui_->stripeWidth, &QSlider::valueChanged, this, &SpiralQtWrapper::stripeWidthChanged);
    connect(ui_->spiralRate, &QDoubleSpinBox::valueChanged, this, &SpiralQtWrapper::spiralRateChanged);
    addValueBoxes(kHundredths, {ui_->stripeWidth});
    describeControls();
}

void SpiralQtWrapper::updateUI() {
    {
        // Show the record without writing rounded control values back into it.
        const QSignalBlocker b0(ui_->spiralRate);
        loadSlider(ui_->stripeWidth, texture_->getStripeWidth());
        ui_->spiralRate->setValue(texture_->getSpiralRate());
    }
    const bool interactive = texture_->interactiveUpdate();
    commonUi_->newInteractiveUpdate->setChecked(interactive);
    setInteractivity(interactive);
}

void SpiralQtWrapper::setInteractivity(bool on) {
    ui_->stripeWidth->setTracking(on);
    ui_->spiralRate->setKeyboardTracking(on);
}

void SpiralQtWrapper::interactiveUpdateToggled(bool on) {
    texture_->setInteractiveUpdate(on);
    setInteractivity(on);
    redraw();
}

void SpiralQtWrapper::stripeWidthChanged(int value) {
    texture_->setStripeWidth(kHundredths.word(value));
    redraw();
}

void SpiralQtWrapper::spiralRateChanged(double value) {
    texture_->setSpiralRate(static_cast<float>(value));
    redraw();
}

}  // namespace gritwell
