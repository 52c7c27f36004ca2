#pragma once
// "Corrugated": a wave profile along x with period 1 — sine, sawtooth,
// triangle, semicircle ribbon or gradient noise. y, z and the flags word are
// ignored.

#include <cstdint>
#include <string_view>

#include "core/BaseData.h"
#include "core/RecordTexture3D.h"

namespace gritwell {

class CorrugatedTexture3D final : public RecordTexture3D<CorrugatedTexture3D> {
public:
    static constexpr std::string_view kName = "Corrugated";
    static constexpr std::string_view kSummary = "A wave profile along x: sine, sawtooth, triangle, semicircle or noise";
    static constexpr int kMajorVersion = 1;
    static constexpr int kMinorVersion = 0;
    static constexpr int kRecordSize = 40;

    // Stored values; the dialog lists them in another order.
    enum Style : std::int32_t {
        PerlinNoise = 0,  // 0.5 + noise(2x) / 2
        Sawtooth = 1,     // the fractional part of x
        Ribbon = 2,       // half circles of radius 0.25, up then down
        Sine = 3,         // one full sine period per unit
        Triangle = 4,     // up over the first half, down over the second
    };

    struct Record {
        BaseData header = makeHeader(kRecordSize, kName, kMajorVersion, kMinorVersion);
        std::int32_t style = Sine;
    };
    static constexpr FieldInfo kFields[] = {
        {"style", offsetof(Record, style), FieldType::Int32},
    };
    // Text stream operators that write and read nothing, as this pattern's
    // always have.
    static constexpr bool kFieldsAsText = false;

    // 0..1, except Ribbon, which spans -0.25..0.25; about 0..1 for PerlinNoise.
    // Any other style is a half sine wave, 0.5..1.
    static float evaluate(const Record& r, int flags, float x, float y, float z);

    Style getStyle() const { return static_cast<Style>(record_.style); }
    void setStyle(Style style) { record_.style = style; }

private:
    friend class RecordTexture3D<CorrugatedTexture3D>;
    Record record_;
};

static_assert(offsetof(CorrugatedTexture3D::Record, style) == 36);

extern template class RecordTexture3D<CorrugatedTexture3D>;

}  // namespace gritwell
