#include "dialog/panels/WeaveQtWrapper.h"

#include <QSignalBlocker>

#include "core/FloatToInt.h"
#include "ui_CommonWidget.h"

namespace gritwell {

namespace {
// Colour, width and strength sliders run 0..100 for 0..1.
constexpr float kSliderUnits = 100.0f;

int toSlider(float value) { return truncToInt(static_cast<double>(value * kSliderUnits)); }
float fromSlider(int value) { return static_cast<float>(value) / kSliderUnits; }
}  // namespace

WeaveQtWrapper::WeaveQtWrapper(WeaveTexture3D* texture, ImageArea* imageArea, Ui_WeaveWidget* ui, QWidget* page,
                               QObject* parent)
    : QtWrapperBase(texture, imageArea, page, parent), ui_(ui), texture_(texture) {
    connect(commonUi_->newInteractiveUpdate, &QPushButton::toggled, this, &WeaveQtWrapper::interactiveUpdateToggled);
    connect(ui_->pattern, &QComboBox::currentIndexChanged, this, &WeaveQtWrapper::patternChanged);
    connect(ui_->backgroundColor, &QSlider::valueChanged, this, &WeaveQtWrapper::backgroundColorChanged);
    connect(ui_->horizontalColor, &QSlider::valueChanged, this, &WeaveQtWrapper::horizontalColorChanged);
    connect(ui_->verticalColor, &QSlider::valueChanged, this, &WeaveQtWrapper::verticalColorChanged);
    connect(ui_->horizontalWidth, &QSlider::valueChanged, this, &WeaveQtWrapper::horizontalWidthChanged);
    connect(ui_->verticalWidth, &QSlider::valueChanged, this, &WeaveQtWrapper::verticalWidthChanged);
    connect(ui_->horizontalRandomize, &QPushButton::toggled, this, &WeaveQtWrapper::horizontalRandomizeToggled);
    connect(ui_->horizontalMinColor, &QSlider::valueChanged, this, &WeaveQtWrapper::horizontalMinColorChanged);
    connect(ui_->horizontalMaxColor, &QSlider::valueChanged, this, &WeaveQtWrapper::horizontalMaxColorChanged);
    connect(ui_->verticalRandomize, &QPushButton::toggled, this, &WeaveQtWrapper::verticalRandomizeToggled);
    connect(ui_->verticalMinColor, &QSlider::valueChanged, this, &WeaveQtWrapper::verticalMinColorChanged);
    connect(ui_->verticalMaxColor, &QSlider::valueChanged, this, &WeaveQtWrapper::verticalMaxColorChanged);
    connect(ui_->shadingEnable, &QPushButton::toggled, this, &WeaveQtWrapper::shadingEnableToggled);
    connect(ui_->shadingHorizontalStrength, &QSlider::valueChanged, this,
            &WeaveQtWrapper::shadingHorizontalStrengthChanged);
    connect(ui_->shadingVerticalStrength, &QSlider::valueChanged, this,
            &WeaveQtWrapper::shadingVerticalStrengthChanged);
}

void WeaveQtWrapper::updateUI() {
    {
        // Loading shows the record; it must not write the controls' rounded
        // values back into it, nor let the minimum/maximum pairing rewrite a
        // stored range while the two sliders are half loaded.
        const QSignalBlocker b0(ui_->pattern), b1(ui_->backgroundColor), b2(ui_->horizontalColor),
            b3(ui_->verticalColor), b4(ui_->horizontalWidth), b5(ui_->verticalWidth), b6(ui_->horizontalRandomize),
            b7(ui_->horizontalMinColor), b8(ui_->horizontalMaxColor), b9(ui_->verticalRandomize),
            b10(ui_->verticalMinColor), b11(ui_->verticalMaxColor), b12(ui_->shadingEnable),
            b13(ui_->shadingHorizontalStrength), b14(ui_->shadingVerticalStrength);
        // Records may hold any pattern number; every one but 0 weaves the
        // herringbone, and the list shows it so without changing the record.
        ui_->pattern->setCurrentIndex(texture_->getPattern() == WeaveTexture3D::WEAVE_SIMPLE
                                          ? WeaveTexture3D::WEAVE_SIMPLE
                                          : WeaveTexture3D::WEAVE_HERRINGBONE);
        ui_->backgroundColor->setValue(toSlider(texture_->getBackgroundColor()));
        ui_->horizontalColor->setValue(toSlider(texture_->getHorizontalColor()));
        ui_->verticalColor->setValue(toSlider(texture_->getVerticalColor()));
        ui_->horizontalWidth->setValue(toSlider(texture_->getHorizontalWidth()));
        ui_->verticalWidth->setValue(toSlider(texture_->getVerticalWidth()));
        ui_->horizontalRandomize->setChecked(texture_->getHorizontalRandomize());
        ui_->horizontalMinColor->setValue(toSlider(texture_->getHorizontalMinColor()));
        ui_->horizontalMaxColor->setValue(toSlider(texture_->getHorizontalMaxColor()));
        ui_->verticalRandomize->setChecked(texture_->getVerticalRandomize());
        ui_->verticalMinColor->setValue(toSlider(texture_->getVerticalMinColor()));
        ui_->verticalMaxColor->setValue(toSlider(texture_->getVerticalMaxColor()));
        ui_->shadingEnable->setChecked(texture_->getShadingEnable());
        ui_->shadingHorizontalStrength->setValue(toSlider(texture_->getShadingHorizontalStrength()));
        ui_->shadingVerticalStrength->setValue(toSlider(texture_->getShadingVerticalStrength()));
    }
    const bool interactive = texture_->interactiveUpdate();
    commonUi_->newInteractiveUpdate->setChecked(interactive);
    setInteractivity(interactive);
}

void WeaveQtWrapper::setInteractivity(bool on) {
    for (QSlider* slider : {ui_->backgroundColor, ui_->horizontalColor, ui_->verticalColor, ui_->horizontalWidth,
                            ui_->verticalWidth, ui_->horizontalMinColor, ui_->horizontalMaxColor,
                            ui_->verticalMinColor, ui_->verticalMaxColor, ui_->shadingHorizontalStrength,
                            ui_->shadingVerticalStrength})
        slider->setTracking(on);
}

void WeaveQtWrapper::interactiveUpdateToggled(bool on) {
    texture_->setInteractiveUpdate(on);
    setInteractivity(on);
    redraw();
}

// "Plain" is item 0 and WEAVE_SIMPLE; the index is stored as is.
void WeaveQtWrapper::patternChanged(int index) {
    texture_->setPattern(static_cast<WeaveTexture3D::Pattern>(index));
    redraw();
}

void WeaveQtWrapper::backgroundColorChanged(int value) {
    texture_->setBackgroundColor(fromSlider(value));
    redraw();
}

void WeaveQtWrapper::horizontalColorChanged(int value) {
    texture_->setHorizontalColor(fromSlider(value));
    redraw();
}

void WeaveQtWrapper::verticalColorChanged(int value) {
    texture_->setVerticalColor(fromSlider(value));
    redraw();
}

void WeaveQtWrapper::horizontalWidthChanged(int value) {
    texture_->setHorizontalWidth(fromSlider(value));
    redraw();
}

void WeaveQtWrapper::verticalWidthChanged(int value) {
    texture_->setVerticalWidth(fromSlider(value));
    redraw();
}

void WeaveQtWrapper::horizontalRandomizeToggled(bool on) {
    texture_->setHorizontalRandomize(on);
    redraw();
}

void WeaveQtWrapper::horizontalMinColorChanged(int value) {
    texture_->setHorizontalMinColor(fromSlider(value));
    if (value > ui_->horizontalMaxColor->value()) ui_->horizontalMaxColor->setValue(value);
    redraw();
}

void WeaveQtWrapper::horizontalMaxColorChanged(int value) {
    texture_->setHorizontalMaxColor(fromSlider(value));
    if (value < ui_->horizontalMinColor->value()) ui_->horizontalMinColor->setValue(value);
    redraw();
}

void WeaveQtWrapper::verticalRandomizeToggled(bool on) {
    texture_->setVerticalRandomize(on);
    redraw();
}

void WeaveQtWrapper::verticalMinColorChanged(int value) {
    texture_->setVerticalMinColor(fromSlider(value));
    if (value > ui_->verticalMaxColor->value()) ui_->verticalMaxColor->setValue(value);
    redraw();
}

// The setter named for this slider stores into the horizontal maximum, and
// stored records depend on that: the slot calls it as its name says and
// leaves the vertical maximum, and the horizontal Maximum slider, as they are.
void WeaveQtWrapper::verticalMaxColorChanged(int value) {
    texture_->setVerticalMaxColor(fromSlider(value));
    if (value < ui_->verticalMinColor->value()) ui_->verticalMinColor->setValue(value);
    redraw();
}

void WeaveQtWrapper::shadingEnableToggled(bool on) {
    texture_->setShadingEnable(on);
    redraw();
}

void WeaveQtWrapper::shadingHorizontalStrengthChanged(int value) {
    texture_->setShadingHorizontalStrength(fromSlider(value));
    redraw();
}

void WeaveQtWrapper::shadingVerticalStrengthChanged(int value) {
    texture_->setShadingVerticalStrength(fromSlider(value));
    redraw();
}

}  // namespace gritwell
