#include "dialog/SliderScale.h"

#include <initializer_list>

#include "core/FloatToInt.h"

namespace gritwell {

float SliderScale::word(int position) const {
    if (division_ == Division::Double) return static_cast<float>(position / static_cast<double>(stepsPerUnit_));
    return static_cast<float>(position) / static_cast<float>(stepsPerUnit_);
}

int SliderScale::position(float word) const {
    const int truncated = truncToInt(stepsPerUnit_ * static_cast<double>(word));
    // A stored position's float lies within a rounding error of the exact
    // quotient, so the truncated product is that position or one step nearer
    // zero (0.29f * 100 is 28.9999...): look there, and no further.
    for (const int candidate : {truncated, wrapAdd(truncated, 1), wrapAdd(truncated, -1)})
        if (this->word(candidate) == word) return candidate;
    return truncated;
}

int SliderScale::nearestPosition(double shownValue) const { return roundToInt(shownValue * stepsPerShownUnit_); }

int SliderScale::decimals() const {
    // A float shows six decimals faithfully; no slider here needs more than three.
    constexpr int kMostPlaces = 6;
    int places = 0;
    for (int tens = 1; tens % stepsPerShownUnit_ != 0 && places < kMostPlaces; tens *= 10) ++places;
    return places;
}

}  // namespace gritwell
