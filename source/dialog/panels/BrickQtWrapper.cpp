#include "dialog/panels/BrickQtWrapper.h"

#include <QSignalBlocker>

#include "ui_CommonWidget.h"

namespace gritwell {

namespace {
// Colour and fraction sliders run 0..100 for 0..1.
constexpr SliderScale kHundredths(100);
}  // namespace

BrickQtWrapper::BrickQtWrapper(BrickTexture3D* texture, ImageArea* imageArea, Ui_BrickWidget* ui, QWidget* page,
                               QObject* parent)
    : QtWrapperBase(texture, imageArea, page, parent), ui_(ui), texture_(texture) {
    connect(commonUi_->newInteractiveUpdate, &QPushButton::toggled, this, &BrickQtWrapper::interactiveUpdateToggled);
    connect(ui_->pattern, &QComboBox::currentIndexChanged, this, &BrickQtWrapper::patternChanged);
    connect(ui_->width, &QDoubleSpinBox::valueChanged, this, &BrickQtWrapper::brickWidthChanged);
    connect(ui_->height, &QDoubleSpinBox::valueChanged, this, &BrickQtWrapper::brickHeightChanged);
    connect(ui_->depth, &QDoubleSpinBox::valueChanged, this, &BrickQtWrapper::brickDepthChanged);
    connect(ui_->mortarThickness, &QDoubleSpinBox::valueChanged, this, &BrickQtWrapper::mortarThicknessChanged);
    connect(ui_->roundedCornersEnable, &QPushButton::toggled, this, &BrickQtWrapper::roundedCornersEnableToggled);
    connect(ui_->roundedCornersRadius, &QSlider::valueChanged, this, &BrickQtWrapper::roundedCornersRadiusChanged);
    connect(ui_->brickColor, &QSlider::valueChanged, this, &BrickQtWrapper::brickColorChanged);
    connect(ui_->mortarColor, &QSlider::valueChanged, this, &BrickQtWrapper::mortarColorChanged);
    connect(ui_->randomizeColors, &QPushButton::toggled, this, &BrickQtWrapper::randomizeColorsToggled);
    connect(ui_->minColor, &QSlider::valueChanged, this, &BrickQtWrapper::minColorChanged);
    connect(ui_->maxColor, &QSlider::valueChanged, this, &BrickQtWrapper::maxColorChanged);
    connect(ui_->rowOffsetVariabilityEnable, &QPushButton::toggled, this,
            &BrickQtWrapper::rowOffsetVariabilityEnableToggled);
    connect(ui_->rowOffsetVariabilityAmplitude, &QSlider::valueChanged, this,
            &BrickQtWrapper::rowOffsetVariabilityAmplitudeChanged);
    addValueBoxes(kHundredths, {ui_->brickColor, ui_->mortarColor, ui_->minColor, ui_->maxColor,
                                ui_->roundedCornersRadius, ui_->rowOffsetVariabilityAmplitude});
    describeControls();
}

void BrickQtWrapper::updateUI() {
    {
        // Loading shows the record; it must not write the controls' rounded
        // values back into it, nor let the minimum/maximum pairing rewrite a
        // stored range while the two sliders are half loaded.
        const QSignalBlocker b0(ui_->pattern), b1(ui_->height), b2(ui_->width), b3(ui_->depth),
            b4(ui_->mortarThickness), b5(ui_->roundedCornersEnable), b6(ui_->rowOffsetVariabilityEnable),
            b7(ui_->randomizeColors);
        ui_->pattern->setCurrentIndex(texture_->getPattern());
        ui_->height->setValue(texture_->getBrickHeight());
        ui_->width->setValue(texture_->getBrickWidth());
        ui_->depth->setValue(texture_->getBrickDepth());
        ui_->mortarThickness->setValue(texture_->getMortarThickness());
        ui_->roundedCornersEnable->setChecked(texture_->getRoundedCornersEnabled());
        loadSlider(ui_->roundedCornersRadius, texture_->getRoundedCornersRadius());
        ui_->rowOffsetVariabilityEnable->setChecked(texture_->getRowOffsetVariabilityEnabled());
        loadSlider(ui_->rowOffsetVariabilityAmplitude, texture_->getRowOffsetVariabilityAmplitude());
        loadSlider(ui_->brickColor, texture_->getBrickColor());
        loadSlider(ui_->mortarColor, texture_->getMortarColor());
        ui_->randomizeColors->setChecked(texture_->getRandomizeColors());
        loadSlider(ui_->minColor, texture_->getMinColor());
        loadSlider(ui_->maxColor, texture_->getMaxColor());
    }
    const bool interactive = texture_->interactiveUpdate();
    commonUi_->newInteractiveUpdate->setChecked(interactive);
    setInteractivity(interactive);
}

void BrickQtWrapper::setInteractivity(bool on) {
    for (QDoubleSpinBox* spin : {ui_->width, ui_->height, ui_->depth, ui_->mortarThickness}) spin->setKeyboardTracking(on);
    for (QSlider* slider : {ui_->roundedCornersRadius, ui_->rowOffsetVariabilityAmplitude, ui_->brickColor,
                            ui_->mortarColor, ui_->minColor, ui_->maxColor})
        slider->setTracking(on);
}

void BrickQtWrapper::interactiveUpdateToggled(bool on) {
    texture_->setInteractiveUpdate(on);
    setInteractivity(on);
    redraw();
}

// The combo lists "Running Bond" first; its index is stored as is, which is
// what stored records hold (see BrickTexture3D::Pattern).
void BrickQtWrapper::patternChanged(int index) {
    texture_->setPattern(static_cast<BrickTexture3D::Pattern>(index));
    redraw();
}

void BrickQtWrapper::brickWidthChanged(double value) {
    texture_->setBrickWidth(static_cast<float>(value));
    redraw();
}

void BrickQtWrapper::brickHeightChanged(double value) {
    texture_->setBrickHeight(static_cast<float>(value));
    redraw();
}

void BrickQtWrapper::brickDepthChanged(double value) {
    texture_->setBrickDepth(static_cast<float>(value));
    redraw();
}

void BrickQtWrapper::mortarThicknessChanged(double value) {
    texture_->setMortarThickness(static_cast<float>(value));
    redraw();
}

void BrickQtWrapper::roundedCornersEnableToggled(bool on) {
    texture_->setRoundedCornersEnabled(on);
    redraw();
}

void BrickQtWrapper::roundedCornersRadiusChanged(int value) {
    texture_->setRoundedCornersRadius(kHundredths.word(value));
    redraw();
}

void BrickQtWrapper::brickColorChanged(int value) {
    texture_->setBrickColor(kHundredths.word(value));
    redraw();
}

void BrickQtWrapper::mortarColorChanged(int value) {
    texture_->setMortarColor(kHundredths.word(value));
    redraw();
}

void BrickQtWrapper::randomizeColorsToggled(bool on) {
    texture_->setRandomizeColors(on);
    redraw();
}

void BrickQtWrapper::minColorChanged(int value) {
    texture_->setMinColor(kHundredths.word(value));
    if (value > ui_->maxColor->value()) ui_->maxColor->setValue(value);
    redraw();
}

void BrickQtWrapper::maxColorChanged(int value) {
    texture_->setMaxColor(kHundredths.word(value));
    if (value < ui_->minColor->value()) ui_->minColor->setValue(value);
    redraw();
}

void BrickQtWrapper::rowOffsetVariabilityEnableToggled(bool on) {
    texture_->setRowOffsetVariabilityEnabled(on);
    redraw();
}

void BrickQtWrapper::rowOffsetVariabilityAmplitudeChanged(int value) {
    texture_->setRowOffsetVariabilityAmplitude(kHundredths.word(value));
    redraw();
}

}  // namespace gritwell
