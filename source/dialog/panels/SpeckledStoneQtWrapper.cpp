#include "dialog/panels/SpeckledStoneQtWrapper.h"

#include <QSignalBlocker>

#include "core/FloatToInt.h"
#include "ui_CommonWidget.h"

namespace gritwell {

namespace {
// Intensities run 0..1 on 0..100 sliders.
constexpr float kSliderUnits = 100.0f;

int toSlider(float value) { return truncToInt(static_cast<double>(value * kSliderUnits)); }
float fromSlider(int value) { return static_cast<float>(value) / kSliderUnits; }
}  // namespace

SpeckledStoneQtWrapper::SpeckledStoneQtWrapper(SpeckledStoneTexture3D* texture, ImageArea* imageArea,
                                               Ui_SpeckledStoneWidget* ui, QWidget* page, QObject* parent)
    : QtWrapperBase(texture, imageArea, page, parent), ui_(ui), texture_(texture) {
    connect(commonUi_->newInteractiveUpdate, &QPushButton::toggled, this,
            &SpeckledStoneQtWrapper::interactiveUpdateToggled);
    connect(ui_->scale, &QDoubleSpinBox::valueChanged, this, &SpeckledStoneQtWrapper::scaleChanged);
    connect(ui_->nShades, &QSpinBox::valueChanged, this, &SpeckledStoneQtWrapper::nShadesChanged);
    connect(ui_->exponent, &QSpinBox::valueChanged, this, &SpeckledStoneQtWrapper::exponentChanged);
    connect(ui_->grainColor, &QSlider::valueChanged, this, &SpeckledStoneQtWrapper::grainColorChanged);
    connect(ui_->baseColor, &QSlider::valueChanged, this, &SpeckledStoneQtWrapper::baseColorChanged);
}

void SpeckledStoneQtWrapper::updateUI() {
    {
        // Show the record without writing rounded control values back into it.
        // The two whole-number fields read back as floats.
        const QSignalBlocker b0(ui_->scale), b1(ui_->nShades), b2(ui_->exponent), b3(ui_->grainColor),
            b4(ui_->baseColor);
        ui_->scale->setValue(texture_->scale());
        ui_->nShades->setValue(truncToInt(texture_->nShades()));
        ui_->exponent->setValue(truncToInt(texture_->exponent()));
        ui_->grainColor->setValue(toSlider(texture_->grainColor()));
        ui_->baseColor->setValue(toSlider(texture_->baseColor()));
    }
    const bool interactive = texture_->interactiveUpdate();
    commonUi_->newInteractiveUpdate->setChecked(interactive);
    setInteractivity(interactive);
}

void SpeckledStoneQtWrapper::setInteractivity(bool on) {
    ui_->scale->setKeyboardTracking(on);
    for (QSpinBox* spin : {ui_->nShades, ui_->exponent}) spin->setKeyboardTracking(on);
    for (QSlider* slider : {ui_->grainColor, ui_->baseColor}) slider->setTracking(on);
}

void SpeckledStoneQtWrapper::interactiveUpdateToggled(bool on) {
    texture_->setInteractiveUpdate(on);
    setInteractivity(on);
    redraw();
}

void SpeckledStoneQtWrapper::scaleChanged(double value) {
    texture_->setScale(static_cast<float>(value));
    redraw();
}

void SpeckledStoneQtWrapper::nShadesChanged(int value) {
    texture_->setNShades(value);
    redraw();
}

void SpeckledStoneQtWrapper::exponentChanged(int value) {
    texture_->setExponent(value);
    redraw();
}

void SpeckledStoneQtWrapper::grainColorChanged(int value) {
    texture_->setGrainColor(fromSlider(value));
    redraw();
}

void SpeckledStoneQtWrapper::baseColorChanged(int value) {
    texture_->setBaseColor(fromSlider(value));
    redraw();
}

}  // namespace gritwell
