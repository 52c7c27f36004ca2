#pragma once
// "Spiral": dark lines on the planes x = integer, white between, after the
// (x, z) plane is turned about the y axis by an angle proportional to y, so
// the lines wind around that axis. Planar mode shears x by y instead.

#include <string_view>

#include "core/BaseData.h"
#include "core/RecordTexture3D.h"

namespace gritwell {

class SpiralTexture3D final : public RecordTexture3D<SpiralTexture3D> {
public:
    static constexpr std::string_view kName = "Spiral";
    static constexpr std::string_view kSummary = "Dark lines winding around the y axis";
    static constexpr int kMajorVersion = 2;
    static constexpr int kMinorVersion = 0;
    static constexpr int kRecordSize = 44;

    struct Record {
        BaseData header = makeHeader(kRecordSize, kName, kMajorVersion, kMinorVersion);
        float stripeWidth = 0.25f;  // full width of a line, in units of the line spacing
        float spiralRate = 0.2f;    // twist in radians per unit of y
    };
    static constexpr FieldInfo kFields[] = {
        {"stripeWidth", offsetof(Record, stripeWidth), FieldType::Float},
        {"spiralRate", offsetof(Record, spiralRate), FieldType::Float},
    };
    // Text stream operators that write and read nothing, as this pattern's
    // always have.
    static constexpr bool kFieldsAsText = false;

    // 0 on a line, 1 between the lines.
    static float evaluate(const Record& r, int flags, float x, float y, float z);
    static void evaluateBlock(const Record& r, int flags, const float* points, int n, float* out);

    float getStripeWidth() const { return record_.stripeWidth; }
    void setStripeWidth(float w) { record_.stripeWidth = w; }
    float getSpiralRate() const { return record_.spiralRate; }
    void setSpiralRate(float rate) { record_.spiralRate = rate; }

private:
    friend class RecordTexture3D<SpiralTexture3D>;
    Record record_;
};

static_assert(offsetof(SpiralTexture3D::Record, stripeWidth) == 36);
static_assert(offsetof(SpiralTexture3D::Record, spiralRate) == 40);

extern template class RecordTexture3D<SpiralTexture3D>;

}  // namespace gritwell
