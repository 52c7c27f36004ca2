#include "dialog/panels/PenroseRhombusQtWrapper.h"

#include <QSignalBlocker>

#include "core/FloatToInt.h"
#include "ui_CommonWidget.h"

namespace gritwell {

namespace {
// Tone sliders run 0..100 for 0..1; the edge width's 0..100 for 0..0.1, a
// tenth of a tile edge being already a heavy line.
constexpr float kSliderUnits = 100.0f;
constexpr float kEdgeWidthUnits = 1000.0f;

int toSlider(float value, float units = kSliderUnits) { return truncToInt(static_cast<double>(value * units)); }
float fromSlider(int value, float units = kSliderUnits) { return static_cast<float>(value) / units; }
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
}

void PenroseRhombusQtWrapper::updateUI() {
    {
        // Loading shows the record; it must not write the controls' rounded
        // values back into it, nor let the minimum/maximum pairing rewrite a
        // stored range while the two sliders are half loaded.
        const QSignalBlocker b0(ui_->skinnyColor), b1(ui_->fatColor), b2(ui_->skinnyRandomize),
            b3(ui_->skinnyMinColor), b4(ui_->skinnyMaxColor), b5(ui_->fatRandomize), b6(ui_->fatMinColor),
            b7(ui_->fatMaxColor), b8(ui_->edgeWidth), b9(ui_->edgeColor);
        ui_->skinnyColor->setValue(toSlider(texture_->getSkinnyColor()));
        ui_->fatColor->setValue(toSlider(texture_->getFatColor()));
        ui_->skinnyRandomize->setChecked(texture_->getSkinnyRandomize());
        ui_->skinnyMinColor->setValue(toSlider(texture_->getSkinnyMinColor()));
        ui_->skinnyMaxColor->setValue(toSlider(texture_->getSkinnyMaxColor()));
        ui_->fatRandomize->setChecked(texture_->getFatRandomize());
        ui_->fatMinColor->setValue(toSlider(texture_->getFatMinColor()));
        ui_->fatMaxColor->setValue(toSlider(texture_->getFatMaxColor()));
        ui_->edgeWidth->setValue(toSlider(texture_->getEdgeWidth(), kEdgeWidthUnits));
        ui_->edgeColor->setValue(toSlider(texture_->getEdgeColor()));
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
    texture_->setSkinnyColor(fromSlider(value));
    redraw();
}

void PenroseRhombusQtWrapper::fatColorChanged(int value) {
    texture_->setFatColor(fromSlider(value));
    redraw();
}

void PenroseRhombusQtWrapper::skinnyRandomizeToggled(bool on) {
    texture_->setSkinnyRandomize(on);
    redraw();
}

void PenroseRhombusQtWrapper::skinnyMinColorChanged(int value) {
    texture_->setSkinnyMinColor(fromSlider(value));
    if (value > ui_->skinnyMaxColor->value()) ui_->skinnyMaxColor->setValue(value);
    redraw();
}

void PenroseRhombusQtWrapper::skinnyMaxColorChanged(int value) {
    texture_->setSkinnyMaxColor(fromSlider(value));
    if (value < ui_->skinnyMinColor->value()) ui_->skinnyMinColor->setValue(value);
    redraw();
}

void PenroseRhombusQtWrapper::fatRandomizeToggled(bool on) {
    texture_->setFatRandomize(on);
    redraw();
}

void PenroseRhombusQtWrapper::fatMinColorChanged(int value) {
    texture_->setFatMinColor(fromSlider(value));
    if (value > ui_->fatMaxColor->value()) ui_->fatMaxColor->setValue(value);
    redraw();
}

void PenroseRhombusQtWrapper::fatMaxColorChanged(int value) {
    texture_->setFatMaxColor(fromSlider(value));
    if (value < ui_->fatMinColor->value()) ui_->fatMinColor->setValue(value);
    redraw();
}

void PenroseRhombusQtWrapper::edgeWidthChanged(int value) {
    texture_->setEdgeWidth(fromSlider(value, kEdgeWidthUnits));
    redraw();
}

void PenroseRhombusQtWrapper::edgeColorChanged(int value) {
    texture_->setEdgeColor(fromSlider(value));
    redraw();
}

}  // namespace gritwell
