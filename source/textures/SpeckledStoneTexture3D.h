#pragma once
// "Speckled Stone": fine gradient noise raised to a power and posterised into
// nShades + 1 steps between a grain and a base intensity. Planar mode uses the
// 2-D noise.

#include <cstdint>
#include <string_view>

#include "core/BaseData.h"
#include "core/RecordTexture3D.h"

namespace gritwell {

class SpeckledStoneTexture3D final : public RecordTexture3D<SpeckledStoneTexture3D> {
public:
    static constexpr std::string_view kName = "Speckled Stone";
    static constexpr std::string_view kSummary = "Fine noise posterised into specks of grain on a base";
    static constexpr int kMajorVersion = 2;
    static constexpr int kMinorVersion = 0;
    static constexpr int kRecordSize = 56;

    struct Record {
        BaseData header = makeHeader(kRecordSize, kName, kMajorVersion, kMinorVersion);
        float scale = 0.02f;        // feature size: the point is divided by it
        std::int32_t nShades = 4;   // quantisation steps above shade 0
        std::int32_t exponent = 2;  // power applied to the remapped noise
        float grainColor = 0.0f;    // intensity at shade 0
        float baseColor = 0.5f;     // intensity at the top shade
    };
    static constexpr FieldInfo kFields[] = {
        {"scale", offsetof(Record, scale), FieldType::Float},
        {"nShades", offsetof(Record, nShades), FieldType::Int32},
        {"exponent", offsetof(Record, exponent), FieldType::Int32},
        {"grainColor", offsetof(Record, grainColor), FieldType::Float},
        {"baseColor", offsetof(Record, baseColor), FieldType::Float},
    };

    // mix(grainColor, baseColor, t) with t a multiple of 1 / nShades, t in
    // [0, 1] for nShades > 0 and exponent >= 0; unclamped; nShades 0 gives NaN
    // or an infinity.
    static float evaluate(const Record& r, int flags, float x, float y, float z);

    float scale() const { return record_.scale; }
    void setScale(float scale) { record_.scale = scale; }
    // The two integer fields read back as floats, as the panels have always
    // consumed them; they are set as integers.
    float nShades() const { return static_cast<float>(record_.nShades); }
    void setNShades(int n) { record_.nShades = n; }
    float exponent() const { return static_cast<float>(record_.exponent); }
    void setExponent(int e) { record_.exponent = e; }
    float grainColor() const { return record_.grainColor; }
    void setGrainColor(float c) { record_.grainColor = c; }
    float baseColor() const { return record_.baseColor; }
    void setBaseColor(float c) { record_.baseColor = c; }

private:
    friend class RecordTexture3D<SpeckledStoneTexture3D>;
    Record record_;
};

static_assert(offsetof(SpeckledStoneTexture3D::Record, scale) == 36);
static_assert(offsetof(SpeckledStoneTexture3D::Record, nShades) == 40);
static_assert(offsetof(SpeckledStoneTexture3D::Record, exponent) == 44);
static_assert(offsetof(SpeckledStoneTexture3D::Record, grainColor) == 48);
static_assert(offsetof(SpeckledStoneTexture3D::Record, baseColor) == 52);

extern template class RecordTexture3D<SpeckledStoneTexture3D>;

}  // namespace gritwell
