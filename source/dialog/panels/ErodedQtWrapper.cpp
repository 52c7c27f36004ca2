#include "dialog/panels/ErodedQtWrapper.h"

#include <QSignalBlocker>

#include "ui_CommonWidget.h"

namespace gritwell {

ErodedQtWrapper::ErodedQtWrapper(ErodedTexture3D* texture, ImageArea* imageArea, Ui_ErodedWidget* ui, QWidget* page,
                                 QObject* parent)
    : QtWrapperBase(texture, imageArea, page, parent), ui_(ui), texture_(texture) {
    connect(commonUi_->newInteractiveUpdate, &QPushButton::toggled, this, &ErodedQtWrapper::interactiveUpdateToggled);
    connect(ui_->scale, &QDoubleSpinBox::valueChanged, this, &ErodedQtWrapper::scaleChanged);
    connect(ui_->magnitude, &QDoubleSpinBox::valueChanged, this, &ErodedQtWrapper::magnitudeChanged);
    describeControls();
}

void ErodedQtWrapper::updateUI() {
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

void ErodedQtWrapper::setInteractivity(bool on) {
    for (QDoubleSpinBox* spin : {ui_->scale, ui_->magnitude}) spin->setKeyboardTracking(on);
}

void ErodedQtWrapper::interactiveUpdateToggled(bool on) {
    texture_->setInteractiveUpdate(on);
    setInteractivity(on);
    redraw();
}

void ErodedQtWrapper::scaleChanged(double value) {
    texture_->setScale(static_cast<float>(value));
    redraw();
}

void ErodedQtWrapper::magnitudeChanged(double value) {
    texture_->setMagnitude(static_cast<float>(value));
    redraw();
}

}  // namespace gritwell
