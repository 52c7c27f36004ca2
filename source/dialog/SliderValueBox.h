#pragma once
// SliderValueBox: the number beside a slider. It shows the slider's value in
// the field's own units (0.37 for a colour slider at 37, 12.34 for a
// frequency at 1234 hundredths, degrees for an angle) and takes a typed one:
// Return, or leaving the box, moves the slider to the nearest step, and the
// slider's own connections report that move exactly as if it had been
// dragged there.

#include <QDoubleSpinBox>
#include <QString>

#include "dialog/SliderScale.h"

class QSlider;

namespace gritwell {

class SliderValueBox final : public QDoubleSpinBox {
    Q_OBJECT

public:
    // Puts the box at the end of the row of the slider's label (the widget
    // above it in its box layout), named after the slider ("brickColor" gets
    // "brickColorValue"), with the same range and tool tip, one slider step
    // per arrow key.
    explicit SliderValueBox(QSlider* slider, SliderScale scale, const QString& suffix = QString());

    // The box beside `slider`, or null if it has none.
    static SliderValueBox* beside(const QSlider* slider);

    QSlider* slider() const { return slider_; }
    const SliderScale& scale() const { return scale_; }

    // Shows a stored float on the slider and here, neither reporting it.
    void load(float word);

private:
    void showPosition(int position);
    void takeTypedValue(double typed);

    QSlider* slider_;
    SliderScale scale_;
};

}  // namespace gritwell
