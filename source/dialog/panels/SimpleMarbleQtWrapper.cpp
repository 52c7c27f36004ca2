#include "dialog/panels/SimpleMarbleQtWrapper.h"

#include <QSignalBlocker>

#include "ui_CommonWidget.h"

namespace gritwell {

SimpleMarbleQtWrapper::SimpleMarbleQtWrapper(SimpleMarbleTexture3D* texture, ImageArea* imageArea,
                                             Ui_SimpleMarbleWidget* ui, QWidget* page, QObject* parent)
    : QtWrapperBase(texture, imageArea, page, parent), ui_(ui), texture_(texture) {
    connect(commonUi_->newInteractiveUpdate, &QPushButton::toggled, this,
            &SimpleMarbleQtWrapper::interactiveUpdateToggled);
    connect(ui_->octaves, &QSpinBox::valueChanged, this, &SimpleMarbleQtWrapper::octavesChanged);
    connect(ui_->textureScale, &QDoubleSpinBox::valueChanged, this, &SimpleMarbleQtWrapper::textureScaleChanged);
    describeControls();
}

void SimpleMarbleQtWrapper::updateUI() {
    {
        // Show the record without writing rounded control values back into it.
        const QSignalBlocker b0(ui_->octaves), b1(ui_->textureScale);
        ui_->octaves->setValue(texture_->getOctaves());
        ui_->textureScale->setValue(texture_->getTextureScale());
    }
    const bool interactive = texture_->interactiveUpdate();
    commonUi_->newInteractiveUpdate->setChecked(interactive);
    setInteractivity(interactive);
}

void SimpleMarbleQtWrapper::setInteractivity(bool on) {
    ui_->octaves->setKeyboardTracking(on);
    ui_->textureScale->setKeyboardTracking(on);
}

void SimpleMarbleQtWrapper::interactiveUpdateToggled(bool on) {
    texture_->setInteractiveUpdate(on);
    setInteractivity(on);
    redraw();
}

void SimpleMarbleQtWrapper::octavesChanged(int value) {
    texture_->setOctaves(value);
    redraw();
}

void SimpleMarbleQtWrapper::textureScaleChanged(double value) {
    texture_->setTextureScale(static_cast<float>(value));
    redraw();
}

}  // namespace gritwell
