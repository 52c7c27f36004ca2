#include "dialog/panels/SnakeskinQtWrapper.h"

#include <QSignalBlocker>

#include "ui_CommonWidget.h"

namespace gritwell {

namespace {
// Widths, radii, colours and the wobble's frequency and amplitude run
// 0..100 for 0..1 (of a scale, where they are lengths).
constexpr SliderScale kHundredths(100);
}  // namespace

SnakeskinQtWrapper::SnakeskinQtWrapper(SnakeskinTexture3D* texture, ImageArea* imageArea, Ui_SnakeskinWidget* ui,
                                       QWidget* page, QObject* parent)
    : QtWrapperBase(texture, imageArea, page, parent), ui_(ui), texture_(texture) {
    connect(commonUi_->newInteractiveUpdate, &QPushButton::toggled, this,
            &SnakeskinQtWrapper::interactiveUpdateToggled);
    connect(ui_->gridWidth, &QSlider::valueChanged, this, &SnakeskinQtWrapper::gridWidthChanged);
    connect(ui_->randomizeColors, &QPushButton::toggled, this, &SnakeskinQtWrapper::randomizeColorsToggled);
    connect(ui_->minColor, &QSlider::valueChanged, this, &SnakeskinQtWrapper::minColorChanged);
    connect(ui_->maxColor, &QSlider::valueChanged, this, &SnakeskinQtWrapper::maxColorChanged);
    connect(ui_->scaleVariabilityEnable, &QPushButton::toggled, this,
            &SnakeskinQtWrapper::scaleVariabilityEnableToggled);
    connect(ui_->scaleVariabilityFrequency, &QSlider::valueChanged, this,
            &SnakeskinQtWrapper::scaleVariabilityFrequencyChanged);
    connect(ui_->scaleVariabilityAmplitude, &QSlider::valueChanged, this,
            &SnakeskinQtWrapper::scaleVariabilityAmplitudeChanged);
    connect(ui_->scaleNoiseAdd, &QPushButton::toggled, this, &SnakeskinQtWrapper::scaleNoiseAddToggled);
    connect(ui_->scaleNoiseOctaves, &QSpinBox::valueChanged, this, &SnakeskinQtWrapper::scaleNoiseOctavesChanged);
    connect(ui_->scaleNoiseLacunarity, &QDoubleSpinBox::valueChanged, this,
            &SnakeskinQtWrapper::scaleNoiseLacunarityChanged);
    connect(ui_->scaleNoiseGain, &QDoubleSpinBox::valueChanged, this, &SnakeskinQtWrapper::scaleNoiseGainChanged);
    connect(ui_->scaleNoiseDetail, &QDoubleSpinBox::valueChanged, this,
            &SnakeskinQtWrapper::scaleNoiseDetailChanged);
    connect(ui_->roundCornersEnable, &QPushButton::toggled, this, &SnakeskinQtWrapper::roundCornersEnableToggled);
    connect(ui_->roundCornersLeftRightRadius, &QSlider::valueChanged, this,
            &SnakeskinQtWrapper::roundCornersLeftRightRadiusChanged);
    connect(ui_->roundCornersTopBottomRadius, &QSlider::valueChanged, this,
            &SnakeskinQtWrapper::roundCornersTopBottomRadiusChanged);
    addValueBoxes(kHundredths,
                  {ui_->gridWidth, ui_->roundCornersLeftRightRadius, ui_->roundCornersTopBottomRadius, ui_->minColor,
                   ui_->maxColor, ui_->scaleVariabilityFrequency, ui_->scaleVariabilityAmplitude});
    describeControls();
}

void SnakeskinQtWrapper::updateUI() {
    {
        // Loading shows the record; it must not write the controls' rounded
        // values back into it, nor let the minimum/maximum pairing rewrite a
        // stored range while the two sliders are half loaded.
        const QSignalBlocker b0(ui_->randomizeColors), b1(ui_->scaleVariabilityEnable), b2(ui_->scaleNoiseAdd),
            b3(ui_->scaleNoiseOctaves), b4(ui_->scaleNoiseLacunarity), b5(ui_->scaleNoiseGain),
            b6(ui_->scaleNoiseDetail), b7(ui_->roundCornersEnable);
        loadSlider(ui_->gridWidth, texture_->getStripeWidth());
        ui_->randomizeColors->setChecked(texture_->getRandomizeColors());
        loadSlider(ui_->minColor, texture_->getMinColor());
        loadSlider(ui_->maxColor, texture_->getMaxColor());
        ui_->scaleVariabilityEnable->setChecked(texture_->getScaleVariabilityEnabled());
        loadSlider(ui_->scaleVariabilityFrequency, texture_->getScaleVariabilityFrequency());
        loadSlider(ui_->scaleVariabilityAmplitude, texture_->getScaleVariabilityAmplitude());
        ui_->scaleNoiseAdd->setChecked(texture_->getScaleNoiseAdd());
        ui_->scaleNoiseOctaves->setValue(texture_->getScaleNoiseOctaves());
        ui_->scaleNoiseLacunarity->setValue(texture_->getScaleNoiseLacunarity());
        ui_->scaleNoiseGain->setValue(texture_->getScaleNoiseGain());
        ui_->scaleNoiseDetail->setValue(texture_->getScaleNoiseDetail());
        ui_->roundCornersEnable->setChecked(texture_->getRoundCornersEnabled());
        loadSlider(ui_->roundCornersLeftRightRadius, texture_->getRoundCornersLeftRightRadius());
        loadSlider(ui_->roundCornersTopBottomRadius, texture_->getRoundCornersTopBottomRadius());
    }
    const bool interactive = texture_->interactiveUpdate();
    commonUi_->newInteractiveUpdate->setChecked(interactive);
    setInteractivity(interactive);
}

void SnakeskinQtWrapper::setInteractivity(bool on) {
    ui_->scaleNoiseOctaves->setKeyboardTracking(on);
    for (QDoubleSpinBox* spin : {ui_->scaleNoiseLacunarity, ui_->scaleNoiseGain, ui_->scaleNoiseDetail})
        spin->setKeyboardTracking(on);
    for (QSlider* slider : {ui_->gridWidth, ui_->minColor, ui_->maxColor, ui_->scaleVariabilityFrequency,
                            ui_->scaleVariabilityAmplitude, ui_->roundCornersLeftRightRadius,
                            ui_->roundCornersTopBottomRadius})
        slider->setTracking(on);
}

void SnakeskinQtWrapper::interactiveUpdateToggled(bool on) {
    texture_->setInteractiveUpdate(on);
    setInteractivity(on);
    redraw();
}

void SnakeskinQtWrapper::gridWidthChanged(int value) {
    texture_->setStripeWidth(kHundredths.word(value));
    redraw();
}

void SnakeskinQtWrapper::randomizeColorsToggled(bool on) {
    texture_->setRandomizeColors(on);
    redraw();
}

void SnakeskinQtWrapper::minColorChanged(int value) {
    texture_->setMinColor(kHundredths.word(value));
    if (value > ui_->maxColor->value()) ui_->maxColor->setValue(value);
    redraw();
}

void SnakeskinQtWrapper::maxColorChanged(int value) {
    texture_->setMaxColor(kHundredths.word(value));
    if (value < ui_->minColor->value()) ui_->minColor->setValue(value);
    redraw();
}

void SnakeskinQtWrapper::scaleVariabilityEnableToggled(bool on) {
    texture_->setScaleVariabilityEnabled(on);
    redraw();
}

void SnakeskinQtWrapper::scaleVariabilityFrequencyChanged(int value) {
    texture_->setScaleVariabilityFrequency(kHundredths.word(value));
    redraw();
}

void SnakeskinQtWrapper::scaleVariabilityAmplitudeChanged(int value) {
    texture_->setScaleVariabilityAmplitude(kHundredths.word(value));
    redraw();
}

void SnakeskinQtWrapper::scaleNoiseAddToggled(bool on) {
    texture_->setScaleNoiseAdd(on);
    redraw();
}

void SnakeskinQtWrapper::scaleNoiseOctavesChanged(int octaves) {
    texture_->setScaleNoiseOctaves(octaves);
    redraw();
}

void SnakeskinQtWrapper::scaleNoiseLacunarityChanged(double value) {
    texture_->setScaleNoiseLacunarity(static_cast<float>(value));
    redraw();
}

void SnakeskinQtWrapper::scaleNoiseGainChanged(double value) {
    texture_->setScaleNoiseGain(static_cast<float>(value));
    redraw();
}

void SnakeskinQtWrapper::scaleNoiseDetailChanged(double value) {
    texture_->setScaleNoiseDetail(static_cast<float>(value));
    redraw();
}

void SnakeskinQtWrapper::roundCornersEnableToggled(bool on) {
    texture_->setRoundCornersEnabled(on);
    redraw();
}

void SnakeskinQtWrapper::roundCornersLeftRightRadiusChanged(int value) {
    texture_->setRoundCornersLeftRightRadius(kHundredths.word(value));
    redraw();
}

void SnakeskinQtWrapper::roundCornersTopBottomRadiusChanged(int value) {
    texture_->setRoundCornersTopBottomRadius(kHundredths.word(value));
    redraw();
}

}  // namespace gritwell
