#include "dialog/panels/ScalesQtWrapper.h"

#include <QSignalBlocker>

#include "ui_CommonWidget.h"

namespace gritwell {

namespace {
// Colours, strengths, the rim width and the wobble run 0..100 for 0..1.
constexpr SliderScale kHundredths(100);
// The base band is full once it reaches half a scale, so its slider holds
// 200 times the value: 0..100 for 0..0.5.
constexpr SliderScale kTwoHundredths(200);
}  // namespace

ScalesQtWrapper::ScalesQtWrapper(ScalesTexture3D* texture, ImageArea* imageArea, Ui_ScalesWidget* ui,
                                 QWidget* page, QObject* parent)
    : QtWrapperBase(texture, imageArea, page, parent), ui_(ui), texture_(texture) {
    connect(commonUi_->newInteractiveUpdate, &QPushButton::toggled, this, &ScalesQtWrapper::interactiveUpdateToggled);
    connect(ui_->scaleShape, &QComboBox::currentIndexChanged, this, &ScalesQtWrapper::scaleShapeChanged);
    connect(ui_->baseDimension, &QSlider::valueChanged, this, &ScalesQtWrapper::baseDimensionChanged);
    connect(ui_->edgeDimension, &QSlider::valueChanged, this, &ScalesQtWrapper::edgeDimensionChanged);
    connect(ui_->shadingAlongEnable, &QPushButton::toggled, this, &ScalesQtWrapper::shadingAlongEnableToggled);
    connect(ui_->shadingAlongStrength, &QSlider::valueChanged, this, &ScalesQtWrapper::shadingAlongStrengthChanged);
    connect(ui_->shadingAcrossEnable, &QPushButton::toggled, this, &ScalesQtWrapper::shadingAcrossEnableToggled);
    connect(ui_->shadingAcrossStrength, &QSlider::valueChanged, this, &ScalesQtWrapper::shadingAcrossStrengthChanged);
    connect(ui_->scaleVariabilityEnable, &QPushButton::toggled, this, &ScalesQtWrapper::scaleVariabilityEnableToggled);
    connect(ui_->scaleVariabilityFrequency, &QSlider::valueChanged, this,
            &ScalesQtWrapper::scaleVariabilityFrequencyChanged);
    connect(ui_->scaleVariabilityAmplitude, &QSlider::valueChanged, this,
            &ScalesQtWrapper::scaleVariabilityAmplitudeChanged);
    connect(ui_->baseColor, &QSlider::valueChanged, this, &ScalesQtWrapper::baseColorChanged);
    connect(ui_->baseRandomizeColors, &QPushButton::toggled, this, &ScalesQtWrapper::baseRandomizeColorsToggled);
    connect(ui_->baseMinColor, &QSlider::valueChanged, this, &ScalesQtWrapper::baseMinColorChanged);
    connect(ui_->baseMaxColor, &QSlider::valueChanged, this, &ScalesQtWrapper::baseMaxColorChanged);
    connect(ui_->bodyColor, &QSlider::valueChanged, this, &ScalesQtWrapper::bodyColorChanged);
    connect(ui_->bodyRandomizeColors, &QPushButton::toggled, this, &ScalesQtWrapper::bodyRandomizeColorsToggled);
    connect(ui_->bodyMinColor, &QSlider::valueChanged, this, &ScalesQtWrapper::bodyMinColorChanged);
    connect(ui_->bodyMaxColor, &QSlider::valueChanged, this, &ScalesQtWrapper::bodyMaxColorChanged);
    connect(ui_->edgeColor, &QSlider::valueChanged, this, &ScalesQtWrapper::edgeColorChanged);
    connect(ui_->edgeRandomizeColors, &QPushButton::toggled, this, &ScalesQtWrapper::edgeRandomizeColorsToggled);
    connect(ui_->edgeMinColor, &QSlider::valueChanged, this, &ScalesQtWrapper::edgeMinColorChanged);
    connect(ui_->edgeMaxColor, &QSlider::valueChanged, this, &ScalesQtWrapper::edgeMaxColorChanged);
    addValueBoxes(kTwoHundredths, {ui_->baseDimension});
    addValueBoxes(kHundredths, {ui_->edgeDimension, ui_->shadingAlongStrength, ui_->shadingAcrossStrength,
                                ui_->scaleVariabilityFrequency, ui_->scaleVariabilityAmplitude, ui_->baseColor,
                                ui_->baseMinColor, ui_->baseMaxColor, ui_->bodyColor, ui_->bodyMinColor,
                                ui_->bodyMaxColor, ui_->edgeColor, ui_->edgeMinColor, ui_->edgeMaxColor});
    describeControls();
}

void ScalesQtWrapper::updateUI() {
    {
        // Loading shows the record; it must not write the controls' rounded
        // values back into it, nor let the minimum/maximum pairing rewrite a
        // stored range while the two sliders are half loaded.
        const QSignalBlocker b0(ui_->scaleShape), b1(ui_->shadingAlongEnable), b2(ui_->shadingAcrossEnable),
            b3(ui_->scaleVariabilityEnable), b4(ui_->baseRandomizeColors), b5(ui_->bodyRandomizeColors),
            b6(ui_->edgeRandomizeColors);
        // Records may hold any shape number; every one but 0 draws circular
        // arcs, and the list shows it so without changing the record.
        ui_->scaleShape->setCurrentIndex(texture_->getScaleShape() == ScalesTexture3D::SCALE_SHAPE_SEMICIRCLE
                                             ? ScalesTexture3D::SCALE_SHAPE_SEMICIRCLE
                                             : ScalesTexture3D::SCALE_SHAPE_NORMAL);
        loadSlider(ui_->baseDimension, texture_->getBaseDimension());
        loadSlider(ui_->edgeDimension, texture_->getEdgeDimension());
        ui_->shadingAlongEnable->setChecked(texture_->getShadingAlongEnabled());
        loadSlider(ui_->shadingAlongStrength, texture_->getShadingAlongStrength());
        ui_->shadingAcrossEnable->setChecked(texture_->getShadingAcrossEnabled());
        loadSlider(ui_->shadingAcrossStrength, texture_->getShadingAcrossStrength());
        ui_->scaleVariabilityEnable->setChecked(texture_->getScaleVariabilityEnabled());
        loadSlider(ui_->scaleVariabilityFrequency, texture_->getScaleVariabilityFrequency());
        loadSlider(ui_->scaleVariabilityAmplitude, texture_->getScaleVariabilityAmplitude());
        loadSlider(ui_->baseColor, texture_->getBaseColor());
        ui_->baseRandomizeColors->setChecked(texture_->getBaseRandomizeColors());
        loadSlider(ui_->baseMinColor, texture_->getBaseMinColor());
        loadSlider(ui_->baseMaxColor, texture_->getBaseMaxColor());
        loadSlider(ui_->bodyColor, texture_->getBodyColor());
        ui_->bodyRandomizeColors->setChecked(texture_->getBodyRandomizeColors());
        loadSlider(ui_->bodyMinColor, texture_->getBodyMinColor());
        loadSlider(ui_->bodyMaxColor, texture_->getBodyMaxColor());
        loadSlider(ui_->edgeColor, texture_->getEdgeColor());
        ui_->edgeRandomizeColors->setChecked(texture_->getEdgeRandomizeColors());
        loadSlider(ui_->edgeMinColor, texture_->getEdgeMinColor());
        loadSlider(ui_->edgeMaxColor, texture_->getEdgeMaxColor());
    }
    const bool interactive = texture_->interactiveUpdate();
    commonUi_->newInteractiveUpdate->setChecked(interactive);
    setInteractivity(interactive);
}

void ScalesQtWrapper::setInteractivity(bool on) {
    for (QSlider* slider :
         {ui_->baseDimension, ui_->edgeDimension, ui_->shadingAlongStrength, ui_->shadingAcrossStrength,
          ui_->scaleVariabilityFrequency, ui_->scaleVariabilityAmplitude, ui_->baseColor, ui_->baseMinColor,
          ui_->baseMaxColor, ui_->bodyColor, ui_->bodyMinColor, ui_->bodyMaxColor, ui_->edgeColor, ui_->edgeMinColor,
          ui_->edgeMaxColor})
        slider->setTracking(on);
}

void ScalesQtWrapper::interactiveUpdateToggled(bool on) {
    texture_->setInteractiveUpdate(on);
    setInteractivity(on);
    redraw();
}

// "Semicircle" is item 0 and SCALE_SHAPE_SEMICIRCLE; the index is stored as is.
void ScalesQtWrapper::scaleShapeChanged(int index) {
    texture_->setScaleShape(static_cast<ScalesTexture3D::ScaleShape>(index));
    redraw();
}

void ScalesQtWrapper::baseDimensionChanged(int value) {
    texture_->setBaseDimension(kTwoHundredths.word(value));
    redraw();
}

void ScalesQtWrapper::edgeDimensionChanged(int value) {
    texture_->setEdgeDimension(kHundredths.word(value));
    redraw();
}

void ScalesQtWrapper::shadingAlongEnableToggled(bool on) {
    texture_->setShadingAlongEnabled(on);
    redraw();
}

void ScalesQtWrapper::shadingAlongStrengthChanged(int value) {
    texture_->setShadingAlongStrength(kHundredths.word(value));
    redraw();
}

void ScalesQtWrapper::shadingAcrossEnableToggled(bool on) {
    texture_->setShadingAcrossEnabled(on);
    redraw();
}

void ScalesQtWrapper::shadingAcrossStrengthChanged(int value) {
    texture_->setShadingAcrossStrength(kHundredths.word(value));
    redraw();
}

void ScalesQtWrapper::scaleVariabilityEnableToggled(bool on) {
    texture_->setScaleVariabilityEnabled(on);
    redraw();
}

void ScalesQtWrapper::scaleVariabilityFrequencyChanged(int value) {
    texture_->setScaleVariabilityFrequency(kHundredths.word(value));
    redraw();
}

void ScalesQtWrapper::scaleVariabilityAmplitudeChanged(int value) {
    texture_->setScaleVariabilityAmplitude(kHundredths.word(value));
    redraw();
}

// ---- base colours ----

void ScalesQtWrapper::baseColorChanged(int value) {
    texture_->setBaseColor(kHundredths.word(value));
    redraw();
}

void ScalesQtWrapper::baseRandomizeColorsToggled(bool on) {
    texture_->setBaseRandomizeColors(on);
    redraw();
}

void ScalesQtWrapper::baseMinColorChanged(int value) {
    texture_->setBaseMinColor(kHundredths.word(value));
    if (value > ui_->baseMaxColor->value()) ui_->baseMaxColor->setValue(value);
    redraw();
}

void ScalesQtWrapper::baseMaxColorChanged(int value) {
    texture_->setBaseMaxColor(kHundredths.word(value));
    if (value < ui_->baseMinColor->value()) ui_->baseMinColor->setValue(value);
    redraw();
}

// ---- body colours ----

void ScalesQtWrapper::bodyColorChanged(int value) {
    texture_->setBodyColor(kHundredths.word(value));
    redraw();
}

void ScalesQtWrapper::bodyRandomizeColorsToggled(bool on) {
    texture_->setBodyRandomizeColors(on);
    redraw();
}

void ScalesQtWrapper::bodyMinColorChanged(int value) {
    texture_->setBodyMinColor(kHundredths.word(value));
    if (value > ui_->bodyMaxColor->value()) ui_->bodyMaxColor->setValue(value);
    redraw();
}

void ScalesQtWrapper::bodyMaxColorChanged(int value) {
    texture_->setBodyMaxColor(kHundredths.word(value));
    if (value < ui_->bodyMinColor->value()) ui_->bodyMinColor->setValue(value);
    redraw();
}

// ---- rim colours ----

void ScalesQtWrapper::edgeColorChanged(int value) {
    texture_->setEdgeColor(kHundredths.word(value));
    redraw();
}

void ScalesQtWrapper::edgeRandomizeColorsToggled(bool on) {
    texture_->setEdgeRandomizeColors(on);
    redraw();
}

void ScalesQtWrapper::edgeMinColorChanged(int value) {
    texture_->setEdgeMinColor(kHundredths.word(value));
    if (value > ui_->edgeMaxColor->value()) ui_->edgeMaxColor->setValue(value);
    redraw();
}

void ScalesQtWrapper::edgeMaxColorChanged(int value) {
    texture_->setEdgeMaxColor(kHundredths.word(value));
    if (value < ui_->edgeMinColor->value()) ui_->edgeMinColor->setValue(value);
    redraw();
}

}  // namespace gritwell
