#pragma once
// "Grid": black lines of a given width on every integer plane, the unit cells
// between them white or toned per cell. Planar mode tests only x and y, so
// the lines become columns through z.

#include <cstdint>
#include <string_view>

#include "core/BaseData.h"
#include "core/RecordTexture3D.h"

namespace gritwell {

class GridTexture3D final : public RecordTexture3D<GridTexture3D> {
public:
    static constexpr std::string_view kName = "Grid";
    static constexpr std::string_view kSummary = "Black lines on every integer plane between white or toned cells";
    static constexpr int kMajorVersion = 3;
    static constexpr int kMinorVersion = 0;
    static constexpr int kRecordSize = 52;

    struct Record {
        BaseData header = makeHeader(kRecordSize, kName, kMajorVersion, kMinorVersion);
        float stripeWidth = 0.25f;          // full width of a line, in cell units
        std::uint8_t randomizeColors = 0;   // tone each cell by cell noise
        std::uint8_t padding[3] = {};
        float minColor = 0.5f;              // tone of a cell whose noise is 0
        float maxColor = 1.0f;              // tone of a cell whose noise is 1
    };
    static constexpr FieldInfo kFields[] = {
        {"stripeWidth", offsetof(Record, stripeWidth), FieldType::Float},
        {"randomizeColors", offsetof(Record, randomizeColors), FieldType::Bool},
        {"minColor", offsetof(Record, minColor), FieldType::Float},
        {"maxColor", offsetof(Record, maxColor), FieldType::Float},
    };
    // Text stream operators that write and read nothing, as this pattern's
    // always have.
    static constexpr bool kFieldsAsText = false;

    // 0 on a line; off the lines 1, or with randomised colours
    // minColor + (maxColor - minColor) x cell noise, unclamped.
    static float evaluate(const Record& r, int flags, float x, float y, float z);

    float getStripeWidth() const { return record_.stripeWidth; }
    void setStripeWidth(float w) { record_.stripeWidth = w; }
    bool getRandomizeColors() const { return record_.randomizeColors != 0; }
    void setRandomizeColors(bool on) { record_.randomizeColors = on ? 1 : 0; }
    float getMinColor() const { return record_.minColor; }
    void setMinColor(float c) { record_.minColor = c; }
    float getMaxColor() const { return record_.maxColor; }
    void setMaxColor(float c) { record_.maxColor = c; }

private:
    friend class RecordTexture3D<GridTexture3D>;
    Record record_;
};

static_assert(offsetof(GridTexture3D::Record, stripeWidth) == 36);
static_assert(offsetof(GridTexture3D::Record, randomizeColors) == 40);
static_assert(offsetof(GridTexture3D::Record, minColor) == 44);
static_assert(offsetof(GridTexture3D::Record, maxColor) == 48);

extern template class RecordTexture3D<GridTexture3D>;

}  // namespace gritwell
