#include "dialog/panels/StripesQtWrapper.h"

#include <iterator>

#include <QSignalBlocker>

#include "ui_CommonWidget.h"

namespace gritwell {

namespace {
// Hundredths: width and colours run 0..100 for 0..1, the amplitude slider
// 0..200 for 0..2 line spacings.
constexpr SliderScale kHundredths(100);

// The list's order, top to bottom. Stored records number the styles
// differently (StripesTexture3D::Style), so the position is mapped, never
// stored as is.
constexpr StripesTexture3D::Style kListedStyles[] = {
    StripesTexture3D::Triangle, StripesTexture3D::Straight, StripesTexture3D::Sine,
    StripesTexture3D::Sawtooth, StripesTexture3D::Ribbon,   StripesTexture3D::PerlinNoise,
};
constexpr int kListedStyleCount = static_cast<int>(std::size(kListedStyles));
constexpr int kStraightPosition = 1;
static_assert(kListedStyles[kStraightPosition] == StripesTexture3D::Straight);

// Any style outside the enumeration draws straight lines, so it is shown as
// "Straight".
int listPosition(StripesTexture3D::Style style) {
    for (int i = 0; i < kListedStyleCount; ++i)
        if (kListedStyles[i] == style) return i;
    return kStraightPosition;
}
}  // namespace

StripesQtWrapper::StripesQtWrapper(StripesTexture3D* texture, ImageArea* imageArea, Ui_StripesWidget* ui,
                                   QWidget* page, QObject* parent)
    : QtWrapperBase(texture, imageArea, page, parent), ui_(ui), texture_(texture) {
    connect(commonUi_->newInteractiveUpdate, &QPushButton::toggled, this, &StripesQtWrapper::interactiveUpdateToggled);
    connect(ui_->style, &QComboBox::currentIndexChanged, this, &StripesQtWrapper::styleChanged);
    connect(ui_->stripeWidth, &QSlider::valueChanged, this, &StripesQtWrapper::stripeWidthChanged);
    connect(ui_->amplitude, &QSlider::valueChanged, this, &StripesQtWrapper::amplitudeChanged);
    connect(ui_->randomizeColors, &QPushButton::toggled, this, &StripesQtWrapper::randomizeColorsToggled);
    connect(ui_->minColor, &QSlider::valueChanged, this, &StripesQtWrapper::minColorChanged);
    connect(ui_->maxColor, &QSlider::valueChanged, this, &StripesQtWrapper::maxColorChanged);
    addValueBoxes(kHundredths, {ui_->stripeWidth, ui_->amplitude, ui_->minColor, ui_->maxColor});
    describeControls();
}

void StripesQtWrapper::updateUI() {
    {
        // Loading shows the record; it must not write the controls' rounded
        // values back into it, nor let the minimum/maximum pairing rewrite a
        // stored range while the two sliders are half loaded.
        const QSignalBlocker b0(ui_->style), b1(ui_->randomizeColors);
        ui_->style->setCurrentIndex(listPosition(texture_->getStripeStyle()));
        loadSlider(ui_->stripeWidth, texture_->getStripeWidth());
        loadSlider(ui_->amplitude, texture_->getAmplitude());
        ui_->randomizeColors->setChecked(texture_->getRandomizeColors());
        loadSlider(ui_->minColor, texture_->getMinColor());
        loadSlider(ui_->maxColor, texture_->getMaxColor());
    }
    const bool interactive = texture_->interactiveUpdate();
    commonUi_->newInteractiveUpdate->setChecked(interactive);
    setInteractivity(interactive);
}

void StripesQtWrapper::setInteractivity(bool on) {
    for (QSlider* slider : {ui_->stripeWidth, ui_->amplitude, ui_->minColor, ui_->maxColor}) slider->setTracking(on);
}

void StripesQtWrapper::interactiveUpdateToggled(bool on) {
    texture_->setInteractiveUpdate(on);
    setInteractivity(on);
    redraw();
}

void StripesQtWrapper::styleChanged(int index) {
    // -1 (an emptied list) has no style to store.
    if (index < 0 || index >= kListedStyleCount) return;
    texture_->setStripeStyle(kListedStyles[index]);
    redraw();
}

void StripesQtWrapper::stripeWidthChanged(int value) {
    texture_->setStripeWidth(kHundredths.word(value));
    redraw();
}

void StripesQtWrapper::amplitudeChanged(int value) {
    texture_->setAmplitude(kHundredths.word(value));
    redraw();
}

void StripesQtWrapper::randomizeColorsToggled(bool on) {
    texture_->setRandomizeColors(on);
    redraw();
}

void StripesQtWrapper::minColorChanged(int value) {
    texture_->setMinColor(kHundredths.word(value));
    if (value > ui_->maxColor->value()) ui_->maxColor->setValue(value);
    redraw();
}

void StripesQtWrapper::maxColorChanged(int value) {
    texture_->setMaxColor(kHundredths.word(value));
    if (value < ui_->minColor->value()) ui_->minColor->setValue(value);
    redraw();
}

}  // namespace gritwell
