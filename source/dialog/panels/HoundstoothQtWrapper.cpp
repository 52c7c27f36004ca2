#include "dialog/panels/HoundstoothQtWrapper.h"

#include <QSignalBlocker>

#include "ui_CommonWidget.h"

namespace gritwell {

namespace {
constexpr SliderScale kHundredths(100);  // variability 0..1 on a 0..100 slider
}

HoundstoothQtWrapper::HoundstoothQtWrapper(HoundstoothTexture3D* texture, ImageArea* imageArea,
                                           Ui_HoundstoothWidget* ui, QWidget* page, QObject* parent)
    : QtWrapperBase(texture, imageArea, page, parent), ui_(ui), texture_(texture) {
    connect(commonUi_->newInteractiveUpdate, &QPushButton::toggled, this,
            &HoundstoothQtWrapper::interactiveUpdateToggled);
    connect(ui_->pattern, &QComboBox::currentIndexChanged, this, &HoundstoothQtWrapper::patternChanged);
    connect(ui_->randomizeColors, &QPushButton::toggled, this, &HoundstoothQtWrapper::randomizeColorsToggled);
    connect(ui_->variability, &QSlider::valueChanged, this, &HoundstoothQtWrapper::variabilityChanged);
    addValueBoxes(kHundredths, {ui_->variability});
    describeControls();
}

void HoundstoothQtWrapper::updateUI() {
    {
        // Show the record without writing rounded control values back into it.
        const QSignalBlocker b0(ui_->pattern), b1(ui_->randomizeColors);
        // Records may hold any pattern number; every one but 0 weaves
        // puppytooth, and the list shows it so without changing the record.
        ui_->pattern->setCurrentIndex(texture_->getPattern() == HoundstoothTexture3D::HOUNDSTOOTH
                                          ? HoundstoothTexture3D::HOUNDSTOOTH
                                          : HoundstoothTexture3D::PUPPYTOOTH);
        ui_->randomizeColors->setChecked(texture_->getRandomizeColors());
        loadSlider(ui_->variability, texture_->getVariability());
    }
    const bool interactive = texture_->interactiveUpdate();
    commonUi_->newInteractiveUpdate->setChecked(interactive);
    setInteractivity(interactive);
}

void HoundstoothQtWrapper::setInteractivity(bool on) { ui_->variability->setTracking(on); }

void HoundstoothQtWrapper::interactiveUpdateToggled(bool on) {
    texture_->setInteractiveUpdate(on);
    setInteractivity(on);
    redraw();
}

// "Houndstooth" is item 0 and HOUNDSTOOTH; the index is stored as is.
void HoundstoothQtWrapper::patternChanged(int index) {
    texture_->setPattern(static_cast<HoundstoothTexture3D::Pattern>(index));
    redraw();
}

void HoundstoothQtWrapper::randomizeColorsToggled(bool on) {
    texture_->setRandomizeColors(on);
    redraw();
}

void HoundstoothQtWrapper::variabilityChanged(int value) {
    texture_->setVariability(kHundredths.word(value));
    redraw();
}

}  // namespace gritwell
