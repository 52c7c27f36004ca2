#pragma once
// "Perlin Noise": an octave sum of lattice gradient noise, remapped from
// about -1..1 to 0..1 and clamped. Planar mode sums the 2-D noise.

#include <cstdint>
#include <string_view>

#include "core/BaseData.h"
#include "core/RecordTexture3D.h"

namespace gritwell {

class PerlinTexture3D final : public RecordTexture3D<PerlinTexture3D> {
public:
    static constexpr std::string_view kName = "Perlin Noise";
    static constexpr std::string_view kSummary = "Octaves of lattice gradient noise";
    static constexpr int kMajorVersion = 2;
    static constexpr int kMinorVersion = 0;
    static constexpr int kRecordSize = 48;

    struct Record {
        BaseData header = makeHeader(kRecordSize, kName, kMajorVersion, kMinorVersion);
        std::int32_t octaves = 4;
        float frequency = 4.0f;  // scales the point
        float amplitude = 1.0f;  // weight of the first octave
    };
    static constexpr FieldInfo kFields[] = {
        {"octaves", offsetof(Record, octaves), FieldType::Int32},
        {"frequency", offsetof(Record, frequency), FieldType::Float},
        {"amplitude", offsetof(Record, amplitude), FieldType::Float},
    };

    static float evaluate(const Record& r, int flags, float x, float y, float z);
    // The same for a block of points, the 3-D noise across points at once.
    static void evaluateBlock(const Record& r, int flags, const float* points, int n, float* out);

    int octaves() const { return record_.octaves; }
    void setOctaves(int octaves) { record_.octaves = octaves; }
    float frequency() const { return record_.frequency; }
    void setFrequency(float frequency) { record_.frequency = frequency; }
    float amplitude() const { return record_.amplitude; }
    void setAmplitude(float amplitude) { record_.amplitude = amplitude; }

private:
    friend class RecordTexture3D<PerlinTexture3D>;
    Record record_;
};

static_assert(offsetof(PerlinTexture3D::Record, octaves) == 36);
static_assert(offsetof(PerlinTexture3D::Record, frequency) == 40);
static_assert(offsetof(PerlinTexture3D::Record, amplitude) == 44);

extern template class RecordTexture3D<PerlinTexture3D>;

}  // namespace gritwell
