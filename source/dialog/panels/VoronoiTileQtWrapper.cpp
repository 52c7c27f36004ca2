#include "dialog/panels/VoronoiTileQtWrapper.h"

#include <QSignalBlocker>

#include "ui_CommonWidget.h"

namespace gritwell {

namespace {
// Tile colour sliders run 0..100 for 0..1.
constexpr SliderScale kHundredths(100);
}  // namespace

VoronoiTileQtWrapper::VoronoiTileQtWrapper(VoronoiTileTexture3D* texture, ImageArea* imageArea,
                                           Ui_VoronoiTileWidget* ui, QWidget* page, QObject* parent)
    : QtWrapperBase(texture, imageArea, page, parent), ui_(ui), texture_(texture) {
    using W = VoronoiTileQtWrapper;
    connect(commonUi_->newInteractiveUpdate, &QPushButton::toggled, this, &W::interactiveUpdateToggled);
    connect(ui_->cellVariability, &QDoubleSpinBox::valueChanged, this, &W::cellVariabilityChanged);
    connect(ui_->cellRandomizeColors, &QPushButton::toggled, this, &W::cellRandomizeColorsToggled);
    connect(ui_->cellMinColor, &QSlider::valueChanged, this, &W::cellMinColorChanged);
    connect(ui_->cellMaxColor, &QSlider::valueChanged, this, &W::cellMaxColorChanged);
    connect(ui_->cellAddNoise, &QPushButton::toggled, this, &W::cellAddNoiseToggled);
    connect(ui_->cellOctaves, &QSpinBox::valueChanged, this, &W::cellOctavesChanged);
    connect(ui_->cellLacunarity, &QDoubleSpinBox::valueChanged, this, &W::cellLacunarityChanged);
    connect(ui_->cellGain, &QDoubleSpinBox::valueChanged, this, &W::cellGainChanged);
    connect(ui_->cellDetail, &QDoubleSpinBox::valueChanged, this, &W::cellDetailChanged);
    connect(ui_->boundaryThickness, &QDoubleSpinBox::valueChanged, this, &W::boundaryThicknessChanged);
    connect(ui_->boundaryAddNoise, &QPushButton::toggled, this, &W::boundaryAddNoiseToggled);
    connect(ui_->boundaryOctaves, &QSpinBox::valueChanged, this, &W::boundaryOctavesChanged);
    connect(ui_->boundaryLacunarity, &QDoubleSpinBox::valueChanged, this, &W::boundaryLacunarityChanged);
    connect(ui_->boundaryGain, &QDoubleSpinBox::valueChanged, this, &W::boundaryGainChanged);
    connect(ui_->boundaryDetail, &QDoubleSpinBox::valueChanged, this, &W::boundaryDetailChanged);
    addValueBoxes(kHundredths, {ui_->cellMinColor, ui_->cellMaxColor});
    describeControls();
}

void VoronoiTileQtWrapper::updateUI() {
    {
        // Show the record without writing rounded control values back into
        // it, and without the minimum/maximum pairing rewriting a stored
        // range while the two sliders are half loaded.
        const QSignalBlocker b0(ui_->cellVariability), b1(ui_->cellRandomizeColors), b2(ui_->cellAddNoise),
            b3(ui_->cellOctaves), b4(ui_->cellLacunarity), b5(ui_->cellGain), b6(ui_->cellDetail),
            b7(ui_->boundaryThickness), b8(ui_->boundaryAddNoise), b9(ui_->boundaryOctaves),
            b10(ui_->boundaryLacunarity), b11(ui_->boundaryGain), b12(ui_->boundaryDetail);
        ui_->cellVariability->setValue(texture_->getCellVariability());
        ui_->cellRandomizeColors->setChecked(texture_->getCellRandomizeColors());
        loadSlider(ui_->cellMinColor, texture_->getCellMinColor());
        loadSlider(ui_->cellMaxColor, texture_->getCellMaxColor());
        ui_->cellAddNoise->setChecked(texture_->getCellAddNoise());
        ui_->cellOctaves->setValue(texture_->getCellOctaves());
        ui_->cellLacunarity->setValue(texture_->getCellLacunarity());
        ui_->cellGain->setValue(texture_->getCellGain());
        ui_->cellDetail->setValue(texture_->getCellDetail());
        ui_->boundaryThickness->setValue(texture_->getBoundaryThickness());
        ui_->boundaryAddNoise->setChecked(texture_->getBoundaryAddNoise());
        ui_->boundaryOctaves->setValue(texture_->getBoundaryOctaves());
        ui_->boundaryLacunarity->setValue(texture_->getBoundaryLacunarity());
        ui_->boundaryGain->setValue(texture_->getBoundaryGain());
        ui_->boundaryDetail->setValue(texture_->getBoundaryDetail());
    }
    const bool interactive = texture_->interactiveUpdate();
    commonUi_->newInteractiveUpdate->setChecked(interactive);
    setInteractivity(interactive);
}

void VoronoiTileQtWrapper::setInteractivity(bool on) {
    for (QDoubleSpinBox* spin : {ui_->cellVariability, ui_->cellLacunarity, ui_->cellGain, ui_->cellDetail,
                                 ui_->boundaryThickness, ui_->boundaryLacunarity, ui_->boundaryGain,
                                 ui_->boundaryDetail})
        spin->setKeyboardTracking(on);
    for (QSpinBox* spin : {ui_->cellOctaves, ui_->boundaryOctaves}) spin->setKeyboardTracking(on);
    for (QSlider* slider : {ui_->cellMinColor, ui_->cellMaxColor}) slider->setTracking(on);
}

void VoronoiTileQtWrapper::interactiveUpdateToggled(bool on) {
    texture_->setInteractiveUpdate(on);
    setInteractivity(on);
    redraw();
}

// ---- Tiles -----------------------------------------------------------------

void VoronoiTileQtWrapper::cellVariabilityChanged(double value) {
    texture_->setCellVariability(static_cast<float>(value));
    redraw();
}

void VoronoiTileQtWrapper::cellRandomizeColorsToggled(bool on) {
    texture_->setCellRandomizeColors(on);
    redraw();
}

void VoronoiTileQtWrapper::cellMinColorChanged(int value) {
    texture_->setCellMinColor(kHundredths.word(value));
    if (value > ui_->cellMaxColor->value()) ui_->cellMaxColor->setValue(value);
    redraw();
}

void VoronoiTileQtWrapper::cellMaxColorChanged(int value) {
    texture_->setCellMaxColor(kHundredths.word(value));
    if (value < ui_->cellMinColor->value()) ui_->cellMinColor->setValue(value);
    redraw();
}

void VoronoiTileQtWrapper::cellAddNoiseToggled(bool on) {
    texture_->setCellAddNoise(on);
    redraw();
}

void VoronoiTileQtWrapper::cellOctavesChanged(int value) {
    texture_->setCellOctaves(value);
    redraw();
}

void VoronoiTileQtWrapper::cellLacunarityChanged(double value) {
    texture_->setCellLacunarity(static_cast<float>(value));
    redraw();
}

void VoronoiTileQtWrapper::cellGainChanged(double value) {
    texture_->setCellGain(static_cast<float>(value));
    redraw();
}

void VoronoiTileQtWrapper::cellDetailChanged(double value) {
    texture_->setCellDetail(static_cast<float>(value));
    redraw();
}

// ---- Grout -----------------------------------------------------------------

void VoronoiTileQtWrapper::boundaryThicknessChanged(double value) {
    texture_->setBoundaryThickness(static_cast<float>(value));
    redraw();
}

void VoronoiTileQtWrapper::boundaryAddNoiseToggled(bool on) {
    texture_->setBoundaryAddNoise(on);
    redraw();
}

void VoronoiTileQtWrapper::boundaryOctavesChanged(int value) {
    texture_->setBoundaryOctaves(value);
    redraw();
}

void VoronoiTileQtWrapper::boundaryLacunarityChanged(double value) {
    texture_->setBoundaryLacunarity(static_cast<float>(value));
    redraw();
}

void VoronoiTileQtWrapper::boundaryGainChanged(double value) {
    texture_->setBoundaryGain(static_cast<float>(value));
    redraw();
}

void VoronoiTileQtWrapper::boundaryDetailChanged(double value) {
    texture_->setBoundaryDetail(static_cast<float>(value));
    redraw();
}

}  // namespace gritwell
