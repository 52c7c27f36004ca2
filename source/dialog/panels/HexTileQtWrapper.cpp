#include "dialog/panels/HexTileQtWrapper.h"

#include <QSignalBlocker>

#include "ui_CommonWidget.h"

namespace gritwell {

namespace {
// Colour sliders run 0..100 for 0..1.
constexpr SliderScale kHundredths(100);
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
    addValueBoxes(kHundredths, {ui_->tileColor, ui_->mortarColor, ui_->minColor, ui_->maxColor});
    describeControls();
}

void HexTileQtWrapper::updateUI() {
    {
        // Show the record without writing rounded control values back into
        // it, and without the minimum/maximum pairing rewriting a stored
        // range while the two sliders are half loaded.
        const QSignalBlocker b0(ui_->tileRadius), b1(ui_->mortarThickness), b2(ui_->randomizeColors);
        loadSlider(ui_->tileColor, texture_->getTileColor());
        loadSlider(ui_->mortarColor, texture_->getMortarColor());
        ui_->tileRadius->setValue(texture_->getTileRadius());
        ui_->mortarThickness->setValue(texture_->getMortarThickness());
        ui_->randomizeColors->setChecked(texture_->getRandomizeColors());
        loadSlider(ui_->minColor, texture_->getMinColor());
        loadSlider(ui_->maxColor, texture_->getMaxColor());
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
    texture_->setTileColor(kHundredths.word(value));
    redraw();
}

void HexTileQtWrapper::mortarColorChanged(int value) {
    texture_->setMortarColor(kHundredths.word(value));
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
    texture_->setMinColor(kHundredths.word(value));
    if (value > ui_->maxColor->value()) ui_->maxColor->setValue(value);
    redraw();
}

void HexTileQtWrapper::maxColorChanged(int value) {
    texture_->setMaxColor(kHundredths.word(value));
    if (value < ui_->minColor->value()) ui_->minColor->setValue(value);
    redraw();
}

}  // namespace gritwell
