#pragma once
// "Scales": overlapping fish or reptile scales in the x/y plane (z is
// ignored). One scale per unit cell, the rows overlapping by half a cell;
// each scale has a body, a darker base where it tucks under its neighbours
// and a rim, with optional random intensities per scale, a noise wobble of
// the grid and shading along and across each scale.

#include <cstdint>
#include <string_view>

#include "core/BaseData.h"
#include "core/RecordTexture3D.h"
#include "noise/PRMan.h"

namespace gritwell {

class ScalesTexture3D final : public RecordTexture3D<ScalesTexture3D> {
public:
    static constexpr std::string_view kName = "Scales";
    static constexpr std::string_view kSummary = "Overlapping fish or reptile scales";
    static constexpr int kMajorVersion = 1;
    static constexpr int kMinorVersion = 0;
    static constexpr int kRecordSize = 124;

    // The outline of a scale: a half sine wave, or a circle for every
    // non-zero value.
    enum ScaleShape : std::int32_t { SCALE_SHAPE_SEMICIRCLE = 0, SCALE_SHAPE_NORMAL = 1 };

    struct Record {
        BaseData header = makeHeader(kRecordSize, kName, kMajorVersion, kMinorVersion);
        std::int32_t scaleShape = SCALE_SHAPE_SEMICIRCLE;
        std::uint8_t shadingAlongEnabled = 0;     // shade along the scale (in y)
        std::uint8_t padding0[3] = {};
        float shadingAlongStrength = 0.25f;       // 0..1
        std::uint8_t shadingAcrossEnabled = 0;    // shade across the scale (in x)
        std::uint8_t padding1[3] = {};
        float shadingAcrossStrength = 0.25f;      // 0..1
        float baseDimension = 0.2f;               // extent of the dark base band
        float edgeDimension = 0.07f;              // width of the rim
        std::uint8_t scaleVariabilityEnabled = 0; // wobble the grid with noise
        std::uint8_t padding2[3] = {};
        float scaleVariabilityFrequency = 0.1f;
        float scaleVariabilityAmplitude = 0.25f;
        float baseColor = PRMan::luminance(0.0f, 0.0f, 0.0f);
        std::uint8_t baseRandomizeColors = 0;     // a random base intensity per scale
        std::uint8_t padding3[3] = {};
        float baseMinColor = 0.0f;
        float baseMaxColor = 0.2f;
        float bodyColor = PRMan::luminance(0.5f, 0.7f, 0.8f);
        std::uint8_t bodyRandomizeColors = 0;     // a random body intensity per scale
        std::uint8_t padding4[3] = {};
        float bodyMinColor = 0.5f;
        float bodyMaxColor = 0.8f;
        float edgeColor = PRMan::luminance(0.9f, 1.0f, 0.9f);
        std::uint8_t edgeRandomizeColors = 0;     // a random rim intensity per scale
        std::uint8_t padding5[3] = {};
        float edgeMinColor = 0.9f;
        float edgeMaxColor = 1.0f;
    };
    static constexpr FieldInfo kFields[] = {
        {"scaleShape", offsetof(Record, scaleShape), FieldType::Int32},
        {"shadingAlongEnabled", offsetof(Record, shadingAlongEnabled), FieldType::Bool},
        {"shadingAlongStrength", offsetof(Record, shadingAlongStrength), FieldType::Float},
        {"shadingAcrossEnabled", offsetof(Record, shadingAcrossEnabled), FieldType::Bool},
        {"shadingAcrossStrength", offsetof(Record, shadingAcrossStrength), FieldType::Float},
        {"baseDimension", offsetof(Record, baseDimension), FieldType::Float},
        {"edgeDimension", offsetof(Record, edgeDimension), FieldType::Float},
        {"scaleVariabilityEnabled", offsetof(Record, scaleVariabilityEnabled), FieldType::Bool},
        {"scaleVariabilityFrequency", offsetof(Record, scaleVariabilityFrequency), FieldType::Float},
        {"scaleVariabilityAmplitude", offsetof(Record, scaleVariabilityAmplitude), FieldType::Float},
        {"baseColor", offsetof(Record, baseColor), FieldType::Float},
        {"baseRandomizeColors", offsetof(Record, baseRandomizeColors), FieldType::Bool},
        {"baseMinColor", offsetof(Record, baseMinColor), FieldType::Float},
        {"baseMaxColor", offsetof(Record, baseMaxColor), FieldType::Float},
        {"bodyColor", offsetof(Record, bodyColor), FieldType::Float},
        {"bodyRandomizeColors", offsetof(Record, bodyRandomizeColors), FieldType::Bool},
        {"bodyMinColor", offsetof(Record, bodyMinColor), FieldType::Float},
        {"bodyMaxColor", offsetof(Record, bodyMaxColor), FieldType::Float},
        {"edgeColor", offsetof(Record, edgeColor), FieldType::Float},
        {"edgeRandomizeColors", offsetof(Record, edgeRandomizeColors), FieldType::Bool},
        {"edgeMinColor", offsetof(Record, edgeMinColor), FieldType::Float},
        {"edgeMaxColor", offsetof(Record, edgeMaxColor), FieldType::Float},
    };

    // The intensity at (x, y) (z and the flags are ignored): one of the base,
    // body or rim intensities (or their random picks) times the shading
    // factors, unclamped; some float, never a fault, for NaN or infinite points.
    static float evaluate(const Record& r, int flags, float x, float y, float z);

