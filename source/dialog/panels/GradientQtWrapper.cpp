#include "dialog/panels/GradientQtWrapper.h"

#include <QSignalBlocker>

#include "ui_CommonWidget.h"

namespace gritwell {

GradientQtWrapper::GradientQtWrapper(GradientTexture3D* texture, ImageArea* imageArea, Ui_GradientWidget* ui,
                                     QWidget* page, QObject* parent)
    : QtWrapperBase(texture, imageArea, page, parent), ui_(ui), texture_(texture) {
    connect(commonUi_->newInteractiveUpdate, &QPushButton::toggled, this,
            &GradientQtWrapper::interactiveUpdateToggled);
    connect(ui_->xDir, &QPushButton::toggled, this, &GradientQtWrapper::xDirToggled);
    connect(ui_->yDir, &QPushButton::toggled, this, &GradientQtWrapper::yDirToggled);
    connect(ui_->zDir, &QPushButton::toggled, this, &GradientQtWrapper::zDirToggled);
    describeControls();
}

void GradientQtWrapper::updateUI() {
    {
        // Loading shows the flags; it sends nothing to the host.
        const QSignalBlocker b0(ui_->xDir), b1(ui_->yDir), b2(ui_->zDir);
        ui_->xDir->setChecked(texture_->getXDir());
        ui_->yDir->setChecked(texture_->getYDir());
        ui_->zDir->setChecked(texture_->getZDir());
    }
    const bool interactive = texture_->interactiveUpdate();
    commonUi_->newInteractiveUpdate->setChecked(interactive);
    setInteractivity(interactive);
}

void GradientQtWrapper::setInteractivity(bool) {}

void GradientQtWrapper::interactiveUpdateToggled(bool on) {
    texture_->setInteractiveUpdate(on);
    setInteractivity(on);
    redraw();
}

void GradientQtWrapper::xDirToggled(bool on) {
    texture_->setXDir(on);
    redraw();
}

void GradientQtWrapper::yDirToggled(bool on) {
    texture_->setYDir(on);
    redraw();
}

void GradientQtWrapper::zDirToggled(bool on) {
    texture_->setZDir(on);
    redraw();
}

}  // namespace gritwell
