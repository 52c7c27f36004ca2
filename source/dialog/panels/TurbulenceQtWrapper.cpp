#include "dialog/panels/TurbulenceQtWrapper.h"

#include <QSignalBlocker>

#include "ui_CommonWidget.h"

namespace gritwell {

TurbulenceQtWrapper::TurbulenceQtWrapper(TurbulenceTexture3D* texture, ImageArea* imageArea, Ui_TurbulenceWidget* ui,
                                         QWidget* page, QObject* parent)
    : QtWrapperBase(texture, imageArea, page, parent), ui_(ui), texture_(texture) {
    connect(commonUi_->newInteractiveUpdate, &QPushButton::toggled, this,
            &TurbulenceQtWrapper::interactiveUpdateToggled);
    connect(ui_->octaves, &QSpinBox::valueChanged, this, &TurbulenceQtWrapper::octavesChanged);
    connect(ui_->lacunarity, &QDoubleSpinBox::valueChanged, this, &TurbulenceQtWrapper::lacunarityChanged);
    connect(ui_->gain, &QDoubleSpinBox::valueChanged, this, &TurbulenceQtWrapper::gainChanged);
    connect(ui_->scale, &QDoubleSpinBox::valueChanged, this, &TurbulenceQtWrapper::scaleChanged);
    describeControls();
}

void TurbulenceQtWrapper::updateUI() {
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

void TurbulenceQtWrapper::setInteractivity(bool on) {
    ui_->octaves->setKeyboardTracking(on);
    for (QDoubleSpinBox* spin : {ui_->lacunarity, ui_->gain, ui_->scale}) spin->setKeyboardTracking(on);
}

void TurbulenceQtWrapper::interactiveUpdateToggled(bool on) {
    texture_->setInteractiveUpdate(on);
    setInteractivity(on);
    redraw();
}

void TurbulenceQtWrapper::octavesChanged(int value) {
    texture_->setOctaves(value);
    redraw();
}

void TurbulenceQtWrapper::lacunarityChanged(double value) {
    texture_->setLacunarity(static_cast<float>(value));
    redraw();
}

void TurbulenceQtWrapper::gainChanged(double value) {
    texture_->setGain(static_cast<float>(value));
    redraw();
}

void TurbulenceQtWrapper::scaleChanged(double value) {
    texture_->setScale(static_cast<float>(value));
    redraw();
}

}  // namespace gritwell