    ScaleShape getScaleShape() const { return static_cast<ScaleShape>(record_.scaleShape); }
    void setScaleShape(ScaleShape s) { record_.scaleShape = s; }
    bool getShadingAlongEnabled() const { return record_.shadingAlongEnabled != 0; }
    void setShadingAlongEnabled(bool on) { record_.shadingAlongEnabled = on ? 1 : 0; }
    float getShadingAlongStrength() const { return record_.shadingAlongStrength; }
    void setShadingAlongStrength(float v) { record_.shadingAlongStrength = v; }
    bool getShadingAcrossEnabled() const { return record_.shadingAcrossEnabled != 0; }
    void setShadingAcrossEnabled(bool on) { record_.shadingAcrossEnabled = on ? 1 : 0; }
    float getShadingAcrossStrength() const { return record_.shadingAcrossStrength; }
    void setShadingAcrossStrength(float v) { record_.shadingAcrossStrength = v; }
    float getBaseDimension() const { return record_.baseDimension; }
    void setBaseDimension(float v) { record_.baseDimension = v; }
    float getEdgeDimension() const { return record_.edgeDimension; }
    void setEdgeDimension(float v) { record_.edgeDimension = v; }
    bool getScaleVariabilityEnabled() const { return record_.scaleVariabilityEnabled != 0; }
    void setScaleVariabilityEnabled(bool on) { record_.scaleVariabilityEnabled = on ? 1 : 0; }
    float getScaleVariabilityFrequency() const { return record_.scaleVariabilityFrequency; }
    void setScaleVariabilityFrequency(float v) { record_.scaleVariabilityFrequency = v; }
    float getScaleVariabilityAmplitude() const { return record_.scaleVariabilityAmplitude; }
    void setScaleVariabilityAmplitude(float v) { record_.scaleVariabilityAmplitude = v; }
    float getBaseColor() const { return record_.baseColor; }
    void setBaseColor(float v) { record_.baseColor = v; }
    bool getBaseRandomizeColors() const { return record_.baseRandomizeColors != 0; }
    void setBaseRandomizeColors(bool on) { record_.baseRandomizeColors = on ? 1 : 0; }
    float getBaseMinColor() const { return record_.baseMinColor; }
    void setBaseMinColor(float v) { record_.baseMinColor = v; }
    float getBaseMaxColor() const { return record_.baseMaxColor; }
    void setBaseMaxColor(float v) { record_.baseMaxColor = v; }
    float getBodyColor() const { return record_.bodyColor; }
    void setBodyColor(float v) { record_.bodyColor = v; }
    bool getBodyRandomizeColors() const { return record_.bodyRandomizeColors != 0; }
    void setBodyRandomizeColors(bool on) { record_.bodyRandomizeColors = on ? 1 : 0; }
    float getBodyMinColor() const { return record_.bodyMinColor; }
    void setBodyMinColor(float v) { record_.bodyMinColor = v; }
    float getBodyMaxColor() const { return record_.bodyMaxColor; }
    void setBodyMaxColor(float v) { record_.bodyMaxColor = v; }
    float getEdgeColor() const { return record_.edgeColor; }
    void setEdgeColor(float v) { record_.edgeColor = v; }
    bool getEdgeRandomizeColors() const { return record_.edgeRandomizeColors != 0; }
    void setEdgeRandomizeColors(bool on) { record_.edgeRandomizeColors = on ? 1 : 0; }
    float getEdgeMinColor() const { return record_.edgeMinColor; }
    void setEdgeMinColor(float v) { record_.edgeMinColor = v; }
    float getEdgeMaxColor() const { return record_.edgeMaxColor; }
    void setEdgeMaxColor(float v) { record_.edgeMaxColor = v; }

private:
    friend class RecordTexture3D<ScalesTexture3D>;
    Record record_;
};

static_assert(offsetof(ScalesTexture3D::Record, scaleShape) == 36);
static_assert(offsetof(ScalesTexture3D::Record, shadingAlongEnabled) == 40);
static_assert(offsetof(ScalesTexture3D::Record, shadingAlongStrength) == 44);
static_assert(offsetof(ScalesTexture3D::Record, shadingAcrossEnabled) == 48);
static_assert(offsetof(ScalesTexture3D::Record, shadingAcrossStrength) == 52);
static_assert(offsetof(ScalesTexture3D::Record, baseDimension) == 56);
static_assert(offsetof(ScalesTexture3D::Record, edgeDimension) == 60);
static_assert(offsetof(ScalesTexture3D::Record, scaleVariabilityEnabled) == 64);
static_assert(offsetof(ScalesTexture3D::Record, scaleVariabilityFrequency) == 68);
static_assert(offsetof(ScalesTexture3D::Record, scaleVariabilityAmplitude) == 72);
static_assert(offsetof(ScalesTexture3D::Record, baseColor) == 76);
static_assert(offsetof(ScalesTexture3D::Record, baseRandomizeColors) == 80);
static_assert(offsetof(ScalesTexture3D::Record, baseMinColor) == 84);
static_assert(offsetof(ScalesTexture3D::Record, baseMaxColor) == 88);
static_assert(offsetof(ScalesTexture3D::Record, bodyColor) == 92);
static_assert(offsetof(ScalesTexture3D::Record, bodyRandomizeColors) == 96);
static_assert(offsetof(ScalesTexture3D::Record, bodyMinColor) == 100);
static_assert(offsetof(ScalesTexture3D::Record, bodyMaxColor) == 104);
static_assert(offsetof(ScalesTexture3D::Record, edgeColor) == 108);
static_assert(offsetof(ScalesTexture3D::Record, edgeRandomizeColors) == 112);
static_assert(offsetof(ScalesTexture3D::Record, edgeMinColor) == 116);
static_assert(offsetof(ScalesTexture3D::Record, edgeMaxColor) == 120);

extern template class RecordTexture3D<ScalesTexture3D>;

}  // namespace gritwell
