#include "dialog/panels/GridQtWrapper.h"

#include <QSignalBlocker>

#include "ui_CommonWidget.h"

namespace gritwell {

namespace {
// Widths and tones run 0..1 on 0..100 sliders: a line a whole cell wide
// already leaves no cell showing.
constexpr SliderScale kHundredths(100);
}  // namespace

GridQtWrapper::GridQtWrapper(GridTexture3D* texture, ImageArea* imageArea, Ui_GridWidget* ui, QWidget* page,
                             QObject* parent)
    : QtWrapperBase(texture, imageArea, page, parent), ui_(ui), texture_(texture) {
    connect(commonUi_->newInteractiveUpdate, &QPushButton::toggled, this, &GridQtWrapper::interactiveUpdateToggled);
    connect(ui_->gridWidth, &QSlider::valueChanged, this, &GridQtWrapper::gridWidthChanged);
    connect(ui_->randomizeColors, &QPushButton::toggled, this, &GridQtWrapper::randomizeColorsToggled);
    connect(ui_->minColor, &QSlider::valueChanged, this, &GridQtWrapper::minColorChanged);
    connect(ui_->maxColor, &QSlider::valueChanged, this, &GridQtWrapper::maxColorChanged);
    addValueBoxes(kHundredths, {ui_->gridWidth, ui_->minColor, ui_->maxColor});
    describeControls();
}

void GridQtWrapper::updateUI() {
    {
        // Loading shows the record; it must not write the sliders' rounded
        // values back into it, nor let the minimum/maximum pairing rewrite a
        // stored range while the two sliders are half loaded.
        const QSignalBlocker b0(ui_->randomizeColors);
        loadSlider(ui_->gridWidth, texture_->getStripeWidth());
        ui_->randomizeColors->setChecked(texture_->getRandomizeColors());
        loadSlider(ui_->minColor, texture_->getMinColor());
        loadSlider(ui_->maxColor, texture_->getMaxColor());
    }
    const bool interactive = texture_->interactiveUpdate();
    commonUi_->newInteractiveUpdate->setChecked(interactive);
    setInteractivity(interactive);
}

void GridQtWrapper::setInteractivity(bool on) {
    for (QSlider* slider : {ui_->gridWidth, ui_->minColor, ui_->maxColor}) slider->setTracking(on);
}

void GridQtWrapper::interactiveUpdateToggled(bool on) {
    texture_->setInteractiveUpdate(on);
    setInteractivity(on);
    redraw();
}

void GridQtWrapper::gridWidthChanged(int value) {
    texture_->setStripeWidth(kHundredths.word(value));
    redraw();
}

void GridQtWrapper::randomizeColorsToggled(bool on) {
    texture_->setRandomizeColors(on);
    redraw();
}

void GridQtWrapper::minColorChanged(int value) {
    texture_->setMinColor(kHundredths.word(value));
    if (value > ui_->maxColor->value()) ui_->maxColor->setValue(value);
    redraw();
}

void GridQtWrapper::maxColorChanged(int value) {
    texture_->setMaxColor(kHundredths.word(value));
    if (value < ui_->minColor->value()) ui_->minColor->setValue(value);
    redraw();
}

}  // namespace gritwell
