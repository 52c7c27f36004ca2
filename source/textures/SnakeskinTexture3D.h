#pragma once
// "Snakeskin": slanted diamond scales separated by black grooves in the x/y
// plane (z is ignored). The plane is rotated by -pi/8 and sheared so that
// unit cells become diamonds; each scale can take its own random intensity,
// fractal noise on its surface, a noise wobble of the grid and rounded
// corners.

#include <cstdint>
#include <string_view>

#include "core/BaseData.h"
#include "core/RecordTexture3D.h"

namespace gritwell {

class SnakeskinTexture3D final : public RecordTexture3D<SnakeskinTexture3D> {
public:
    static constexpr std::string_view kName = "Snakeskin";
    static constexpr std::string_view kSummary = "Slanted diamond scales between black grooves";
    static constexpr int kMajorVersion = 1;
    static constexpr int kMinorVersion = 0;
    static constexpr int kRecordSize = 96;

    struct Record {
        BaseData header = makeHeader(kRecordSize, kName, kMajorVersion, kMinorVersion);
        float stripeWidth = 0.07f;                  // groove between scales, in cell units
        std::uint8_t randomizeColors = 0;           // a random intensity per scale
        std::uint8_t padding0[3] = {};
        float minColor = 0.5f;                      // range of the random intensity
        float maxColor = 1.0f;
        std::uint8_t scaleVariabilityEnabled = 0;   // wobble the grid with noise
        std::uint8_t padding1[3] = {};
        float scaleVariabilityFrequency = 0.1f;
        float scaleVariabilityAmplitude = 0.25f;
        std::uint8_t scaleNoiseAdd = 0;             // fractal noise on each scale
        std::uint8_t padding2[3] = {};
        std::int32_t scaleNoiseOctaves = 1;
        float scaleNoiseLacunarity = 2.0f;
        float scaleNoiseGain = 2.0f;
        float scaleNoiseDetail = 4.0f;              // frequency multiplier of the scale noise
        std::uint8_t roundCornersEnabled = 1;       // round the scale corners
        std::uint8_t padding3[3] = {};
        float roundCornersLeftRightRadius = 0.05f;
        float roundCornersTopBottomRadius = 0.2f;
    };
    static constexpr FieldInfo kFields[] = {
        {"stripeWidth", offsetof(Record, stripeWidth), FieldType::Float},
        {"randomizeColors", offsetof(Record, randomizeColors), FieldType::Bool},
        {"minColor", offsetof(Record, minColor), FieldType::Float},
        {"maxColor", offsetof(Record, maxColor), FieldType::Float},
        {"scaleVariabilityEnabled", offsetof(Record, scaleVariabilityEnabled), FieldType::Bool},
        {"scaleVariabilityFrequency", offsetof(Record, scaleVariabilityFrequency), FieldType::Float},
        {"scaleVariabilityAmplitude", offsetof(Record, scaleVariabilityAmplitude), FieldType::Float},
        {"scaleNoiseAdd", offsetof(Record, scaleNoiseAdd), FieldType::Bool},
        {"scaleNoiseOctaves", offsetof(Record, scaleNoiseOctaves), FieldType::Int32},
        {"scaleNoiseLacunarity", offsetof(Record, scaleNoiseLacunarity), FieldType::Float},
        {"scaleNoiseGain", offsetof(Record, scaleNoiseGain), FieldType::Float},
        {"scaleNoiseDetail", offsetof(Record, scaleNoiseDetail), FieldType::Float},
        {"roundCornersEnabled", offsetof(Record, roundCornersEnabled), FieldType::Bool},
        {"roundCornersLeftRightRadius", offsetof(Record, roundCornersLeftRightRadius), FieldType::Float},
        {"roundCornersTopBottomRadius", offsetof(Record, roundCornersTopBottomRadius), FieldType::Float},
    };

    // In [0, 1], or NaN where the record or the point makes the scale
    // intensity NaN; 0 in the grooves. z and the flags are ignored.
    static float evaluate(const Record& r, int flags, float x, float y, float z);
    // The same for a block of points, the wobble and the noise sum across
    // points at once.
    static void evaluateBlock(const Record& r, int flags, const float* points, int n, float* out);

