#include "dialog/panels/CheetahQtWrapper.h"

#include "ui_CommonWidget.h"

namespace gritwell {

namespace {
// All three parameters run 0..1 on 0..100 sliders.
constexpr SliderScale kHundredths(100);
}  // namespace

CheetahQtWrapper::CheetahQtWrapper(CheetahTexture3D* texture, ImageArea* imageArea, Ui_CheetahWidget* ui,
                                   QWidget* page, QObject* parent)
    : QtWrapperBase(texture, imageArea, page, parent), ui_(ui), texture_(texture) {
    connect(commonUi_->newInteractiveUpdate, &QPushButton::toggled, this, &CheetahQtWrapper::interactiveUpdateToggled);
    connect(ui_->spotSize, &QSlider::valueChanged, this, &CheetahQtWrapper::spotSizeChanged);
    connect(ui_->layoutVariability, &QSlider::valueChanged, this, &CheetahQtWrapper::layoutVariabilityChanged);
    connect(ui_->spotVariability, &QSlider::valueChanged, this, &CheetahQtWrapper::spotVariabilityChanged);
    addValueBoxes(kHundredths, {ui_->spotSize, ui_->layoutVariability, ui_->spotVariability});
    describeControls();
}

void CheetahQtWrapper::updateUI() {
    loadSlider(ui_->spotSize, texture_->getSpotSize());
    loadSlider(ui_->layoutVariability, texture_->getLayoutVariability());
    loadSlider(ui_->spotVariability, texture_->getSpotVariability());
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
    texture_->setSpotSize(kHundredths.word(value));
    redraw();
}

void CheetahQtWrapper::layoutVariabilityChanged(int value) {
    texture_->setLayoutVariability(kHundredths.word(value));
    redraw();
}

void CheetahQtWrapper::spotVariabilityChanged(int value) {
    texture_->setSpotVariability(kHundredths.word(value));
    redraw();
}

}  // namespace gritwell
