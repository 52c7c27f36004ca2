#pragma once
// "HexTile": a honeycomb of flat-topped regular hexagons in the x/y plane,
// one centred on the origin, set in mortar; each tile one tone, optionally a
// random tone per tile. z and the planar flags are ignored.

#include <cstdint>
#include <string_view>

#include "core/BaseData.h"
#include "core/RecordTexture3D.h"

namespace gritwell {

class HexTileTexture3D final : public RecordTexture3D<HexTileTexture3D> {
public:
    static constexpr std::string_view kName = "HexTile";
    static constexpr std::string_view kSummary = "A honeycomb of hexagonal tiles set in mortar";
    static constexpr int kMajorVersion = 1;
    static constexpr int kMinorVersion = 0;
    static constexpr int kRecordSize = 64;

    struct Record {
        BaseData header = makeHeader(kRecordSize, kName, kMajorVersion, kMinorVersion);
        float tileColor = 0.75f;
        float mortarColor = 0.25f;
        float tileRadius = 0.5f;           // centre to corner
        float mortarThickness = 0.05f;     // full width of a joint
        std::uint8_t randomizeColors = 0;  // a random tone per tile
        std::uint8_t padding[3] = {};
        float minColor = 0.5f;             // range of the random tone
        float maxColor = 1.0f;
    };
    static constexpr FieldInfo kFields[] = {
        {"tileColor", offsetof(Record, tileColor), FieldType::Float},
        {"mortarColor", offsetof(Record, mortarColor), FieldType::Float},
        {"tileRadius", offsetof(Record, tileRadius), FieldType::Float},
        {"mortarThickness", offsetof(Record, mortarThickness), FieldType::Float},
        {"randomizeColors", offsetof(Record, randomizeColors), FieldType::Bool},
        {"minColor", offsetof(Record, minColor), FieldType::Float},
        {"maxColor", offsetof(Record, maxColor), FieldType::Float},
    };

    // The mortar colour, or the tile's tone, as the record gives them (not
    // clamped). A zero, negative or NaN radius gives mortar everywhere; z and
    // the flags are ignored.
    static float evaluate(const Record& r, int flags, float x, float y, float z);

    float getTileColor() const { return record_.tileColor; }
    void setTileColor(float v) { record_.tileColor = v; }
    float getMortarColor() const { return record_.mortarColor; }
    void setMortarColor(float v) { record_.mortarColor = v; }
    float getTileRadius() const { return record_.tileRadius; }
    void setTileRadius(float v) { record_.tileRadius = v; }
    float getMortarThickness() const { return record_.mortarThickness; }
    void setMortarThickness(float v) { record_.mortarThickness = v; }
    bool getRandomizeColors() const { return record_.randomizeColors != 0; }
    void setRandomizeColors(bool on) { record_.randomizeColors = on ? 1 : 0; }
    float getMinColor() const { return record_.minColor; }
    void setMinColor(float v) { record_.minColor = v; }
    float getMaxColor() const { return record_.maxColor; }
    void setMaxColor(float v) { record_.maxColor = v; }

private:
    friend class RecordTexture3D<HexTileTexture3D>;
    Record record_;
};

static_assert(offsetof(HexTileTexture3D::Record, tileColor) == 36);
static_assert(offsetof(HexTileTexture3D::Record, mortarColor) == 40);
static_assert(offsetof(HexTileTexture3D::Record, tileRadius) == 44);
static_assert(offsetof(HexTileTexture3D::Record, mortarThickness) == 48);
static_assert(offsetof(HexTileTexture3D::Record, randomizeColors) == 52);
static_assert(offsetof(HexTileTexture3D::Record, minColor) == 56);
static_assert(offsetof(HexTileTexture3D::Record, maxColor) == 60);

extern template class RecordTexture3D<HexTileTexture3D>;

}  // namespace gritwell
