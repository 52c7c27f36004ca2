#include "dialog/panels/PenroseRhombusQtWrapper.h"

#include <QSignalBlocker>

#include "ui_CommonWidget.h"

namespace gritwell {

namespace {
// Tone sliders run 0..100 for 0..1; the edge width's 0..100 for 0..0.1, a
// tenth of a tile edge being already a heavy line.
constexpr SliderScale kHundredths(100);
constexpr SliderScale kThousandths(1000);
}  // namespace

PenroseRhombusQtWrapper::PenroseRhombusQtWrapper(PenroseRhombusTexture3D* texture, ImageArea* imageArea,
                                                 Ui_PenroseRhombusWidget* ui, QWidget* page, QObject* parent)
    : QtWrapperBase(texture, imageArea, page, parent), ui_(ui), texture_(texture) {
    connect(commonUi_->newInteractiveUpdate, &QPushButton::toggled, this,
            &PenroseRhombusQtWrapper::interactiveUpdateToggled);
    connect(ui_->skinnyColor, &QSlider::valueChanged, this, &PenroseRhombusQtWrapper::skinnyColorChanged);
    connect(ui_->fatColor, &QSlider::valueChanged, this, &PenroseRhombusQtWrapper::fatColorChanged);
    connect(ui_->skinnyRandomize, &QPushButton::toggled, this, &PenroseRhombusQtWrapper::skinnyRandomizeToggled);
    connect(ui_->skinnyMinColor, &QSlider::valueChanged, this, &PenroseRhombusQtWrapper::skinnyMinColorChanged);
    connect(ui_->skinnyMaxColor, &QSlider::valueChanged, this, &PenroseRhombusQtWrapper::skinnyMaxColorChanged);
    connect(ui_->fatRandomize, &QPushButton::toggled, this, &PenroseRhombusQtWrapper::fatRandomizeToggled);
    connect(ui_->fatMinColor, &QSlider::valueChanged, this, &PenroseRhombusQtWrapper::fatMinColorChanged);
    connect(ui_->fatMaxColor, &QSlider::valueChanged, this, &PenroseRhombusQtWrapper::fatMaxColorChanged);
    connect(ui_->edgeWidth, &QSlider::valueChanged, this, &PenroseRhombusQtWrapper::edgeWidthChanged);
    connect(ui_->edgeColor, &QSlider::valueChanged, this, &PenroseRhombusQtWrapper::edgeColorChanged);
    addValueBoxes(kHundredths, {ui_->skinnyColor, ui_->fatColor, ui_->edgeColor, ui_->skinnyMinColor,
                                ui_->skinnyMaxColor, ui_->fatMinColor, ui_->fatMaxColor});
    addValueBoxes(kThousandths, {ui_->edgeWidth});
    describeControls();
}

void PenroseRhombusQtWrapper::updateUI() {
    {
        // Loading shows the record; it must not write the controls' rounded
        // values back into it, nor let the minimum/maximum pairing rewrite a
        // stored range while the two sliders are half loaded.
        const QSignalBlocker b0(ui_->skinnyRandomize), b1(ui_->fatRandomize);
        loadSlider(ui_->skinnyColor, texture_->getSkinnyColor());
        loadSlider(ui_->fatColor, texture_->getFatColor());
        ui_->skinnyRandomize->setChecked(texture_->getSkinnyRandomize());
        loadSlider(ui_->skinnyMinColor, texture_->getSkinnyMinColor());
        loadSlider(ui_->skinnyMaxColor, texture_->getSkinnyMaxColor());
        ui_->fatRandomize->setChecked(texture_->getFatRandomize());
        loadSlider(ui_->fatMinColor, texture_->getFatMinColor());
        loadSlider(ui_->fatMaxColor, texture_->getFatMaxColor());
        loadSlider(ui_->edgeWidth, texture_->getEdgeWidth());
        loadSlider(ui_->edgeColor, texture_->getEdgeColor());
    }
    const bool interactive = texture_->interactiveUpdate();
    commonUi_->newInteractiveUpdate->setChecked(interactive);
    setInteractivity(interactive);
}

void PenroseRhombusQtWrapper::setInteractivity(bool on) {
    for (QSlider* slider : {ui_->skinnyColor, ui_->fatColor, ui_->skinnyMinColor, ui_->skinnyMaxColor,
                            ui_->fatMinColor, ui_->fatMaxColor, ui_->edgeWidth, ui_->edgeColor})
        slider->setTracking(on);
}

void PenroseRhombusQtWrapper::interactiveUpdateToggled(bool on) {
    texture_->setInteractiveUpdate(on);
    setInteractivity(on);
    redraw();
}

void PenroseRhombusQtWrapper::skinnyColorChanged(int value) {
    texture_->setSkinnyColor(kHundredths.word(value));
    redraw();
}

void PenroseRhombusQtWrapper::fatColorChanged(int value) {
    texture_->setFatColor(kHundredths.word(value));
    redraw();
}

void PenroseRhombusQtWrapper::skinnyRandomizeToggled(bool on) {
    texture_->setSkinnyRandomize(on);
    redraw();
}

void PenroseRhombusQtWrapper::skinnyMinColorChanged(int value) {
    texture_->setSkinnyMinColor(kHundredths.word(value));
    if (value > ui_->skinnyMaxColor->value()) ui_->skinnyMaxColor->setValue(value);
    redraw();
}

void PenroseRhombusQtWrapper::skinnyMaxColorChanged(int value) {
    texture_->setSkinnyMaxColor(kHundredths.word(value));
    if (value < ui_->skinnyMinColor->value()) ui_->skinnyMinColor->setValue(value);
    redraw();
}

void PenroseRhombusQtWrapper::fatRandomizeToggled(bool on) {
    texture_->setFatRandomize(on);
    redraw();
}

void PenroseRhombusQtWrapper::fatMinColorChanged(int value) {
    texture_->setFatMinColor(kHundredths.word(value));
    if (value > ui_->fatMaxColor->value()) ui_->fatMaxColor->setValue(value);
    redraw();
}

void PenroseRhombusQtWrapper::fatMaxColorChanged(int value) {
    texture_->setFatMaxColor(kHundredths.word(value));
    if (value < ui_->fatMinColor->value()) ui_->fatMinColor->setValue(value);
    redraw();
}

void PenroseRhombusQtWrapper::edgeWidthChanged(int value) {
    texture_->setEdgeWidth(kThousandths.word(value));
    redraw();
}

void PenroseRhombusQtWrapper::edgeColorChanged(int value) {
    texture_->setEdgeColor(kHundredths.word(value));
    redraw();
}

}  // namespace gritwell
