#include "dialog/panels/DentedQtWrapper.h"

#include <QSignalBlocker>

#include "ui_CommonWidget.h"

namespace gritwell {

DentedQtWrapper::DentedQtWrapper(DentedTexture3D* texture, ImageArea* imageArea, Ui_DentedWidget* ui, QWidget* page,
                                 QObject* parent)
    : QtWrapperBase(texture, imageArea, page, parent), ui_(ui), texture_(texture) {
    connect(commonUi_->newInteractiveUpdate, &QPushButton::toggled, this, &DentedQtWrapper::interactiveUpdateToggled);
    connect(ui_->scale, &QDoubleSpinBox::valueChanged, this, &DentedQtWrapper::scaleChanged);
    connect(ui_->magnitude, &QDoubleSpinBox::valueChanged, this, &DentedQtWrapper::magnitudeChanged);
    describeControls();
}

void DentedQtWrapper::updateUI() {
    {
        // Show the record without writing rounded control values back into it.
        const QSignalBlocker b0(ui_->scale), b1(ui_->magnitude);
        ui_->scale->setValue(texture_->getScale());
        ui_->magnitude->setValue(texture_->getMagnitude());
    }
    const bool interactive = texture_->interactiveUpdate();
    commonUi_->newInteractiveUpdate->setChecked(interactive);
    setInteractivity(interactive);
}

void DentedQtWrapper::setInteractivity(bool on) {
    for (QDoubleSpinBox* spin : {ui_->scale, ui_->magnitude}) spin->setKeyboardTracking(on);
}

void DentedQtWrapper::interactiveUpdateToggled(bool on) {
    texture_->setInteractiveUpdate(on);
    setInteractivity(on);
    redraw();
}

void DentedQtWrapper::scaleChanged(double value) {
    texture_->setScale(static_cast<float>(value));
    redraw();
}

void DentedQtWrapper::magnitudeChanged(double value) {
    texture_->setMagnitude(static_cast<float>(value));
    redraw();
}

}  // namespace gritwell
