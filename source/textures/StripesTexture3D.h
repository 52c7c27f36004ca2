#pragma once
// "Stripes": dark lines on the planes x = integer, bent sideways by a wave
// running along y, on a white ground; optionally each line takes its own
// tone between two limits. z is ignored.

#include <cstdint>
#include <string_view>

#include "core/BaseData.h"
#include "core/RecordTexture3D.h"

namespace gritwell {

class StripesTexture3D final : public RecordTexture3D<StripesTexture3D> {
public:
    static constexpr std::string_view kName = "Stripes";
    static constexpr std::string_view kSummary = "Dark lines on the planes x = integer, bent by a wave";
    static constexpr int kMajorVersion = 4;
    static constexpr int kMinorVersion = 0;
    static constexpr int kRecordSize = 60;

    // The wave added to x. Stored records hold these values; the dialog
    // lists the styles in another order and maps between the two.
    enum Style : std::int32_t {
        PerlinNoise = 0,  // gradient noise of (2x, 2y)
        Ribbon = 1,       // half circles up then down along each unit of y
        Sawtooth = 2,     // the fractional part of y
        Sine = 3,         // sin(2 pi y)
        Straight = 4,     // no wave
        Triangle = 5,     // up over half a unit of y, down over the other half
    };

    struct Record {
        BaseData header = makeHeader(kRecordSize, kName, kMajorVersion, kMinorVersion);
        std::int32_t stripeStyle = Straight;
        float stripeWidth = 0.25f;          // full width of a line, in line spacings
        float amplitude = 0.25f;            // sideways scale of the wave
        std::uint8_t randomizeColors = 0;   // tone each line by cell noise
        std::uint8_t padding[3] = {};
        float minColor = 0.0f;
        float maxColor = 1.0f;
    };
    static constexpr FieldInfo kFields[] = {
        {"stripeStyle", offsetof(Record, stripeStyle), FieldType::Int32},
        {"stripeWidth", offsetof(Record, stripeWidth), FieldType::Float},
        {"amplitude", offsetof(Record, amplitude), FieldType::Float},
        {"randomizeColors", offsetof(Record, randomizeColors), FieldType::Bool},
        {"minColor", offsetof(Record, minColor), FieldType::Float},
        {"maxColor", offsetof(Record, maxColor), FieldType::Float},
    };
    // Text stream operators that write and read nothing, as this pattern's
    // always have.
    static constexpr bool kFieldsAsText = false;

    // 0 on a line (or its tone, minColor..maxColor when randomised, not
    // clamped), 1 between lines. Any style value outside 0..5 draws straight lines.
    static float evaluate(const Record& r, int flags, float x, float y, float z);

    Style getStripeStyle() const { return static_cast<Style>(record_.stripeStyle); }
    void setStripeStyle(Style style) { record_.stripeStyle = style; }
    float getStripeWidth() const { return record_.stripeWidth; }
    void setStripeWidth(float w) { record_.stripeWidth = w; }
    float getAmplitude() const { return record_.amplitude; }
    void setAmplitude(float a) { record_.amplitude = a; }
    bool getRandomizeColors() const { return record_.randomizeColors != 0; }
    void setRandomizeColors(bool on) { record_.randomizeColors = on ? 1 : 0; }
    float getMinColor() const { return record_.minColor; }
    void setMinColor(float c) { record_.minColor = c; }
    float getMaxColor() const { return record_.maxColor; }
    void setMaxColor(float c) { record_.maxColor = c; }

private:
    friend class RecordTexture3D<StripesTexture3D>;
    Record record_;
};

static_assert(offsetof(StripesTexture3D::Record, stripeStyle) == 36);
static_assert(offsetof(StripesTexture3D::Record, stripeWidth) == 40);
static_assert(offsetof(StripesTexture3D::Record, amplitude) == 44);
static_assert(offsetof(StripesTexture3D::Record, randomizeColors) == 48);
static_assert(offsetof(StripesTexture3D::Record, minColor) == 52);
static_assert(offsetof(StripesTexture3D::Record, maxColor) == 56);

extern template class RecordTexture3D<StripesTexture3D>;

}  // namespace gritwell
