#include "dialog/panels/ZigzagQtWrapper.h"

#include <QSignalBlocker>

#include "ui_CommonWidget.h"

namespace gritwell {

namespace {
// Variability 0..1 on a 0..100 slider: at 1 a randomized tone reaches 0 or 1
// without clamping, the widest spread that still keeps the two tones apart.
constexpr SliderScale kHundredths(100);
}  // namespace

ZigzagQtWrapper::ZigzagQtWrapper(ZigzagTexture3D* texture, ImageArea* imageArea, Ui_ZigzagWidget* ui, QWidget* page,
                                 QObject* parent)
    : QtWrapperBase(texture, imageArea, page, parent), ui_(ui), texture_(texture) {
    connect(commonUi_->newInteractiveUpdate, &QPushButton::toggled, this, &ZigzagQtWrapper::interactiveUpdateToggled);
    connect(ui_->randomizeColors, &QPushButton::toggled, this, &ZigzagQtWrapper::randomizeColorsToggled);
    connect(ui_->variability, &QSlider::valueChanged, this, &ZigzagQtWrapper::variabilityChanged);
    addValueBoxes(kHundredths, {ui_->variability});
    describeControls();
}

void ZigzagQtWrapper::updateUI() {
    {
        // Show the record without writing rounded control values back into it.
        const QSignalBlocker b0(ui_->randomizeColors);
        ui_->randomizeColors->setChecked(texture_->getRandomizeColors());
        loadSlider(ui_->variability, texture_->getVariability());
    }
    const bool interactive = texture_->interactiveUpdate();
    commonUi_->newInteractiveUpdate->setChecked(interactive);
    setInteractivity(interactive);
}

void ZigzagQtWrapper::setInteractivity(bool on) { ui_->variability->setTracking(on); }

void ZigzagQtWrapper::interactiveUpdateToggled(bool on) {
    texture_->setInteractiveUpdate(on);
    setInteractivity(on);
    redraw();
}

void ZigzagQtWrapper::randomizeColorsToggled(bool on) {
    texture_->setRandomizeColors(on);
    redraw();
}

void ZigzagQtWrapper::variabilityChanged(int value) {
    texture_->setVariability(kHundredths.word(value));
    redraw();
}

}  // namespace gritwell
