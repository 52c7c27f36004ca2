#pragma once
// "Penrose Rhombus": a Penrose tiling of the x/y plane by fat (72°) and
// skinny (36°) rhombi with unit edges, each tile one flat tone, optionally a
// random tone per tile, outlined by a thin edge line so that neighbouring
// tiles of one tone still read as two. z and the planar flags are ignored.

#include <cstdint>
#include <optional>
#include <string_view>

#include "core/BaseData.h"
#include "core/RecordTexture3D.h"

namespace gritwell {

class PenroseRhombusTexture3D final : public RecordTexture3D<PenroseRhombusTexture3D> {
public:
    static constexpr std::string_view kName = "Penrose Rhombus";
    static constexpr std::string_view kSummary = "A Penrose tiling of fat and skinny rhombi, each tile outlined";
    static constexpr int kMajorVersion = 2;
    static constexpr int kMinorVersion = 0;
    static constexpr int kRecordSize = 76;

    struct Record {
        BaseData header = makeHeader(kRecordSize, kName, kMajorVersion, kMinorVersion);
        float skinnyColor = 0.25f;          // tone of the 36° rhombi
        float fatColor = 0.75f;             // tone of the 72° rhombi
        std::uint8_t skinnyRandomize = 0;   // a random tone per skinny rhombus
        std::uint8_t padding1[3] = {};
        float skinnyMinColor = 0.0f;
        float skinnyMaxColor = 0.5f;
        std::uint8_t fatRandomize = 0;      // a random tone per fat rhombus
        std::uint8_t padding2[3] = {};
        float fatMinColor = 0.5f;
        float fatMaxColor = 1.0f;
        float edgeWidth = 0.04f;            // full width of the line along tile edges; <= 0 draws none
        float edgeColor = 0.0f;             // tone of that line
    };
    static constexpr FieldInfo kFields[] = {
        {"skinnyColor", offsetof(Record, skinnyColor), FieldType::Float},
        {"fatColor", offsetof(Record, fatColor), FieldType::Float},
        {"skinnyRandomize", offsetof(Record, skinnyRandomize), FieldType::Bool},
        {"skinnyMinColor", offsetof(Record, skinnyMinColor), FieldType::Float},
        {"skinnyMaxColor", offsetof(Record, skinnyMaxColor), FieldType::Float},
        {"fatRandomize", offsetof(Record, fatRandomize), FieldType::Bool},
        {"fatMinColor", offsetof(Record, fatMinColor), FieldType::Float},
        {"fatMaxColor", offsetof(Record, fatMaxColor), FieldType::Float},
        {"edgeWidth", offsetof(Record, edgeWidth), FieldType::Float},
        {"edgeColor", offsetof(Record, edgeColor), FieldType::Float},
    };

    // One tile of the tiling: the dual of the crossing of line nr of grid
    // family r with line ns of family s. Its edges are the unit vectors
    // e_r and e_s, e_k = (cos 2πk/5, sin 2πk/5).
    struct Rhombus {
        int r, s;      // the two families, 0 <= r < s <= 4
        int nr, ns;    // their line numbers
        double x, y;   // the corner from which the edges e_r and e_s run
        bool fat() const { return s - r == 1 || s - r == 4; }
    };

    // Points farther out than this along x or y have no tile (float spacing
    // there is already a quarter of a tile edge); the line numbers of every
    // tile within it are exact in float.
    static constexpr double kMaxCoordinate = 4194304.0;  // 2^22

    // The tile containing (x, y); at a shared edge or corner one of the
    // tiles meeting there. Empty for NaN or |x| or |y| beyond kMaxCoordinate.
    static std::optional<Rhombus> rhombusAt(double x, double y);
    // The tile of one crossing, for 0 <= r < s <= 4 and any line numbers.
    static Rhombus rhombusOfCrossing(int r, int s, int nr, int ns);
    // How far (x, y) lies inside tile t: its distance to the nearest edge,
    // negative outside.
    static double depthInside(const Rhombus& t, double x, double y);

    // edgeColor within edgeWidth / 2 of the tile's edges, for a positive
    // edgeWidth (and there where rounding puts a point just outside every
    // tile); elsewhere the tile's tone:
    // fatColor / skinnyColor, or with the type's randomize flag
    // min + (max - min) × a cell-noise value in [0, 1] of the tile.
    // fatColor where rhombusAt has no tile.
    static float evaluate(const Record& r, int flags, float x, float y, float z);
    // Records of these major versions are converted (convertOlderRecord).
    static constexpr int kOlderMajorVersions[] = {1};
    // Version 1 (68 bytes) had no edge line: it keeps its fields and its
    // look, edgeWidth 0. Called for records of the versions in
    // kOlderMajorVersions only.
    static void convertOlderRecord(Record& r, const char* in);

    float getSkinnyColor() const { return record_.skinnyColor; }
    void setSkinnyColor(float c) { record_.skinnyColor = c; }
    float getFatColor() const { return record_.fatColor; }
    void setFatColor(float c) { record_.fatColor = c; }
    bool getSkinnyRandomize() const { return record_.skinnyRandomize != 0; }
    void setSkinnyRandomize(bool on) { record_.skinnyRandomize = on ? 1 : 0; }
    float getSkinnyMinColor() const { return record_.skinnyMinColor; }
    void setSkinnyMinColor(float c) { record_.skinnyMinColor = c; }
    float getSkinnyMaxColor() const { return record_.skinnyMaxColor; }
    void setSkinnyMaxColor(float c) { record_.skinnyMaxColor = c; }
    bool getFatRandomize() const { return record_.fatRandomize != 0; }
    void setFatRandomize(bool on) { record_.fatRandomize = on ? 1 : 0; }
    float getFatMinColor() const { return record_.fatMinColor; }
    void setFatMinColor(float c) { record_.fatMinColor = c; }
    float getFatMaxColor() const { return record_.fatMaxColor; }
    void setFatMaxColor(float c) { record_.fatMaxColor = c; }
    float getEdgeWidth() const { return record_.edgeWidth; }
    void setEdgeWidth(float w) { record_.edgeWidth = w; }
    float getEdgeColor() const { return record_.edgeColor; }
    void setEdgeColor(float c) { record_.edgeColor = c; }

private:
    friend class RecordTexture3D<PenroseRhombusTexture3D>;
    Record record_;
};

static_assert(offsetof(PenroseRhombusTexture3D::Record, skinnyColor) == 36);
static_assert(offsetof(PenroseRhombusTexture3D::Record, fatColor) == 40);
static_assert(offsetof(PenroseRhombusTexture3D::Record, skinnyRandomize) == 44);
static_assert(offsetof(PenroseRhombusTexture3D::Record, skinnyMinColor) == 48);
static_assert(offsetof(PenroseRhombusTexture3D::Record, skinnyMaxColor) == 52);
static_assert(offsetof(PenroseRhombusTexture3D::Record, fatRandomize) == 56);
static_assert(offsetof(PenroseRhombusTexture3D::Record, fatMinColor) == 60);
static_assert(offsetof(PenroseRhombusTexture3D::Record, fatMaxColor) == 64);
static_assert(offsetof(PenroseRhombusTexture3D::Record, edgeWidth) == 68);
static_assert(offsetof(PenroseRhombusTexture3D::Record, edgeColor) == 72);

extern template class RecordTexture3D<PenroseRhombusTexture3D>;

}  // namespace gritwell
