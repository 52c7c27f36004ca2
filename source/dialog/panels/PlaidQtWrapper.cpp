#include "dialog/panels/PlaidQtWrapper.h"

#include <QSignalBlocker>

#include "ui_CommonWidget.h"

namespace gritwell {

namespace {
// The primary background runs 0..1 on a 0..100 slider.
constexpr SliderScale kHundredths(100);
}  // namespace

PlaidQtWrapper::PlaidQtWrapper(PlaidTexture3D* texture, ImageArea* imageArea, Ui_PlaidWidget* ui, QWidget* page,
                               QObject* parent)
    : QtWrapperBase(texture, imageArea, page, parent), ui_(ui), texture_(texture) {
    connect(commonUi_->newInteractiveUpdate, &QPushButton::toggled, this, &PlaidQtWrapper::interactiveUpdateToggled);
    connect(ui_->primaryBackground, &QSlider::valueChanged, this, &PlaidQtWrapper::primaryBackgroundChanged);
    connect(ui_->horizontalFrequency, &QDoubleSpinBox::valueChanged, this, &PlaidQtWrapper::horizontalFrequencyChanged);
    connect(ui_->verticalFrequency, &QDoubleSpinBox::valueChanged, this, &PlaidQtWrapper::verticalFrequencyChanged);
    connect(ui_->horizontalPeriod, &QSpinBox::valueChanged, this, &PlaidQtWrapper::horizontalPeriodChanged);
    connect(ui_->verticalPeriod, &QSpinBox::valueChanged, this, &PlaidQtWrapper::verticalPeriodChanged);
    addValueBoxes(kHundredths, {ui_->primaryBackground});
    describeControls();
}

void PlaidQtWrapper::updateUI() {
    {
        // Show the record without writing rounded control values back into it.
        const QSignalBlocker b0(ui_->horizontalFrequency), b1(ui_->verticalFrequency), b2(ui_->horizontalPeriod),
            b3(ui_->verticalPeriod);
        loadSlider(ui_->primaryBackground, texture_->getPrimaryBackground());
        ui_->horizontalFrequency->setValue(texture_->getHorizontalFrequency());
        ui_->verticalFrequency->setValue(texture_->getVerticalFrequency());
        ui_->horizontalPeriod->setValue(texture_->getHorizontalPeriod());
        ui_->verticalPeriod->setValue(texture_->getVerticalPeriod());
    }
    const bool interactive = texture_->interactiveUpdate();
    commonUi_->newInteractiveUpdate->setChecked(interactive);
    setInteractivity(interactive);
}

void PlaidQtWrapper::setInteractivity(bool on) {
    ui_->primaryBackground->setTracking(on);
    for (QDoubleSpinBox* spin : {ui_->horizontalFrequency, ui_->verticalFrequency}) spin->setKeyboardTracking(on);
    for (QSpinBox* spin : {ui_->horizontalPeriod, ui_->verticalPeriod}) spin->setKeyboardTracking(on);
}

void PlaidQtWrapper::interactiveUpdateToggled(bool on) {
    texture_->setInteractiveUpdate(on);
    setInteractivity(on);
    redraw();
}

void PlaidQtWrapper::primaryBackgroundChanged(int value) {
    texture_->setPrimaryBackground(kHundredths.word(value));
    redraw();
}

void PlaidQtWrapper::horizontalFrequencyChanged(double value) {
    texture_->setHorizontalFrequency(static_cast<float>(value));
    redraw();
}

void PlaidQtWrapper::verticalFrequencyChanged(double value) {
    texture_->setVerticalFrequency(static_cast<float>(value));
    redraw();
}

// The periods are whole numbers in the record, but their setters take a float
// (and truncate it): the spin box's count goes in as that float.
void PlaidQtWrapper::horizontalPeriodChanged(int value) {
    texture_->setHorizontalPeriod(static_cast<float>(value));
    redraw();
}

void PlaidQtWrapper::verticalPeriodChanged(int value) {
    texture_->setVerticalPeriod(static_cast<float>(value));
    redraw();
}

}  // namespace gritwell
