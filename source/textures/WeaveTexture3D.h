#pragma once
// "Weave": woven cloth in the x/y plane, extruded along z. Horizontal
// threads run along x (one per unit row), vertical threads along y (one per
// unit column), over a background; each passes over and under its
// crossings, in a plain weave or a herringbone twill, with an optional
// sinusoidal shading that makes the threads look round.

#include <cstdint>
#include <string_view>

#include "core/BaseData.h"
#include "core/RecordTexture3D.h"

namespace gritwell {

class WeaveTexture3D final : public RecordTexture3D<WeaveTexture3D> {
public:
    static constexpr std::string_view kName = "Weave";
    static constexpr std::string_view kSummary = "Woven cloth: threads over and under in a plain weave or a twill";
    static constexpr int kMajorVersion = 3;
    static constexpr int kMinorVersion = 0;
    static constexpr int kRecordSize = 96;

    enum Pattern : std::int32_t { WEAVE_SIMPLE = 0, WEAVE_HERRINGBONE = 1 };

    struct Record {
        BaseData header = makeHeader(kRecordSize, kName, kMajorVersion, kMinorVersion);
        std::int32_t pattern = WEAVE_SIMPLE;
        float backgroundColor = 0.0f;           // between the threads
        float horizontalColor = 1.0f;
        float verticalColor = 1.0f;
        float horizontalWidth = 0.85f;          // fraction of a row
        float verticalWidth = 0.85f;            // fraction of a column
        std::uint8_t horizontalRandomize = 0;   // a random intensity per horizontal thread
        std::uint8_t padding0[3] = {};
        float horizontalMinColor = 0.0f;        // range of that intensity
        float horizontalMaxColor = 0.5f;
        std::uint8_t verticalRandomize = 0;     // a random intensity per vertical thread
        std::uint8_t padding1[3] = {};
        float verticalMinColor = 0.5f;
        float verticalMaxColor = 1.0f;
        std::uint8_t shadingEnable = 1;         // rounded-thread shading
        std::uint8_t padding2[3] = {};
        float shadingHorizontalStrength = 0.85f;  // depth of the shading, 0..1
        float shadingVerticalStrength = 0.85f;
    };
    static constexpr FieldInfo kFields[] = {
        {"pattern", offsetof(Record, pattern), FieldType::Int32},
        {"backgroundColor", offsetof(Record, backgroundColor), FieldType::Float},
        {"horizontalColor", offsetof(Record, horizontalColor), FieldType::Float},
        {"verticalColor", offsetof(Record, verticalColor), FieldType::Float},
        {"horizontalWidth", offsetof(Record, horizontalWidth), FieldType::Float},
        {"verticalWidth", offsetof(Record, verticalWidth), FieldType::Float},
        {"horizontalRandomize", offsetof(Record, horizontalRandomize), FieldType::Bool},
        {"horizontalMinColor", offsetof(Record, horizontalMinColor), FieldType::Float},
        {"horizontalMaxColor", offsetof(Record, horizontalMaxColor), FieldType::Float},
        {"verticalRandomize", offsetof(Record, verticalRandomize), FieldType::Bool},
        {"verticalMinColor", offsetof(Record, verticalMinColor), FieldType::Float},
        {"verticalMaxColor", offsetof(Record, verticalMaxColor), FieldType::Float},
        {"shadingEnable", offsetof(Record, shadingEnable), FieldType::Bool},
        {"shadingHorizontalStrength", offsetof(Record, shadingHorizontalStrength), FieldType::Float},
        {"shadingVerticalStrength", offsetof(Record, shadingVerticalStrength), FieldType::Float},
    };
    // Records of these major versions are converted (convertOlderRecord).
    static constexpr int kOlderMajorVersions[] = {2};

    // The cloth's intensity at the point, in [0, 1] while the colours and
    // strengths are (NaN where one coordinate is not finite and the other
    // lies on a shaded thread); z and the flags are ignored. Plain weave for
    // pattern 0, herringbone for every other value.
    static float evaluate(const Record& r, int flags, float x, float y, float z);
    // The same for a block of points: either weave eight at a time on
    // processors with AVX2.
    static void evaluateBlock(const Record& r, int flags, const float* points, int n, float* out);
    // The two weaves themselves, whatever the record's pattern says.
    static float simple(const Record& r, float x, float y);
    static float herringbone(const Record& r, float x, float y);
    float simple(const float* p) const { return simple(record_, p[0], p[1]); }
    float herringbone(const float* p) const { return herringbone(record_, p[0], p[1]); }

