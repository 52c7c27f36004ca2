#include "dialog/panels/GraniteQtWrapper.h"

#include <QSignalBlocker>

#include "ui_CommonWidget.h"

namespace gritwell {

namespace {
// Hundredths: the frequency slider runs 1..800 for 0.01..8. It stops short
// of 0, where every speckle weight is 0 / 0.
constexpr SliderScale kHundredths(100);
}  // namespace

GraniteQtWrapper::GraniteQtWrapper(GraniteTexture3D* texture, ImageArea* imageArea, Ui_GraniteWidget* ui,
                                   QWidget* page, QObject* parent)
    : QtWrapperBase(texture, imageArea, page, parent), ui_(ui), texture_(texture) {
    connect(commonUi_->newInteractiveUpdate, &QPushButton::toggled, this, &GraniteQtWrapper::interactiveUpdateToggled);
    connect(ui_->octaves, &QSpinBox::valueChanged, this, &GraniteQtWrapper::octavesChanged);
    connect(ui_->frequency, &QSlider::valueChanged, this, &GraniteQtWrapper::frequencyChanged);
    addValueBoxes(kHundredths, {ui_->frequency});
    describeControls();
}

void GraniteQtWrapper::updateUI() {
    {
        // Show the record without writing rounded control values back into it.
        const QSignalBlocker b0(ui_->octaves);
        ui_->octaves->setValue(texture_->getOctaves());
        loadSlider(ui_->frequency, texture_->getFrequency());
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
    texture_->setFrequency(kHundredths.word(value));
    redraw();
}

}  // namespace gritwell
