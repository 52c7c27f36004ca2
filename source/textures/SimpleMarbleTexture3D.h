#pragma once
// "Simple Marble": octaves of lattice gradient noise at a 2.17 frequency
// step, mapped through a Catmull-Rom ramp of bluish-grey marble tones and
// clamped to [0, 1]. Planar mode sums the 2-D noise.

#include <cstdint>
#include <string_view>

#include "core/BaseData.h"
#include "core/RecordTexture3D.h"

namespace gritwell {

class SimpleMarbleTexture3D final : public RecordTexture3D<SimpleMarbleTexture3D> {
public:
    static constexpr std::string_view kName = "Simple Marble";
    static constexpr std::string_view kSummary = "Bluish-grey marble veins from octaves of gradient noise";
    static constexpr int kMajorVersion = 2;
    static constexpr int kMinorVersion = 0;
    static constexpr int kRecordSize = 44;

    struct Record {
        BaseData header = makeHeader(kRecordSize, kName, kMajorVersion, kMinorVersion);
        std::int32_t octaves = 4;    // noise octaves summed; 0 or less sums none
        float textureScale = 2.5f;   // scales the point
    };
    static constexpr FieldInfo kFields[] = {
        {"octaves", offsetof(Record, octaves), FieldType::Int32},
        {"textureScale", offsetof(Record, textureScale), FieldType::Float},
    };

    // In [0, 1]; NaN where the noise sum is NaN: a non-finite point or scale,
    // or so many octaves (from about 25) that the finest leave the lattice's int range.
    static float evaluate(const Record& r, int flags, float x, float y, float z);
    // The same for a block of points, the 3-D noise across points at once.
    static void evaluateBlock(const Record& r, int flags, const float* points, int n, float* out);

    int getOctaves() const { return record_.octaves; }
    void setOctaves(int octaves) { record_.octaves = octaves; }
    float getTextureScale() const { return record_.textureScale; }
    void setTextureScale(float scale) { record_.textureScale = scale; }

private:
    friend class RecordTexture3D<SimpleMarbleTexture3D>;
    Record record_;
};

static_assert(offsetof(SimpleMarbleTexture3D::Record, octaves) == 36);
static_assert(offsetof(SimpleMarbleTexture3D::Record, textureScale) == 40);

extern template class RecordTexture3D<SimpleMarbleTexture3D>;

}  // namespace gritwell