    // Version 2 (92 bytes) had every field but the pattern, with the shading
    // switch stored as a float; the header and the pattern keep what the
    // object holds. Called for records of the versions in
    // kOlderMajorVersions only.
    static void convertOlderRecord(Record& r, const char* in);

    Pattern getPattern() const { return static_cast<Pattern>(record_.pattern); }
    void setPattern(Pattern p) { record_.pattern = p; }
    float getBackgroundColor() const { return record_.backgroundColor; }
    void setBackgroundColor(float v) { record_.backgroundColor = v; }
    float getHorizontalColor() const { return record_.horizontalColor; }
    void setHorizontalColor(float v) { record_.horizontalColor = v; }
    float getVerticalColor() const { return record_.verticalColor; }
    void setVerticalColor(float v) { record_.verticalColor = v; }
    float getHorizontalWidth() const { return record_.horizontalWidth; }
    void setHorizontalWidth(float v) { record_.horizontalWidth = v; }
    float getVerticalWidth() const { return record_.verticalWidth; }
    void setVerticalWidth(float v) { record_.verticalWidth = v; }
    bool getHorizontalRandomize() const { return record_.horizontalRandomize != 0; }
    void setHorizontalRandomize(bool on) { record_.horizontalRandomize = on ? 1 : 0; }
    float getHorizontalMinColor() const { return record_.horizontalMinColor; }
    void setHorizontalMinColor(float v) { record_.horizontalMinColor = v; }
    float getHorizontalMaxColor() const { return record_.horizontalMaxColor; }
    void setHorizontalMaxColor(float v) { record_.horizontalMaxColor = v; }
    bool getVerticalRandomize() const { return record_.verticalRandomize != 0; }
    void setVerticalRandomize(bool on) { record_.verticalRandomize = on ? 1 : 0; }
    float getVerticalMinColor() const { return record_.verticalMinColor; }
    void setVerticalMinColor(float v) { record_.verticalMinColor = v; }
    float getVerticalMaxColor() const { return record_.verticalMaxColor; }
    // Writes the horizontal maximum: the panel's vertical maximum has always
    // landed there, and stored records depend on it. The vertical maximum
    // changes only with a whole record.
    void setVerticalMaxColor(float v) { record_.horizontalMaxColor = v; }
    bool getShadingEnable() const { return record_.shadingEnable != 0; }
    void setShadingEnable(bool on) { record_.shadingEnable = on ? 1 : 0; }
    float getShadingHorizontalStrength() const { return record_.shadingHorizontalStrength; }
    void setShadingHorizontalStrength(float v) { record_.shadingHorizontalStrength = v; }
    float getShadingVerticalStrength() const { return record_.shadingVerticalStrength; }
    void setShadingVerticalStrength(float v) { record_.shadingVerticalStrength = v; }

private:
    friend class RecordTexture3D<WeaveTexture3D>;
    Record record_;
};

static_assert(offsetof(WeaveTexture3D::Record, pattern) == 36);
static_assert(offsetof(WeaveTexture3D::Record, backgroundColor) == 40);
static_assert(offsetof(WeaveTexture3D::Record, horizontalColor) == 44);
static_assert(offsetof(WeaveTexture3D::Record, verticalColor) == 48);
static_assert(offsetof(WeaveTexture3D::Record, horizontalWidth) == 52);
static_assert(offsetof(WeaveTexture3D::Record, verticalWidth) == 56);
static_assert(offsetof(WeaveTexture3D::Record, horizontalRandomize) == 60);
static_assert(offsetof(WeaveTexture3D::Record, horizontalMinColor) == 64);
static_assert(offsetof(WeaveTexture3D::Record, horizontalMaxColor) == 68);
static_assert(offsetof(WeaveTexture3D::Record, verticalRandomize) == 72);
static_assert(offsetof(WeaveTexture3D::Record, verticalMinColor) == 76);
static_assert(offsetof(WeaveTexture3D::Record, verticalMaxColor) == 80);
static_assert(offsetof(WeaveTexture3D::Record, shadingEnable) == 84);
static_assert(offsetof(WeaveTexture3D::Record, shadingHorizontalStrength) == 88);
static_assert(offsetof(WeaveTexture3D::Record, shadingVerticalStrength) == 92);

extern template class RecordTexture3D<WeaveTexture3D>;

}  // namespace gritwell
