#include "dialog/panels/SimplexQtWrapper.h"

#include <QSignalBlocker>

#include "ui_CommonWidget.h"

namespace gritwell {

SimplexQtWrapper::SimplexQtWrapper(SimplexTexture3D* texture, ImageArea* imageArea, Ui_SimplexWidget* ui,
                                   QWidget* page, QObject* parent)
    : QtWrapperBase(texture, imageArea, page, parent), ui_(ui), texture_(texture) {
    connect(commonUi_->newInteractiveUpdate, &QPushButton::toggled, this, &SimplexQtWrapper::interactiveUpdateToggled);
    connect(ui_->scale, &QDoubleSpinBox::valueChanged, this, &SimplexQtWrapper::scaleChanged);
    describeControls();
}

void SimplexQtWrapper::updateUI() {
    {
        // Show the record without writing the spin box's rounding back into it.
        const QSignalBlocker b0(ui_->scale);
        ui_->scale->setValue(texture_->getScale());
    }
    const bool interactive = texture_->interactiveUpdate();
    commonUi_->newInteractiveUpdate->setChecked(interactive);
    setInteractivity(interactive);
}

void SimplexQtWrapper::setInteractivity(bool on) { ui_->scale->setKeyboardTracking(on); }

void SimplexQtWrapper::interactiveUpdateToggled(bool on) {
    texture_->setInteractiveUpdate(on);
    setInteractivity(on);
    redraw();
}

void SimplexQtWrapper::scaleChanged(double value) {
    texture_->setScale(static_cast<float>(value));
    redraw();
}

}  // namespace gritwell
