#include "dialog/panels/CheckerboardQtWrapper.h"

#include <QSignalBlocker>

#include "ui_CommonWidget.h"

namespace gritwell {

namespace {
constexpr SliderScale kHundredths(100);  // variability 0..1 on a 0..100 slider
}

CheckerboardQtWrapper::CheckerboardQtWrapper(CheckerboardTexture3D* texture, ImageArea* imageArea,
                                             Ui_CheckerboardWidget* ui, QWidget* page, QObject* parent)
    : QtWrapperBase(texture, imageArea, page, parent), ui_(ui), texture_(texture) {
    connect(commonUi_->newInteractiveUpdate, &QPushButton::toggled, this,
            &CheckerboardQtWrapper::interactiveUpdateToggled);
    connect(ui_->depth, &QSpinBox::valueChanged, this, &CheckerboardQtWrapper::depthChanged);
    connect(ui_->randomizeColors, &QPushButton::toggled, this, &CheckerboardQtWrapper::randomizeColorsToggled);
    connect(ui_->variability, &QSlider::valueChanged, this, &CheckerboardQtWrapper::variabilityChanged);
    addValueBoxes(kHundredths, {ui_->variability});
    describeControls();
}

void CheckerboardQtWrapper::updateUI() {
    {
        // Show the record without writing rounded control values back into it.
        const QSignalBlocker b0(ui_->depth), b1(ui_->randomizeColors);
        ui_->depth->setValue(texture_->getDepth());
        ui_->randomizeColors->setChecked(texture_->getRandomizeColors());
        loadSlider(ui_->variability, texture_->getVariability());
    }
    const bool interactive = texture_->interactiveUpdate();
    commonUi_->newInteractiveUpdate->setChecked(interactive);
    setInteractivity(interactive);
}

void CheckerboardQtWrapper::setInteractivity(bool on) {
    ui_->depth->setKeyboardTracking(on);
    ui_->variability->setTracking(on);
}

void CheckerboardQtWrapper::interactiveUpdateToggled(bool on) {
    texture_->setInteractiveUpdate(on);
    setInteractivity(on);
    redraw();
}

void CheckerboardQtWrapper::depthChanged(int value) {
    texture_->setDepth(value);
    redraw();
}

void CheckerboardQtWrapper::randomizeColorsToggled(bool on) {
    texture_->setRandomizeColors(on);
    redraw();
}

void CheckerboardQtWrapper::variabilityChanged(int value) {
    texture_->setVariability(kHundredths.word(value));
    redraw();
}

}  // namespace gritwell
