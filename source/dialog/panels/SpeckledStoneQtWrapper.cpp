#include "dialog/panels/SpeckledStoneQtWrapper.h"

#include <QSignalBlocker>

#include "core/FloatToInt.h"
#include "ui_CommonWidget.h"

namespace gritwell {

namespace {
// Intensities run 0..1 on 0..100 sliders.
constexpr SliderScale kHundredths(100);
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
    addValueBoxes(kHundredths, {ui_->grainColor, ui_->baseColor});
    describeControls();
}

void SpeckledStoneQtWrapper::updateUI() {
    {
        // Show the record without writing rounded control values back into it.
        // The two whole-number fields read back as floats.
        const QSignalBlocker b0(ui_->scale), b1(ui_->nShades), b2(ui_->exponent);
        ui_->scale->setValue(texture_->scale());
        ui_->nShades->setValue(truncToInt(texture_->nShades()));
        ui_->exponent->setValue(truncToInt(texture_->exponent()));
        loadSlider(ui_->grainColor, texture_->grainColor());
        loadSlider(ui_->baseColor, texture_->baseColor());
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
    texture_->setGrainColor(kHundredths.word(value));
    redraw();
}

void SpeckledStoneQtWrapper::baseColorChanged(int value) {
    texture_->setBaseColor(kHundredths.word(value));
    redraw();
}

}  // namespace gritwell
