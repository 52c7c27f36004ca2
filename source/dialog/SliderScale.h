#pragma once
// SliderScale: how a slider's integer positions stand for a stored float, one
// rule for every slider of the dialog. Moving a slider stores word(position);
// loading a stored float shows position(word), which gives back the very
// position that stored it, so that loading a page, or carrying its
// transforms to another generator's page, never moves a slider a step.

namespace gritwell {

class SliderScale {
public:
    // How the position is divided: in single precision (float(p) / steps, as
    // the generators' own sliders and the per-axis scales store it) or in
    // double precision and then narrowed (the offsets and angles).
    enum class Division { Single, Double };

    // `stepsPerUnit` positions make one unit of the stored float.
    // `stepsPerShownUnit` positions make one unit of the number shown beside
    // the slider: the stored float's own unit unless it is given (angles are
    // stored in turns but shown in degrees, one per position).
    constexpr explicit SliderScale(int stepsPerUnit, Division division = Division::Single, int stepsPerShownUnit = 0)
        : stepsPerUnit_(stepsPerUnit),
          division_(division),
          stepsPerShownUnit_(stepsPerShownUnit > 0 ? stepsPerShownUnit : stepsPerUnit) {}

    // The float a slider at `position` stores.
    float word(int position) const;

    // The position that shows `word`: the one that stores exactly this word
    // where there is one; any other word (from a file, another tool, a damaged
    // record) shows stepsPerUnit * word, formed in double precision and
    // truncated toward zero. Out-of-range positions are the slider's to clamp.
    int position(float word) const;

    // The number shown beside a slider at `position`, and back: the position
    // nearest to a typed number.
    double shown(int position) const { return static_cast<double>(position) / stepsPerShownUnit_; }
    int nearestPosition(double shownValue) const;
    // Decimals that show every position exactly: 2 for hundredths, 3 for
    // two-hundredths, 0 for whole degrees.
    int decimals() const;

private:
    int stepsPerUnit_;
    Division division_;
    int stepsPerShownUnit_;
};

}  // namespace gritwell
