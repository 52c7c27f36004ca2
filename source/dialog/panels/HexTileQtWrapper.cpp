#include "dialog/panels/HexTileQtWrapper.h"

#include <QSignalBlocker>

#include "core/FloatToInt.h"
#include "ui_CommonWidget.h"

namespace gritwell {

namespace {
// Colour sliders run 0..100 for 0..1.
constexpr float kSliderUnits = 100.0f;

int toSlider(float value) { return truncToInt(static_cast<double>(value * kSliderUnits)); }
float fromSlider(int value) { return static_cast<float>(value) / kSliderUnits; }
}  // namespace

HexTileQtWrapper::HexTileQtWrapper(HexTileTexture3D* texture, ImageArea* imageArea, Ui_HexTileWidget* ui,
                                   QWidget* page, QObject* parent)
    : QtWrapperBase(texture, imageArea, page, parent), ui_(ui), texture_(texture) {
    connect(commonUi_->newInteractiveUpdate, &QPushButton::toggled, this, &HexTileQtWrapper::interactiveUpdateToggled);
    connect(ui_->tileColor, &QSlider::valueChanged, this, &HexTileQtWrapper::tileColorChanged);
    connect(ui_->mortarColor, &QSlider::valueChanged, this, &HexTileQtWrapper::mortarColorChanged);
    connect(ui_->tileRadius, &QDoubleSpinBox::valueChanged, this, &HexTileQtWrapper::tileRadiusChanged);
    connect(ui_->mortarThickness, &QDoubleSpinBox::valueChanged, this, &HexTileQtWrapper::mortarThicknessChanged);
    connect(ui_->randomizeColors, &QPushButton::toggled, this, &HexTileQtWrapper::randomizeColorsToggled);
    connect(ui_->minColor, &QSlider::valueChanged, this, &HexTileQtWrapper::minColorChanged);
    connect(ui_->maxColor, &QSlider::valueChanged, this, &HexTileQtWrapper::maxColorChanged);
}

void HexTileQtWrapper::updateUI() {
    {
        // Show the record without writing rounded control values back into
        // it, and without the minimum/maximum pairing rewriting a stored
        // range while the two sliders are half loaded.
        const QSignalBlocker b0(ui_->tileColor), b1(ui_->mortarColor), b2(ui_->tileRadius), b3(ui_->mortarThickness),
            b4(ui_->randomizeColors), b5(ui_->minColor), b6(ui_->maxColor);
        ui_->tileColor->setValue(toSlider(texture_->getTileColor()));
        ui_->mortarColor->setValue(toSlider(texture_->getMortarColor()));
        ui_->tileRadius->setValue(texture_->getTileRadius());
        ui_->mortarThickness->setValue(texture_->getMortarThickness());
        ui_->randomizeColors->setChecked(texture_->getRandomizeColors());
        ui_->minColor->setValue(toSlider(texture_->getMinColor()));
        ui_->maxColor->setValue(toSlider(texture_->getMaxColor()));
    }
    const bool interactive = texture_->interactiveUpdate();
    commonUi_->newInteractiveUpdate->setChecked(interactive);
    setInteractivity(interactive);
}

void HexTileQtWrapper::setInteractivity(bool on) {
    for (QDoubleSpinBox* spin : {ui_->tileRadius, ui_->mortarThickness}) spin->setKeyboardTracking(on);
    for (QSlider* slider : {ui_->tileColor, ui_->mortarColor, ui_->minColor, ui_->maxColor}) slider->setTracking(on);
}

void HexTileQtWrapper::interactiveUpdateToggled(bool on) {
    texture_->setInteractiveUpdate(on);
    setInteractivity(on);
    redraw();
}

void HexTileQtWrapper::tileColorChanged(int value) {
    texture_->setTileColor(fromSlider(value));
    redraw();
}

void HexTileQtWrapper::mortarColorChanged(int value) {
    texture_->setMortarColor(fromSlider(value));
    redraw();
}

void HexTileQtWrapper::tileRadiusChanged(double value) {
    texture_->setTileRadius(static_cast<float>(value));
    redraw();
}

void HexTileQtWrapper::mortarThicknessChanged(double value) {
    texture_->setMortarThickness(static_cast<float>(value));
    redraw();
}

void HexTileQtWrapper::randomizeColorsToggled(bool on) {
    texture_->setRandomizeColors(on);
    redraw();
}

void HexTileQtWrapper::minColorChanged(int value) {
    texture_->setMinColor(fromSlider(value));
    if (value > ui_->maxColor->value()) ui_->maxColor->setValue(value);
    redraw();
}

void HexTileQtWrapper::maxColorChanged(int value) {
    texture_->setMaxColor(fromSlider(value));
    if (value < ui_->minColor->value()) ui_->minColor->setValue(value);
    redraw();
}

}  // namespace gritwell
