#include "dialog/panels/PsychedelicQtWrapper.h"

#include <QSignalBlocker>

#include "ui_CommonWidget.h"

namespace gritwell {

namespace {
// Colour sliders run 0..100 for 0..1.
constexpr SliderScale kHundredths(100);
}  // namespace

PsychedelicQtWrapper::PsychedelicQtWrapper(PsychedelicTexture3D* texture, ImageArea* imageArea,
                                           Ui_PsychedelicWidget* ui, QWidget* page, QObject* parent)
    : QtWrapperBase(texture, imageArea, page, parent), ui_(ui), texture_(texture) {
    connect(commonUi_->newInteractiveUpdate, &QPushButton::toggled, this,
            &PsychedelicQtWrapper::interactiveUpdateToggled);
    connect(ui_->frequency, &QDoubleSpinBox::valueChanged, this, &PsychedelicQtWrapper::frequencyChanged);
    connect(ui_->minColor, &QSlider::valueChanged, this, &PsychedelicQtWrapper::minColorChanged);
    connect(ui_->maxColor, &QSlider::valueChanged, this, &PsychedelicQtWrapper::maxColorChanged);
    addValueBoxes(kHundredths, {ui_->minColor, ui_->maxColor});
    describeControls();
}

void PsychedelicQtWrapper::updateUI() {
    {
        // Show the record as stored: a record whose minimum lies above its
        // maximum (an inverted mapping) stays so until the user moves one.
        const QSignalBlocker b0(ui_->frequency);
        ui_->frequency->setValue(texture_->getFrequency());
        loadSlider(ui_->minColor, texture_->getMinColor());
        loadSlider(ui_->maxColor, texture_->getMaxColor());
    }
    const bool interactive = texture_->interactiveUpdate();
    commonUi_->newInteractiveUpdate->setChecked(interactive);
    setInteractivity(interactive);
}

void PsychedelicQtWrapper::setInteractivity(bool on) {
    ui_->frequency->setKeyboardTracking(on);
    for (QSlider* slider : {ui_->minColor, ui_->maxColor}) slider->setTracking(on);
}

void PsychedelicQtWrapper::interactiveUpdateToggled(bool on) {
    texture_->setInteractiveUpdate(on);
    setInteractivity(on);
    redraw();
}

void PsychedelicQtWrapper::frequencyChanged(double value) {
    texture_->setFrequency(static_cast<float>(value));
    redraw();
}

void PsychedelicQtWrapper::minColorChanged(int value) {
    texture_->setMinColor(kHundredths.word(value));
    if (value > ui_->maxColor->value()) ui_->maxColor->setValue(value);
    redraw();
}

void PsychedelicQtWrapper::maxColorChanged(int value) {
    texture_->setMaxColor(kHundredths.word(value));
    if (value < ui_->minColor->value()) ui_->minColor->setValue(value);
    redraw();
}

}  // namespace gritwell
