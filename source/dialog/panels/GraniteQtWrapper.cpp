#include "dialog/panels/GraniteQtWrapper.h"

#include <QSignalBlocker>

#include "core/FloatToInt.h"
#include "ui_CommonWidget.h"

namespace gritwell {

namespace {
// Hundredths: the frequency slider runs 1..800 for 0.01..8. It stops short
// of 0, where every speckle weight is 0 / 0.
constexpr float kSliderUnits = 100.0f;

int toSlider(float value) { return truncToInt(static_cast<double>(value * kSliderUnits)); }
float fromSlider(int value) { return static_cast<float>(value) / kSliderUnits; }
}  // namespace

GraniteQtWrapper::GraniteQtWrapper(GraniteTexture3D* texture, ImageArea* imageArea, Ui_GraniteWidget* ui,
                                   QWidget* page, QObject* parent)
    : QtWrapperBase(texture, imageArea, page, parent), ui_(ui), texture_(texture) {
    connect(commonUi_->newInteractiveUpdate, &QPushButton::toggled, this, &GraniteQtWrapper::interactiveUpdateToggled);
    connect(ui_->octaves, &QSpinBox::valueChanged, this, &GraniteQtWrapper::octavesChanged);
    connect(ui_->frequency, &QSlider::valueChanged, this, &GraniteQtWrapper::frequencyChanged);
}

void GraniteQtWrapper::updateUI() {
    {
        // Show the record without writing rounded control values back into it.
        const QSignalBlocker b0(ui_->octaves), b1(ui_->frequency);
        ui_->octaves->setValue(texture_->getOctaves());
        ui_->frequency->setValue(toSlider(texture_->getFrequency()));
    }
    const bool interactive = texture_->interactiveUpdate();
    commonUi_->newInteractiveUpdate->setChecked(interactive);
    setInteractivity(interactive);
}

void GraniteQtWrapper::setInteractivity(bool on) {
    ui_->octaves->setKeyboardTracking(on);
    ui_->frequency->setTracking(on);
}

void GraniteQtWrapper::interactiveUpdateToggled(bool on) {
    texture_->setInteractiveUpdate(on);
    setInteractivity(on);
    redraw();
}

void GraniteQtWrapper::octavesChanged(int value) {
    texture_->setOctaves(value);
    redraw();
}

void GraniteQtWrapper::frequencyChanged(int value) {
    texture_->setFrequency(fromSlider(value));
    redraw();
}

}  // namespace gritwell
