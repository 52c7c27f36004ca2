#pragma once
// "Granite": hard-edged speckles where the gradient noise falls to -0.5 or
// below, one layer per octave, each weighted by the inverse of its frequency
// and summed, clamped to 0..1. Planar mode samples the 2-D noise of x and y.

#include <cstdint>
#include <string_view>

#include "core/BaseData.h"
#include "core/RecordTexture3D.h"

namespace gritwell {

class GraniteTexture3D final : public RecordTexture3D<GraniteTexture3D> {
public:
    static constexpr std::string_view kName = "Granite";
    static constexpr std::string_view kSummary = "Hard-edged speckles, one layer per octave";
    static constexpr int kMajorVersion = 2;
    static constexpr int kMinorVersion = 0;
    static constexpr int kRecordSize = 44;

    struct Record {
        BaseData header = makeHeader(kRecordSize, kName, kMajorVersion, kMinorVersion);
        std::int32_t octaves = 6;  // speckle layers; 0 or less gives black
        float frequency = 1.0f;    // of the first layer, doubled per layer
    };
    static constexpr FieldInfo kFields[] = {
        {"octaves", offsetof(Record, octaves), FieldType::Int32},
        {"frequency", offsetof(Record, frequency), FieldType::Float},
    };

    // [0, 1] for finite non-zero frequencies; a zero frequency gives NaN (0 / 0).
    static float evaluate(const Record& r, int flags, float x, float y, float z);
    // The same for a block of points, the 3-D noise across points at once.
    static void evaluateBlock(const Record& r, int flags, const float* points, int n, float* out);

    int getOctaves() const { return record_.octaves; }
    void setOctaves(int octaves) { record_.octaves = octaves; }
    float getFrequency() const { return record_.frequency; }
    void setFrequency(float frequency) { record_.frequency = frequency; }

private:
    friend class RecordTexture3D<GraniteTexture3D>;
    Record record_;
};

static_assert(offsetof(GraniteTexture3D::Record, octaves) == 36);
static_assert(offsetof(GraniteTexture3D::Record, frequency) == 40);

extern template class RecordTexture3D<GraniteTexture3D>;

}  // namespace gritwell