    float getStripeWidth() const { return record_.stripeWidth; }
    void setStripeWidth(float v) { record_.stripeWidth = v; }
    bool getRandomizeColors() const { return record_.randomizeColors != 0; }
    void setRandomizeColors(bool on) { record_.randomizeColors = on ? 1 : 0; }
    float getMinColor() const { return record_.minColor; }
    void setMinColor(float v) { record_.minColor = v; }
    float getMaxColor() const { return record_.maxColor; }
    void setMaxColor(float v) { record_.maxColor = v; }
    bool getScaleVariabilityEnabled() const { return record_.scaleVariabilityEnabled != 0; }
    void setScaleVariabilityEnabled(bool on) { record_.scaleVariabilityEnabled = on ? 1 : 0; }
    float getScaleVariabilityFrequency() const { return record_.scaleVariabilityFrequency; }
    void setScaleVariabilityFrequency(float v) { record_.scaleVariabilityFrequency = v; }
    float getScaleVariabilityAmplitude() const { return record_.scaleVariabilityAmplitude; }
    void setScaleVariabilityAmplitude(float v) { record_.scaleVariabilityAmplitude = v; }
    bool getScaleNoiseAdd() const { return record_.scaleNoiseAdd != 0; }
    void setScaleNoiseAdd(bool on) { record_.scaleNoiseAdd = on ? 1 : 0; }
    int getScaleNoiseOctaves() const { return record_.scaleNoiseOctaves; }
    void setScaleNoiseOctaves(int v) { record_.scaleNoiseOctaves = v; }
    float getScaleNoiseLacunarity() const { return record_.scaleNoiseLacunarity; }
    void setScaleNoiseLacunarity(float v) { record_.scaleNoiseLacunarity = v; }
    float getScaleNoiseGain() const { return record_.scaleNoiseGain; }
    void setScaleNoiseGain(float v) { record_.scaleNoiseGain = v; }
    float getScaleNoiseDetail() const { return record_.scaleNoiseDetail; }
    void setScaleNoiseDetail(float v) { record_.scaleNoiseDetail = v; }
    bool getRoundCornersEnabled() const { return record_.roundCornersEnabled != 0; }
    void setRoundCornersEnabled(bool on) { record_.roundCornersEnabled = on ? 1 : 0; }
    float getRoundCornersLeftRightRadius() const { return record_.roundCornersLeftRightRadius; }
    void setRoundCornersLeftRightRadius(float v) { record_.roundCornersLeftRightRadius = v; }
    float getRoundCornersTopBottomRadius() const { return record_.roundCornersTopBottomRadius; }
    void setRoundCornersTopBottomRadius(float v) { record_.roundCornersTopBottomRadius = v; }

private:
    friend class RecordTexture3D<SnakeskinTexture3D>;
    Record record_;
};

static_assert(offsetof(SnakeskinTexture3D::Record, stripeWidth) == 36);
static_assert(offsetof(SnakeskinTexture3D::Record, randomizeColors) == 40);
static_assert(offsetof(SnakeskinTexture3D::Record, minColor) == 44);
static_assert(offsetof(SnakeskinTexture3D::Record, maxColor) == 48);
static_assert(offsetof(SnakeskinTexture3D::Record, scaleVariabilityEnabled) == 52);
static_assert(offsetof(SnakeskinTexture3D::Record, scaleVariabilityFrequency) == 56);
static_assert(offsetof(SnakeskinTexture3D::Record, scaleVariabilityAmplitude) == 60);
static_assert(offsetof(SnakeskinTexture3D::Record, scaleNoiseAdd) == 64);
static_assert(offsetof(SnakeskinTexture3D::Record, scaleNoiseOctaves) == 68);
static_assert(offsetof(SnakeskinTexture3D::Record, scaleNoiseLacunarity) == 72);
static_assert(offsetof(SnakeskinTexture3D::Record, scaleNoiseGain) == 76);
static_assert(offsetof(SnakeskinTexture3D::Record, scaleNoiseDetail) == 80);
static_assert(offsetof(SnakeskinTexture3D::Record, roundCornersEnabled) == 84);
static_assert(offsetof(SnakeskinTexture3D::Record, roundCornersLeftRightRadius) == 88);
static_assert(offsetof(SnakeskinTexture3D::Record, roundCornersTopBottomRadius) == 92);

extern template class RecordTexture3D<SnakeskinTexture3D>;

}  // namespace gritwell
