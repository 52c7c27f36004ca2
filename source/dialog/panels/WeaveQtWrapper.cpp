#include "dialog/panels/WeaveQtWrapper.h"

#include <QSignalBlocker>

#include "ui_CommonWidget.h"

namespace gritwell {

namespace {
// Colour, width and strength sliders run 0..100 for 0..1.
constexpr SliderScale kHundredths(100);
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
    addValueBoxes(kHundredths,
                  {ui_->horizontalWidth, ui_->verticalWidth, ui_->backgroundColor, ui_->horizontalColor,
                   ui_->verticalColor, ui_->shadingHorizontalStrength, ui_->shadingVerticalStrength,
                   ui_->horizontalMinColor, ui_->horizontalMaxColor, ui_->verticalMinColor, ui_->verticalMaxColor});
    describeControls();
}

void WeaveQtWrapper::updateUI() {
    {
        // Loading shows the record; it must not write the controls' rounded
        // values back into it, nor let the minimum/maximum pairing rewrite a
        // stored range while the two sliders are half loaded.
        const QSignalBlocker b0(ui_->pattern), b1(ui_->horizontalRandomize), b2(ui_->verticalRandomize),
            b3(ui_->shadingEnable);
        // Records may hold any pattern number; every one but 0 weaves the
        // herringbone, and the list shows it so without changing the record.
        ui_->pattern->setCurrentIndex(texture_->getPattern() == WeaveTexture3D::WEAVE_SIMPLE
                                          ? WeaveTexture3D::WEAVE_SIMPLE
                                          : WeaveTexture3D::WEAVE_HERRINGBONE);
        loadSlider(ui_->backgroundColor, texture_->getBackgroundColor());
        loadSlider(ui_->horizontalColor, texture_->getHorizontalColor());
        loadSlider(ui_->verticalColor, texture_->getVerticalColor());
        loadSlider(ui_->horizontalWidth, texture_->getHorizontalWidth());
        loadSlider(ui_->verticalWidth, texture_->getVerticalWidth());
        ui_->horizontalRandomize->setChecked(texture_->getHorizontalRandomize());
        loadSlider(ui_->horizontalMinColor, texture_->getHorizontalMinColor());
        loadSlider(ui_->horizontalMaxColor, texture_->getHorizontalMaxColor());
        ui_->verticalRandomize->setChecked(texture_->getVerticalRandomize());
        loadSlider(ui_->verticalMinColor, texture_->getVerticalMinColor());
        loadSlider(ui_->verticalMaxColor, texture_->getVerticalMaxColor());
        ui_->shadingEnable->setChecked(texture_->getShadingEnable());
        loadSlider(ui_->shadingHorizontalStrength, texture_->getShadingHorizontalStrength());
        loadSlider(ui_->shadingVerticalStrength, texture_->getShadingVerticalStrength());
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
    texture_->setBackgroundColor(kHundredths.word(value));
    redraw();
}

void WeaveQtWrapper::horizontalColorChanged(int value) {
    texture_->setHorizontalColor(kHundredths.word(value));
    redraw();
}

void WeaveQtWrapper::verticalColorChanged(int value) {
    texture_->setVerticalColor(kHundredths.word(value));
    redraw();
}

void WeaveQtWrapper::horizontalWidthChanged(int value) {
    texture_->setHorizontalWidth(kHundredths.word(value));
    redraw();
}

void WeaveQtWrapper::verticalWidthChanged(int value) {
    texture_->setVerticalWidth(kHundredths.word(value));
    redraw();
}

void WeaveQtWrapper::horizontalRandomizeToggled(bool on) {
    texture_->setHorizontalRandomize(on);
    redraw();
}

void WeaveQtWrapper::horizontalMinColorChanged(int value) {
    texture_->setHorizontalMinColor(kHundredths.word(value));
    if (value > ui_->horizontalMaxColor->value()) ui_->horizontalMaxColor->setValue(value);
    redraw();
}

void WeaveQtWrapper::horizontalMaxColorChanged(int value) {
    texture_->setHorizontalMaxColor(kHundredths.word(value));
    if (value < ui_->horizontalMinColor->value()) ui_->horizontalMinColor->setValue(value);
    redraw();
}

void WeaveQtWrapper::verticalRandomizeToggled(bool on) {
    texture_->setVerticalRandomize(on);
    redraw();
}

void WeaveQtWrapper::verticalMinColorChanged(int value) {
    texture_->setVerticalMinColor(kHundredths.word(value));
    if (value > ui_->verticalMaxColor->value()) ui_->verticalMaxColor->setValue(value);
    redraw();
}

// The setter named for this slider stores into the horizontal maximum, and
// stored records depend on that: the slot calls it as its name says and
// leaves the vertical maximum, and the horizontal Maximum slider, as they are.
void WeaveQtWrapper::verticalMaxColorChanged(int value) {
    texture_->setVerticalMaxColor(kHundredths.word(value));
    if (value < ui_->verticalMinColor->value()) ui_->verticalMinColor->setValue(value);
    redraw();
}

void WeaveQtWrapper::shadingEnableToggled(bool on) {
    texture_->setShadingEnable(on);
    redraw();
}

void WeaveQtWrapper::shadingHorizontalStrengthChanged(int value) {
    texture_->setShadingHorizontalStrength(kHundredths.word(value));
    redraw();
}

void WeaveQtWrapper::shadingVerticalStrengthChanged(int value) {
    texture_->setShadingVerticalStrength(kHundredths.word(value));
    redraw();
}

}  // namespace gritwell
