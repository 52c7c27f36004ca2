#include "dialog/panels/FBMQtWrapper.h"

#include <QSignalBlocker>

#include "ui_CommonWidget.h"

namespace gritwell {

FBMQtWrapper::FBMQtWrapper(FBMTexture3D* texture, ImageArea* imageArea, Ui_FBMWidget* ui, QWidget* page,
                           QObject* parent)
    : QtWrapperBase(texture, imageArea, page, parent), ui_(ui), texture_(texture) {
    connect(commonUi_->newInteractiveUpdate, &QPushButton::toggled, this, &FBMQtWrapper::interactiveUpdateToggled);
    connect(ui_->octaves, &QSpinBox::valueChanged, this, &FBMQtWrapper::octavesChanged);
    connect(ui_->lacunarity, &QDoubleSpinBox::valueChanged, this, &FBMQtWrapper::lacunarityChanged);
    connect(ui_->gain, &QDoubleSpinBox::valueChanged, this, &FBMQtWrapper::gainChanged);
    connect(ui_->scale, &QDoubleSpinBox::valueChanged, this, &FBMQtWrapper::scaleChanged);
    describeControls();
}

void FBMQtWrapper::updateUI() {
    {
        // Show the record without writing rounded control values back into it.
        const QSignalBlocker b0(ui_->octaves), b1(ui_->lacunarity), b2(ui_->gain), b3(ui_->scale);
        ui_->octaves->setValue(texture_->octaves());
        ui_->lacunarity->setValue(texture_->lacunarity());
        ui_->gain->setValue(texture_->gain());
        ui_->scale->setValue(texture_->scale());
    }
    const bool interactive = texture_->interactiveUpdate();
    commonUi_->newInteractiveUpdate->setChecked(interactive);
    setInteractivity(interactive);
}

void FBMQtWrapper::setInteractivity(bool on) {
    ui_->octaves->setKeyboardTracking(on);
    for (QDoubleSpinBox* spin : {ui_->lacunarity, ui_->gain, ui_->scale}) spin->setKeyboardTracking(on);
}

void FBMQtWrapper::interactiveUpdateToggled(bool on) {
    texture_->setInteractiveUpdate(on);
    setInteractivity(on);
    redraw();
}

void FBMQtWrapper::octavesChanged(int value) {
    texture_->setOctaves(value);
    redraw();
}

void FBMQtWrapper::lacunarityChanged(double value) {
    texture_->setLacunarity(static_cast<float>(value));
    redraw();
}

void FBMQtWrapper::gainChanged(double value) {
    texture_->setGain(static_cast<float>(value));
    redraw();
}

void FBMQtWrapper::scaleChanged(double value) {
    texture_->setScale(static_cast<float>(value));
    redraw();
}

}  // namespace gritwell
