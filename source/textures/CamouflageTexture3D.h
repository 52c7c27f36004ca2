#pragma once
// "Camouflage": two layers of blotches over a base intensity. A layer covers
// where the magnitude of gradient noise at a noise-warped position exceeds a
// threshold; layer 1 lies on top of layer 2. Planar mode flattens layer 1
// only.

#include <string_view>

#include "core/BaseData.h"
#include "core/RecordTexture3D.h"

namespace gritwell {

class CamouflageTexture3D final : public RecordTexture3D<CamouflageTexture3D> {
public:
    static constexpr std::string_view kName = "Camouflage";
    static constexpr std::string_view kSummary = "Two layers of noise-edged blotches over a base intensity";
    static constexpr int kMajorVersion = 1;
    static constexpr int kMinorVersion = 0;
    static constexpr int kRecordSize = 56;

    struct Record {
        BaseData header = makeHeader(kRecordSize, kName, kMajorVersion, kMinorVersion);
        float frequency = 0.6f;    // strength of the domain warp
        float threshold = 0.2f;    // noise magnitude above which a layer covers
        float baseColor = 1.0f;    // where neither layer covers
        float layer1Color = 0.8f;  // the smaller, upper blotches
        float layer2Color = 0.3f;  // the larger, lower blotches
    };
    static constexpr FieldInfo kFields[] = {
        {"frequency", offsetof(Record, frequency), FieldType::Float},
        {"threshold", offsetof(Record, threshold), FieldType::Float},
        {"baseColor", offsetof(Record, baseColor), FieldType::Float},
        {"layer1Color", offsetof(Record, layer1Color), FieldType::Float},
        {"layer2Color", offsetof(Record, layer2Color), FieldType::Float},
    };

    // Exactly one of baseColor, layer1Color and layer2Color.
    static float evaluate(const Record& r, int flags, float x, float y, float z);
    // The same for a block of points, each of the eight noise samples taken
    // across the block at once.
    static void evaluateBlock(const Record& r, int flags, const float* points, int n, float* out);

    float getFrequency() const { return record_.frequency; }
    void setFrequency(float f) { record_.frequency = f; }
    float getThreshold() const { return record_.threshold; }
    void setThreshold(float t) { record_.threshold = t; }
    float getBaseColor() const { return record_.baseColor; }
    void setBaseColor(float c) { record_.baseColor = c; }
    float getLayer1Color() const { return record_.layer1Color; }
    void setLayer1Color(float c) { record_.layer1Color = c; }
    float getLayer2Color() const { return record_.layer2Color; }
    void setLayer2Color(float c) { record_.layer2Color = c; }

private:
    friend class RecordTexture3D<CamouflageTexture3D>;
    Record record_;
};

static_assert(offsetof(CamouflageTexture3D::Record, frequency) == 36);
static_assert(offsetof(CamouflageTexture3D::Record, threshold) == 40);
static_assert(offsetof(CamouflageTexture3D::Record, baseColor) == 44);
static_assert(offsetof(CamouflageTexture3D::Record, layer1Color) == 48);
static_assert(offsetof(CamouflageTexture3D::Record, layer2Color) == 52);

extern template class RecordTexture3D<CamouflageTexture3D>;

}  // namespace gritwell
