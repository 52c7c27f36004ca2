#include "dialog/panels/SpheresQtWrapper.h"

#include <QSignalBlocker>

#include "ui_CommonWidget.h"

namespace gritwell {

namespace {
// Size and hollowness run 0..100 for 0..1: a radius of 1 already fills the
// cell, and hollowness is a fraction of the radius.
constexpr SliderScale kHundredths(100);
}  // namespace

SpheresQtWrapper::SpheresQtWrapper(SpheresTexture3D* texture, ImageArea* imageArea, Ui_SpheresWidget* ui,
                                   QWidget* page, QObject* parent)
    : QtWrapperBase(texture, imageArea, page, parent), ui_(ui), texture_(texture) {
    connect(commonUi_->newInteractiveUpdate, &QPushButton::toggled, this, &SpheresQtWrapper::interactiveUpdateToggled);
    connect(ui_->sphereSize, &QSlider::valueChanged, this, &SpheresQtWrapper::sphereSizeChanged);
    connect(ui_->staggered, &QPushButton::toggled, this, &SpheresQtWrapper::staggeredToggled);
    connect(ui_->hollowness, &QSlider::valueChanged, this, &SpheresQtWrapper::hollownessChanged);
    addValueBoxes(kHundredths, {ui_->sphereSize, ui_->hollowness});
    describeControls();
}

void SpheresQtWrapper::updateUI() {
    {
        // Show the record without writing rounded control values back into it.
        const QSignalBlocker b0(ui_->staggered);
        loadSlider(ui_->sphereSize, texture_->getSphereSize());
        ui_->staggered->setChecked(texture_->getStaggered());
        loadSlider(ui_->hollowness, texture_->getHollowness());
    }
    const bool interactive = texture_->interactiveUpdate();
    commonUi_->newInteractiveUpdate->setChecked(interactive);
    setInteractivity(interactive);
}

void SpheresQtWrapper::setInteractivity(bool on) {
    ui_->sphereSize->setTracking(on);
    ui_->hollowness->setTracking(on);
}

void SpheresQtWrapper::interactiveUpdateToggled(bool on) {
    texture_->setInteractiveUpdate(on);
    setInteractivity(on);
    redraw();
}

void SpheresQtWrapper::sphereSizeChanged(int value) {
    texture_->setSphereSize(kHundredths.word(value));
    redraw();
}

void SpheresQtWrapper::staggeredToggled(bool on) {
    texture_->setStaggered(on);
    redraw();
}

void SpheresQtWrapper::hollownessChanged(int value) {
    texture_->setHollowness(kHundredths.word(value));
    redraw();
}

}  // namespace gritwell
