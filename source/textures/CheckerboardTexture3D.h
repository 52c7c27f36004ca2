#pragma once
// "Checkerboard": unit cubes alternately dark (0.25) and light (0.75), with
// an optional per-cube jitter of the tones, or with depth > 1 a checkerboard
// of ever finer cubes whose tones are shaded around the parent's.

#include <cstdint>
#include <string_view>

#include "core/BaseData.h"
#include "core/RecordTexture3D.h"

namespace gritwell {

class CheckerboardTexture3D final : public RecordTexture3D<CheckerboardTexture3D> {
public:
    static constexpr std::string_view kName = "Checkerboard";
    static constexpr std::string_view kSummary = "Unit cubes alternately dark and light, optionally subdivided into finer ones";
    static constexpr int kMajorVersion = 3;
    static constexpr int kMinorVersion = 0;
    static constexpr int kRecordSize = 48;

    struct Record {
        BaseData header = makeHeader(kRecordSize, kName, kMajorVersion, kMinorVersion);
        std::int32_t depth = 1;               // subdivision levels
        std::uint8_t randomizeColors = 0;     // jitter the tone per cube (depth 1 only)
        std::uint8_t padding[3] = {};
        float variability = 0.5f;             // amplitude of the jitter
    };
    static constexpr FieldInfo kFields[] = {
        {"depth", offsetof(Record, depth), FieldType::Int32},
        {"randomizeColors", offsetof(Record, randomizeColors), FieldType::Bool},
        {"variability", offsetof(Record, variability), FieldType::Float},
    };
    // Text stream operators that write and read nothing, as this pattern's
    // always have.
    static constexpr bool kFieldsAsText = false;

    static float evaluate(const Record& r, int flags, float x, float y, float z);

    int getDepth() const { return record_.depth; }
    void setDepth(int depth) { record_.depth = depth; }
    bool getRandomizeColors() const { return record_.randomizeColors != 0; }
    void setRandomizeColors(bool on) { record_.randomizeColors = on ? 1 : 0; }
    float getVariability() const { return record_.variability; }
    void setVariability(float v) { record_.variability = v; }

private:
    friend class RecordTexture3D<CheckerboardTexture3D>;
    Record record_;
};

static_assert(offsetof(CheckerboardTexture3D::Record, depth) == 36);
static_assert(offsetof(CheckerboardTexture3D::Record, randomizeColors) == 40);
static_assert(offsetof(CheckerboardTexture3D::Record, variability) == 44);

extern template class RecordTexture3D<CheckerboardTexture3D>;

}  // namespace gritwell
