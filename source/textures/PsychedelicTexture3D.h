#pragma once
// "Psychedelic": the point's x and y warped by gradient noise, then one
// random intensity per cell of the warped, scaled plane, between a minimum
// and a maximum. Planar mode warps with the 2-D noise.

#include <string_view>

#include "core/BaseData.h"
#include "core/RecordTexture3D.h"

namespace gritwell {

class PsychedelicTexture3D final : public RecordTexture3D<PsychedelicTexture3D> {
public:
    static constexpr std::string_view kName = "Psychedelic";
    static constexpr std::string_view kSummary = "Swirling patches: random cells of a noise-warped plane";
    static constexpr int kMajorVersion = 1;
    static constexpr int kMinorVersion = 0;
    static constexpr int kRecordSize = 48;

    struct Record {
        BaseData header = makeHeader(kRecordSize, kName, kMajorVersion, kMinorVersion);
        float frequency = 1.0f;  // scales both the warp and the cell lookup
        float minColor = 0.0f;   // intensity at cell-noise value 0
        float maxColor = 1.0f;   // intensity at cell-noise value 1
    };
    static constexpr FieldInfo kFields[] = {
        {"frequency", offsetof(Record, frequency), FieldType::Float},
        {"minColor", offsetof(Record, minColor), FieldType::Float},
        {"maxColor", offsetof(Record, maxColor), FieldType::Float},
    };

    // In [0, 1]; a NaN intensity (from non-finite colours) reads as 1.
    static float evaluate(const Record& r, int flags, float x, float y, float z);

    float getFrequency() const { return record_.frequency; }
    void setFrequency(float frequency) { record_.frequency = frequency; }
    float getMinColor() const { return record_.minColor; }
    void setMinColor(float color) { record_.minColor = color; }
    float getMaxColor() const { return record_.maxColor; }
    void setMaxColor(float color) { record_.maxColor = color; }

private:
    friend class RecordTexture3D<PsychedelicTexture3D>;
    Record record_;
};

static_assert(offsetof(PsychedelicTexture3D::Record, frequency) == 36);
static_assert(offsetof(PsychedelicTexture3D::Record, minColor) == 40);
static_assert(offsetof(PsychedelicTexture3D::Record, maxColor) == 44);

extern template class RecordTexture3D<PsychedelicTexture3D>;

}  // namespace gritwell
