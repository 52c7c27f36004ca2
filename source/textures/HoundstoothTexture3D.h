#pragma once
// "Houndstooth": the broken-check cloth of a 2/2 twill woven from threads
// laid in equal bands of dark and light, in the x/y plane (z is ignored).
// Four dark threads then four light ones each way draw one four-pointed
// tooth per repeat: one repeat per unit square, or four (half the size) for
// the small puppytooth; optionally one random tone shift per unit square.

#include <cstdint>
#include <string_view>

#include "core/BaseData.h"
#include "core/RecordTexture3D.h"

namespace gritwell {

class HoundstoothTexture3D final : public RecordTexture3D<HoundstoothTexture3D> {
public:
    static constexpr std::string_view kName = "Houndstooth";
    static constexpr std::string_view kSummary = "The broken-check cloth of a 2/2 twill";
    static constexpr int kMajorVersion = 1;
    static constexpr int kMinorVersion = 0;
    static constexpr int kRecordSize = 48;

    enum Pattern : std::int32_t { HOUNDSTOOTH = 0, PUPPYTOOTH = 1 };

    struct Record {
        BaseData header = makeHeader(kRecordSize, kName, kMajorVersion, kMinorVersion);
        std::int32_t pattern = HOUNDSTOOTH;   // any value but 0 weaves puppytooth
        std::uint8_t randomizeColors = 0;     // shift the tones per unit square
        std::uint8_t padding[3] = {};
        float variability = 0.5f;             // amplitude of that shift, x 1/4
    };
    static constexpr FieldInfo kFields[] = {
        {"pattern", offsetof(Record, pattern), FieldType::Int32},
        {"randomizeColors", offsetof(Record, randomizeColors), FieldType::Bool},
        {"variability", offsetof(Record, variability), FieldType::Float},
    };

    // 0.25 where a dark thread shows, 0.75 where a light one does; with
    // randomized colours both shifted by variability x [-1/4, 1/4] and
    // clamped to [0, 1]. flags and z are not used.
    static float evaluate(const Record& r, int flags, float x, float y, float z);

    Pattern getPattern() const { return static_cast<Pattern>(record_.pattern); }
    void setPattern(Pattern p) { record_.pattern = p; }
    bool getRandomizeColors() const { return record_.randomizeColors != 0; }
    void setRandomizeColors(bool on) { record_.randomizeColors = on ? 1 : 0; }
    float getVariability() const { return record_.variability; }
    void setVariability(float v) { record_.variability = v; }

private:
    friend class RecordTexture3D<HoundstoothTexture3D>;
    Record record_;
};

static_assert(offsetof(HoundstoothTexture3D::Record, pattern) == 36);
static_assert(offsetof(HoundstoothTexture3D::Record, randomizeColors) == 40);
static_assert(offsetof(HoundstoothTexture3D::Record, variability) == 44);

extern template class RecordTexture3D<HoundstoothTexture3D>;

}  // namespace gritwell
