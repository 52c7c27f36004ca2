#pragma once
// "Zigzag": unit rows of cells two units wide, alternately dark (0.25) and
// light (0.75), each row shifted one unit against the row below so the tone
// boundaries climb in diagonal steps; optionally each cell's tone jittered.
// z is ignored.

#include <cstdint>
#include <string_view>

#include "core/BaseData.h"
#include "core/RecordTexture3D.h"

namespace gritwell {

class ZigzagTexture3D final : public RecordTexture3D<ZigzagTexture3D> {
public:
    static constexpr std::string_view kName = "Zigzag";
    static constexpr std::string_view kSummary = "Rows of dark and light cells climbing in diagonal steps";
    static constexpr int kMajorVersion = 1;
    static constexpr int kMinorVersion = 0;
    static constexpr int kRecordSize = 44;

    struct Record {
        BaseData header = makeHeader(kRecordSize, kName, kMajorVersion, kMinorVersion);
        std::uint8_t randomizeColors = 0;  // jitter each cell's tone
        std::uint8_t padding[3] = {};
        float variability = 0.5f;          // amplitude of the jitter
    };
    static constexpr FieldInfo kFields[] = {
        {"randomizeColors", offsetof(Record, randomizeColors), FieldType::Bool},
        {"variability", offsetof(Record, variability), FieldType::Float},
    };
    // Text stream operators that write and read nothing, as this pattern's
    // always have.
    static constexpr bool kFieldsAsText = false;

    // 0.25 or 0.75, jittered by up to variability / 4 and clamped to [0, 1].
    static float evaluate(const Record& r, int flags, float x, float y, float z);

    bool getRandomizeColors() const { return record_.randomizeColors != 0; }
    void setRandomizeColors(bool on) { record_.randomizeColors = on ? 1 : 0; }
    float getVariability() const { return record_.variability; }
    void setVariability(float v) { record_.variability = v; }

private:
    friend class RecordTexture3D<ZigzagTexture3D>;
    Record record_;
};

static_assert(offsetof(ZigzagTexture3D::Record, randomizeColors) == 36);
static_assert(offsetof(ZigzagTexture3D::Record, variability) == 40);

extern template class RecordTexture3D<ZigzagTexture3D>;

}  // namespace gritwell
