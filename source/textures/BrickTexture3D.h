#pragma once
// "Brick": mortar-jointed bricks filling space, laid in a running bond (every
// other course and layer shifted by half a brick, optionally jittered) or in
// a herringbone of 2x1 bricks. Either can round the brick corners in the x/y
// plane and give each brick its own random intensity. Planar mode evaluates
// the x/y plane.

#include <cstdint>
#include <string_view>

#include "core/BaseData.h"
#include "core/RecordTexture3D.h"
#include "noise/PRMan.h"

namespace gritwell {

class BrickTexture3D final : public RecordTexture3D<BrickTexture3D> {
public:
    static constexpr std::string_view kName = "Brick";
    static constexpr std::string_view kSummary = "Mortar-jointed bricks in a running bond or a herringbone";
    static constexpr int kMajorVersion = 4;
    static constexpr int kMinorVersion = 0;
    static constexpr int kRecordSize = 92;

    // The panel lists "Running Bond" at index 0 and "Herringbone" at 1 and
    // stores the index as is, so its labels are crossed with these values;
    // stored records depend on the numbers, and 1 must stay the running bond.
    enum Pattern : std::int32_t { HERRINGBONE = 0, RUNNING_BOND = 1 };

    struct Record {
        BaseData header = makeHeader(kRecordSize, kName, kMajorVersion, kMinorVersion);
        std::int32_t pattern = RUNNING_BOND;
        float brickHeight = 0.225f;                   // along y, without mortar
        float brickWidth = 0.8f;                      // along x, without mortar (running bond)
        float brickDepth = 0.4f;                      // along z, without mortar
        float mortarThickness = 0.01f;                // width of a joint
        std::uint8_t roundedCornersEnabled = 0;       // round the x/y corners
        std::uint8_t padding0[3] = {};
        float roundedCornersRadius = 0.25f;           // fraction of half the smaller side
        std::uint8_t rowOffsetVariabilityEnabled = 0; // jitter each course's shift (running bond)
        std::uint8_t padding1[3] = {};
        float rowOffsetVariabilityAmplitude = 0.1f;   // in brick lengths
        float brickColor = PRMan::luminance(0.5f, 0.15f, 0.14f);
        float mortarColor = PRMan::luminance(0.5f, 0.5f, 0.5f);
        std::uint8_t randomizeColors = 0;             // a random intensity per brick
        std::uint8_t padding2[3] = {};
        float minColor = 0.0f;                        // range of the random intensity
        float maxColor = 0.5f;
    };
    static constexpr FieldInfo kFields[] = {
        {"pattern", offsetof(Record, pattern), FieldType::Int32},
        {"brickHeight", offsetof(Record, brickHeight), FieldType::Float},
        {"brickWidth", offsetof(Record, brickWidth), FieldType::Float},
        {"brickDepth", offsetof(Record, brickDepth), FieldType::Float},
        {"mortarThickness", offsetof(Record, mortarThickness), FieldType::Float},
        {"roundedCornersEnabled", offsetof(Record, roundedCornersEnabled), FieldType::Bool},
        {"roundedCornersRadius", offsetof(Record, roundedCornersRadius), FieldType::Float},
        {"rowOffsetVariabilityEnabled", offsetof(Record, rowOffsetVariabilityEnabled), FieldType::Bool},
        {"rowOffsetVariabilityAmplitude", offsetof(Record, rowOffsetVariabilityAmplitude), FieldType::Float},
        {"brickColor", offsetof(Record, brickColor), FieldType::Float},
        {"mortarColor", offsetof(Record, mortarColor), FieldType::Float},
        {"randomizeColors", offsetof(Record, randomizeColors), FieldType::Bool},
        {"minColor", offsetof(Record, minColor), FieldType::Float},
        {"maxColor", offsetof(Record, maxColor), FieldType::Float},
    };
    // Records of these major versions are converted (convertOlderRecord).
    static constexpr int kOlderMajorVersions[] = {3};

