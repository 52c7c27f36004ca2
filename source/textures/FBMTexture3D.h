#pragma once
// "FBM": fractal Brownian motion of the scaled point, remapped from about
// -1..1 to 0..1 and clamped. Planar mode sums the 2-D noise.

#include <cstdint>
#include <string_view>

#include "core/BaseData.h"
#include "core/RecordTexture3D.h"

namespace gritwell {

class FBMTexture3D final : public RecordTexture3D<FBMTexture3D> {
public:
    static constexpr std::string_view kName = "FBM";
    static constexpr std::string_view kSummary = "Fractal Brownian motion: octaves of gradient noise";
    static constexpr int kMajorVersion = 2;
    static constexpr int kMinorVersion = 0;
    static constexpr int kRecordSize = 52;

    struct Record {
        BaseData header = makeHeader(kRecordSize, kName, kMajorVersion, kMinorVersion);
        std::int32_t octaves = 4;
        float lacunarity = 2.0f;  // frequency step between octaves
        float gain = 0.5f;        // weight step between octaves
        float scale = 4.0f;       // scales the point
    };
    static constexpr FieldInfo kFields[] = {
        {"octaves", offsetof(Record, octaves), FieldType::Int32},
        {"lacunarity", offsetof(Record, lacunarity), FieldType::Float},
        {"gain", offsetof(Record, gain), FieldType::Float},
        {"scale", offsetof(Record, scale), FieldType::Float},
    };

    static float evaluate(const Record& r, int flags, float x, float y, float z);
    // The same for a block of points, the 3-D noise across points at once.
    static void evaluateBlock(const Record& r, int flags, const float* points, int n, float* out);

    int octaves() const { return record_.octaves; }
    void setOctaves(int octaves) { record_.octaves = octaves; }
    float lacunarity() const { return record_.lacunarity; }
    void setLacunarity(float lacunarity) { record_.lacunarity = lacunarity; }
    float gain() const { return record_.gain; }
    void setGain(float gain) { record_.gain = gain; }
    float scale() const { return record_.scale; }
    void setScale(float scale) { record_.scale = scale; }

private:
    friend class RecordTexture3D<FBMTexture3D>;
    Record record_;
};

static_assert(offsetof(FBMTexture3D::Record, octaves) == 36);
static_assert(offsetof(FBMTexture3D::Record, lacunarity) == 40);
static_assert(offsetof(FBMTexture3D::Record, gain) == 44);
static_assert(offsetof(FBMTexture3D::Record, scale) == 48);

extern template class RecordTexture3D<FBMTexture3D>;

}  // namespace gritwell
