#pragma once
// "Erosion": six octaves of absolute gradient noise, summed from frequency 4
// with the first octave at full weight, cubed and scaled, then passed through
// a narrow smoothstep: a white ground cut by thin dark channels where the
// noise crosses zero. Planar mode sums the 2-D noise of x and y.

#include <string_view>

#include "core/BaseData.h"
#include "core/RecordTexture3D.h"

namespace gritwell {

class ErodedTexture3D final : public RecordTexture3D<ErodedTexture3D> {
public:
    static constexpr std::string_view kName = "Erosion";
    static constexpr std::string_view kSummary = "A white ground cut by thin dark channels of noise";
    static constexpr int kMajorVersion = 2;
    static constexpr int kMinorVersion = 0;
    static constexpr int kRecordSize = 44;

    struct Record {
        BaseData header = makeHeader(kRecordSize, kName, kMajorVersion, kMinorVersion);
        float magnitude = 0.3f;  // multiplies the cubed octave sum
        float scale = 1.0f;      // scales the point
    };
    static constexpr FieldInfo kFields[] = {
        {"magnitude", offsetof(Record, magnitude), FieldType::Float},
        {"scale", offsetof(Record, scale), FieldType::Float},
    };

    // [0, 1]: 0 where magnitude * sum^3 <= 0.0001, 1 where it is >= 0.003;
    // NaN from a NaN magnitude, or where the samples are not finite.
    static float evaluate(const Record& r, int flags, float x, float y, float z);
    // The same for a block of points, the 3-D noise across points at once.
    static void evaluateBlock(const Record& r, int flags, const float* points, int n, float* out);

    float getMagnitude() const { return record_.magnitude; }
    void setMagnitude(float magnitude) { record_.magnitude = magnitude; }
    float getScale() const { return record_.scale; }
    void setScale(float scale) { record_.scale = scale; }

private:
    friend class RecordTexture3D<ErodedTexture3D>;
    Record record_;
};

static_assert(offsetof(ErodedTexture3D::Record, magnitude) == 36);
static_assert(offsetof(ErodedTexture3D::Record, scale) == 40);

extern template class RecordTexture3D<ErodedTexture3D>;

}  // namespace gritwell
