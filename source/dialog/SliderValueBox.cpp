#include "dialog/SliderValueBox.h"

#include <QBoxLayout>
#include <QSignalBlocker>
#include <QSlider>

namespace gritwell {

namespace {

constexpr char kNameSuffix[] = "Value";
constexpr int kSpacingBesideSlider = 4;

// The box layout, at any depth under `layout`, that holds `widget` itself.
QBoxLayout* boxLayoutHolding(QLayout* layout, const QWidget* widget) {
    if (layout == nullptr) return nullptr;
    if (layout->indexOf(widget) >= 0) return qobject_cast<QBoxLayout*>(layout);
    for (int i = 0; i < layout->count(); ++i)
        if (QBoxLayout* found = boxLayoutHolding(layout->itemAt(i)->layout(), widget)) return found;
    return nullptr;
}

}  // namespace

SliderValueBox::SliderValueBox(QSlider* slider, SliderScale scale, const QString& suffix)
    : QDoubleSpinBox(slider->parentWidget()), slider_(slider), scale_(scale) {
    setObjectName(slider->objectName() + QLatin1String(kNameSuffix));
    setToolTip(slider->toolTip());
    setDecimals(scale_.decimals());
    setRange(scale_.shown(slider->minimum()), scale_.shown(slider->maximum()));
    setSingleStep(scale_.shown(1));
    setSuffix(suffix);
    // The slider beside it is the coarse control; arrows would only widen the box.
    setButtonSymbols(QAbstractSpinBox::NoButtons);
    setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    // A typed number is taken whole: tracking each keystroke would move the
    // slider, and update the host, once per digit.
    setKeyboardTracking(false);
    showPosition(slider->value());

    // Every slider of a page sits in a box layout under its label (its
    // frame's column). The box goes at the right end of the label's row, so
    // that the slider keeps its width and the page its height; a slider with
    // no widget above it gets the box beside it.
    QBoxLayout* column = boxLayoutHolding(slider->parentWidget()->layout(), slider);
    Q_ASSERT_X(column != nullptr, "SliderValueBox", "a slider outside a box layout");
    if (column != nullptr) {
        const int above = column->indexOf(slider) - 1;
        QWidget* label = above >= 0 ? column->itemAt(above)->widget() : nullptr;
        QWidget* neighbour = label != nullptr ? label : slider;
        const int index = column->indexOf(neighbour);
        column->removeWidget(neighbour);
        auto* row = new QHBoxLayout;
        row->setSpacing(kSpacingBesideSlider);
        column->insertLayout(index, row);
        row->addWidget(neighbour);
        row->addWidget(this);
    }

    connect(slider_, &QSlider::valueChanged, this, &SliderValueBox::showPosition);
    // With tracking off a dragged slider reports only when released; the
    // number follows the handle all the same.
    connect(slider_, &QSlider::sliderMoved, this, &SliderValueBox::showPosition);
    connect(this, &QDoubleSpinBox::valueChanged, this, &SliderValueBox::takeTypedValue);
}

SliderValueBox* SliderValueBox::beside(const QSlider* slider) {
    return slider->parentWidget()->findChild<SliderValueBox*>(slider->objectName() + QLatin1String(kNameSuffix),
                                                              Qt::FindDirectChildrenOnly);
}

void SliderValueBox::load(float word) {
    {
        const QSignalBlocker quiet(slider_);
        slider_->setValue(scale_.position(word));
    }
    showPosition(slider_->value());
}

void SliderValueBox::showPosition(int position) {
    const QSignalBlocker quiet(this);
    setValue(scale_.shown(position));
}

void SliderValueBox::takeTypedValue(double typed) {
    slider_->setValue(scale_.nearestPosition(typed));
    // A slider that did not move (the same step, or its end) still shows here.
    showPosition(slider_->value());
}

}  // namespace gritwell
