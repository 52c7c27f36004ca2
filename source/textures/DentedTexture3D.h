#pragma once
// "Dents": six octaves of absolute gradient noise, summed from frequency 1
// with weights 1/frequency, cubed and scaled, clamped to 0..1: dark pits
// along the noise's zero crossings on a brighter, bumpy ground. Planar mode
// sums the 2-D noise of x and y.

#include <string_view>

#include "core/BaseData.h"
#include "core/RecordTexture3D.h"

namespace gritwell {

class DentedTexture3D final : public RecordTexture3D<DentedTexture3D> {
public:
    static constexpr std::string_view kName = "Dents";
    static constexpr std::string_view kSummary = "Dark pits along the zero crossings of noise on a brighter, bumpy ground";
    static constexpr int kMajorVersion = 2;
    static constexpr int kMinorVersion = 0;
    static constexpr int kRecordSize = 44;

    struct Record {
        BaseData header = makeHeader(kRecordSize, kName, kMajorVersion, kMinorVersion);
        float magnitude = 5.0f;  // multiplies the cubed octave sum
        float scale = 5.0f;      // scales the point
    };
    static constexpr FieldInfo kFields[] = {
        {"magnitude", offsetof(Record, magnitude), FieldType::Float},
        {"scale", offsetof(Record, scale), FieldType::Float},
    };

    // [0, 1]: magnitude * sum^3 clamped; NaN from a NaN magnitude, or where
    // the samples are not finite.
    static float evaluate(const Record& r, int flags, float x, float y, float z);
    // The same for a block of points, the 3-D noise across points at once.
    static void evaluateBlock(const Record& r, int flags, const float* points, int n, float* out);

    float getMagnitude() const { return record_.magnitude; }
    void setMagnitude(float magnitude) { record_.magnitude = magnitude; }
    float getScale() const { return record_.scale; }
    void setScale(float scale) { record_.scale = scale; }

private:
    friend class RecordTexture3D<DentedTexture3D>;
    Record record_;
};

static_assert(offsetof(DentedTexture3D::Record, magnitude) == 36);
static_assert(offsetof(DentedTexture3D::Record, scale) == 40);

extern template class RecordTexture3D<DentedTexture3D>;

}  // namespace gritwell