    // The brick or the mortar intensity at the point (any float, NaN in a
    // zero-sized brick): running bond for pattern 1, herringbone otherwise;
    // on processors with AVX2 through the block's lane steps, the same bits.
    static float evaluate(const Record& r, int flags, float x, float y, float z);
    // The same for a block of points: either pattern eight at a time on
    // processors with AVX2.
    static void evaluateBlock(const Record& r, int flags, const float* points, int n, float* out);
    // The two bonds themselves, whatever the record's pattern says.
    static float runningBond(const Record& r, int flags, float x, float y, float z);
    static float herringbone(const Record& r, int flags, float x, float y, float z);
    float runningBond(const float* p) const { return runningBond(record_, flags(), p[0], p[1], p[2]); }
    float herringbone(const float* p) const { return herringbone(record_, flags(), p[0], p[1], p[2]); }

    // Version 3 (64 bytes) had only the sizes and the random intensities;
    // every other field, and the header, keep what the object holds. Called
    // for records of the versions in kOlderMajorVersions only.
    static void convertOlderRecord(Record& r, const char* in);

    Pattern getPattern() const { return static_cast<Pattern>(record_.pattern); }
    void setPattern(Pattern p) { record_.pattern = p; }
    float getBrickHeight() const { return record_.brickHeight; }
    void setBrickHeight(float v) { record_.brickHeight = v; }
    float getBrickWidth() const { return record_.brickWidth; }
    void setBrickWidth(float v) { record_.brickWidth = v; }
    float getBrickDepth() const { return record_.brickDepth; }
    void setBrickDepth(float v) { record_.brickDepth = v; }
    float getMortarThickness() const { return record_.mortarThickness; }
    void setMortarThickness(float v) { record_.mortarThickness = v; }
    bool getRoundedCornersEnabled() const { return record_.roundedCornersEnabled != 0; }
    void setRoundedCornersEnabled(bool on) { record_.roundedCornersEnabled = on ? 1 : 0; }
    float getRoundedCornersRadius() const { return record_.roundedCornersRadius; }
    void setRoundedCornersRadius(float v) { record_.roundedCornersRadius = v; }
    bool getRowOffsetVariabilityEnabled() const { return record_.rowOffsetVariabilityEnabled != 0; }
    void setRowOffsetVariabilityEnabled(bool on) { record_.rowOffsetVariabilityEnabled = on ? 1 : 0; }
    float getRowOffsetVariabilityAmplitude() const { return record_.rowOffsetVariabilityAmplitude; }
    void setRowOffsetVariabilityAmplitude(float v) { record_.rowOffsetVariabilityAmplitude = v; }
    float getBrickColor() const { return record_.brickColor; }
    void setBrickColor(float v) { record_.brickColor = v; }
    float getMortarColor() const { return record_.mortarColor; }
    void setMortarColor(float v) { record_.mortarColor = v; }
    bool getRandomizeColors() const { return record_.randomizeColors != 0; }
    void setRandomizeColors(bool on) { record_.randomizeColors = on ? 1 : 0; }
    float getMinColor() const { return record_.minColor; }
    void setMinColor(float v) { record_.minColor = v; }
    float getMaxColor() const { return record_.maxColor; }
    void setMaxColor(float v) { record_.maxColor = v; }

private:
    friend class RecordTexture3D<BrickTexture3D>;
    Record record_;
};

static_assert(offsetof(BrickTexture3D::Record, pattern) == 36);
static_assert(offsetof(BrickTexture3D::Record, brickHeight) == 40);
static_assert(offsetof(BrickTexture3D::Record, brickWidth) == 44);
static_assert(offsetof(BrickTexture3D::Record, brickDepth) == 48);
static_assert(offsetof(BrickTexture3D::Record, mortarThickness) == 52);
static_assert(offsetof(BrickTexture3D::Record, roundedCornersEnabled) == 56);
static_assert(offsetof(BrickTexture3D::Record, roundedCornersRadius) == 60);
static_assert(offsetof(BrickTexture3D::Record, rowOffsetVariabilityEnabled) == 64);
static_assert(offsetof(BrickTexture3D::Record, rowOffsetVariabilityAmplitude) == 68);
static_assert(offsetof(BrickTexture3D::Record, brickColor) == 72);
static_assert(offsetof(BrickTexture3D::Record, mortarColor) == 76);
static_assert(offsetof(BrickTexture3D::Record, randomizeColors) == 80);
static_assert(offsetof(BrickTexture3D::Record, minColor) == 84);
static_assert(offsetof(BrickTexture3D::Record, maxColor) == 88);

extern template class RecordTexture3D<BrickTexture3D>;

}  // namespace gritwell
