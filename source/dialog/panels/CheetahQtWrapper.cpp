#include "dialog/panels/CheetahQtWrapper.h"

#include <QSignalBlocker>

#include "core/FloatToInt.h"
#include "ui_CommonWidget.h"

namespace gritwell {

namespace {
// All three parameters run 0..1 on 0..100 sliders.
constexpr float kSliderUnits = 100.0f;

int toSlider(float value) { return truncToInt(static_cast<double>(value * kSliderUnits)); }
float fromSlider(int value) { return static_cast<float>(value) / kSliderUnits; }
}  // namespace

CheetahQtWrapper::CheetahQtWrapper(CheetahTexture3D* texture, ImageArea* imageArea, Ui_CheetahWidget* ui,
                                   QWidget* page, QObject* parent)
    : QtWrapperBase(texture, imageArea, page, parent), ui_(ui), texture_(texture) {
    connect(commonUi_->newInteractiveUpdate, &QPushButton::toggled, this, &CheetahQtWrapper::interactiveUpdateToggled);
    connect(ui_->spotSize, &QSlider::valueChanged, this, &CheetahQtWrapper::spotSizeChanged);
    connect(ui_->layoutVariability, &QSlider::valueChanged, this, &CheetahQtWrapper::layoutVariabilityChanged);
    connect(ui_->spotVariability, &QSlider::valueChanged, this, &CheetahQtWrapper::spotVariabilityChanged);
}

void CheetahQtWrapper::updateUI() {
    {
        // Show the record without writing rounded control values back into it.
        const QSignalBlocker b0(ui_->spotSize), b1(ui_->layoutVariability), b2(ui_->spotVariability);
        ui_->spotSize->setValue(toSlider(texture_->getSpotSize()));
        ui_->layoutVariability->setValue(toSlider(texture_->getLayoutVariability()));
        ui_->spotVariability->setValue(toSlider(texture_->getSpotVariability()));
    }
    const bool interactive = texture_->interactiveUpdate();
    commonUi_->newInteractiveUpdate->setChecked(interactive);
    setInteractivity(interactive);
}

void CheetahQtWrapper::setInteractivity(bool on) {
    for (QSlider* slider : {ui_->spotSize, ui_->layoutVariability, ui_->spotVariability}) slider->setTracking(on);
}

void CheetahQtWrapper::interactiveUpdateToggled(bool on) {
    texture_->setInteractiveUpdate(on);
    setInteractivity(on);
    redraw();
}

void CheetahQtWrapper::spotSizeChanged(int value) {
    texture_->setSpotSize(fromSlider(value));
    redraw();
}

void CheetahQtWrapper::layoutVariabilityChanged(int value) {
    texture_->setLayoutVariability(fromSlider(value));
    redraw();
}

void CheetahQtWrapper::spotVariabilityChanged(int value) {
    texture_->setSpotVariability(fromSlider(value));
    redraw();
}

}  // namespace gritwell
