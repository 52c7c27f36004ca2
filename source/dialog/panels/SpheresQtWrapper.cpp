#include "dialog/panels/SpheresQtWrapper.h"

#include <QSignalBlocker>

#include "core/FloatToInt.h"
#include "ui_CommonWidget.h"

namespace gritwell {

namespace {
// Size and hollowness run 0..100 for 0..1: a radius of 1 already fills the
// cell, and hollowness is a fraction of the radius.
constexpr float kSliderUnits = 100.0f;

int toSlider(float value) { return truncToInt(static_cast<double>(value * kSliderUnits)); }
float fromSlider(int value) { return static_cast<float>(value) / kSliderUnits; }
}  // namespace

SpheresQtWrapper::SpheresQtWrapper(SpheresTexture3D* texture, ImageArea* imageArea, Ui_SpheresWidget* ui,
                                   QWidget* page, QObject* parent)
    : QtWrapperBase(texture, imageArea, page, parent), ui_(ui), texture_(texture) {
    connect(commonUi_->newInteractiveUpdate, &QPushButton::toggled, this, &SpheresQtWrapper::interactiveUpdateToggled);
    connect(ui_->sphereSize, &QSlider::valueChanged, this, &SpheresQtWrapper::sphereSizeChanged);
    connect(ui_->staggered, &QPushButton::toggled, this, &SpheresQtWrapper::staggeredToggled);
    connect(ui_->hollowness, &QSlider::valueChanged, this, &SpheresQtWrapper::hollownessChanged);
}

void SpheresQtWrapper::updateUI() {
    {
        // Show the record without writing rounded control values back into it.
        const QSignalBlocker b0(ui_->sphereSize), b1(ui_->staggered), b2(ui_->hollowness);
        ui_->sphereSize->setValue(toSlider(texture_->getSphereSize()));
        ui_->staggered->setChecked(texture_->getStaggered());
        ui_->hollowness->setValue(toSlider(texture_->getHollowness()));
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
    texture_->setSphereSize(fromSlider(value));
    redraw();
}

void SpheresQtWrapper::staggeredToggled(bool on) {
    texture_->setStaggered(on);
    redraw();
}

void SpheresQtWrapper::hollownessChanged(int value) {
    texture_->setHollowness(fromSlider(value));
    redraw();
}

}  // namespace gritwell
