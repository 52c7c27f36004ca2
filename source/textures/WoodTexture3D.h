#pragma once
// "Wood": concentric growth rings around the y axis, the point first pushed
// along (1, 1, 1) by an octave sum of gradient noise and the ring radius
// wobbled by 1-D noise; light early wood between dark rings.

#include <cstdint>
#include <string_view>

#include "core/BaseData.h"
#include "core/FloatToInt.h"
#include "core/RecordTexture3D.h"

namespace gritwell {

class WoodTexture3D final : public RecordTexture3D<WoodTexture3D> {
public:
    static constexpr std::string_view kName = "Wood";
    static constexpr std::string_view kSummary = "Concentric growth rings around the y axis, wobbled by noise";
    static constexpr int kMajorVersion = 2;
    static constexpr int kMinorVersion = 0;
    static constexpr int kRecordSize = 60;

    struct Record {
        BaseData header = makeHeader(kRecordSize, kName, kMajorVersion, kMinorVersion);
        float ringScale = 6.0f;     // rings per unit of distance from the y axis
        std::int32_t octaves = 1;   // octaves of the displacement noise
        float frequency = 1.0f;     // displacement noise frequency; <= 0 turns it off
        float amplitude = 0.1f;     // weight of the displacement's first octave
        float darkColor = 0.1f;     // ring intensity
        float lightColor = 0.5f;    // intensity between rings
    };
    static constexpr FieldInfo kFields[] = {
        {"ringScale", offsetof(Record, ringScale), FieldType::Float},
        {"octaves", offsetof(Record, octaves), FieldType::Int32},
        {"frequency", offsetof(Record, frequency), FieldType::Float},
        {"amplitude", offsetof(Record, amplitude), FieldType::Float},
        {"darkColor", offsetof(Record, darkColor), FieldType::Float},
        {"lightColor", offsetof(Record, lightColor), FieldType::Float},
    };

    // Between lightColor and darkColor, both included; NaN once the ring
    // radius overflows or a field is NaN.
    static float evaluate(const Record& r, int flags, float x, float y, float z);
    // The same for a block of points, the octave sum across points at once.
    static void evaluateBlock(const Record& r, int flags, const float* points, int n, float* out);

    // The ring scale truncated toward zero, while evaluation uses the stored
    // float: the dialog's whole-number control has always read it this way.
    int ringScale() const { return truncToInt(record_.ringScale); }
    void setRingScale(float s) { record_.ringScale = s; }
    int octaves() const { return record_.octaves; }
    void setOctaves(int octaves) { record_.octaves = octaves; }
    float frequency() const { return record_.frequency; }
    void setFrequency(float f) { record_.frequency = f; }
    float amplitude() const { return record_.amplitude; }
    void setAmplitude(float a) { record_.amplitude = a; }
    float darkColor() const { return record_.darkColor; }
    void setDarkColor(float c) { record_.darkColor = c; }
    float lightColor() const { return record_.lightColor; }
    void setLightColor(float c) { record_.lightColor = c; }

private:
    friend class RecordTexture3D<WoodTexture3D>;
    Record record_;
};

static_assert(offsetof(WoodTexture3D::Record, ringScale) == 36);
static_assert(offsetof(WoodTexture3D::Record, octaves) == 40);
static_assert(offsetof(WoodTexture3D::Record, frequency) == 44);
static_assert(offsetof(WoodTexture3D::Record, amplitude) == 48);
static_assert(offsetof(WoodTexture3D::Record, darkColor) == 52);
static_assert(offsetof(WoodTexture3D::Record, lightColor) == 56);

extern template class RecordTexture3D<WoodTexture3D>;

}  // namespace gritwell
