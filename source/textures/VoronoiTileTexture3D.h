#pragma once
// "Voronoi Tiles": irregular flat tiles with grout in the x/y plane, one tile
// per feature of a jittered unit grid. Each tile is one tone, optionally a
// random tone per tile and fractal noise on its face; the grout line can be
// roughened with fractal noise. z and the planar flags are ignored.

#include <cstdint>
#include <string_view>

#include "core/BaseData.h"
#include "core/RecordTexture3D.h"

namespace gritwell {

class VoronoiTileTexture3D final : public RecordTexture3D<VoronoiTileTexture3D> {
public:
    static constexpr std::string_view kName = "Voronoi Tiles";
    static constexpr std::string_view kSummary = "Irregular flat tiles with grout";
    static constexpr int kMajorVersion = 1;
    static constexpr int kMinorVersion = 0;
    static constexpr int kRecordSize = 96;

    struct Record {
        BaseData header = makeHeader(kRecordSize, kName, kMajorVersion, kMinorVersion);
        float cellVariability = 1.0f;            // feature jitter: 0 a square grid, 1 the whole cell
        std::uint8_t cellRandomizeColors = 0;    // a random tone per tile
        std::uint8_t padding0[3] = {};
        float cellMinColor = 0.4f;               // range of the random tone
        float cellMaxColor = 0.9f;
        std::uint8_t cellAddNoise = 0;           // fractal noise on the tile faces
        std::uint8_t padding1[3] = {};
        std::int32_t cellOctaves = 4;
        float cellLacunarity = 2.0f;
        float cellGain = 0.5f;
        float cellDetail = 4.0f;                 // frequency of the face noise
        float boundaryThickness = 0.05f;         // full width of the grout
        std::uint8_t boundaryAddNoise = 0;       // roughen the grout line
        std::uint8_t padding2[3] = {};
        std::int32_t boundaryOctaves = 4;
        float boundaryLacunarity = 2.0f;
        float boundaryGain = 0.5f;
        float boundaryDetail = 8.0f;             // frequency of the grout noise
    };
    static constexpr FieldInfo kFields[] = {
        {"cellVariability", offsetof(Record, cellVariability), FieldType::Float},
        {"cellRandomizeColors", offsetof(Record, cellRandomizeColors), FieldType::Bool},
        {"cellMinColor", offsetof(Record, cellMinColor), FieldType::Float},
        {"cellMaxColor", offsetof(Record, cellMaxColor), FieldType::Float},
        {"cellAddNoise", offsetof(Record, cellAddNoise), FieldType::Bool},
        {"cellOctaves", offsetof(Record, cellOctaves), FieldType::Int32},
        {"cellLacunarity", offsetof(Record, cellLacunarity), FieldType::Float},
        {"cellGain", offsetof(Record, cellGain), FieldType::Float},
        {"cellDetail", offsetof(Record, cellDetail), FieldType::Float},
        {"boundaryThickness", offsetof(Record, boundaryThickness), FieldType::Float},
        {"boundaryAddNoise", offsetof(Record, boundaryAddNoise), FieldType::Bool},
        {"boundaryOctaves", offsetof(Record, boundaryOctaves), FieldType::Int32},
        {"boundaryLacunarity", offsetof(Record, boundaryLacunarity), FieldType::Float},
        {"boundaryGain", offsetof(Record, boundaryGain), FieldType::Float},
        {"boundaryDetail", offsetof(Record, boundaryDetail), FieldType::Float},
    };

    // 0 in the grout; a tile's tone clamped to [0, 1] elsewhere (NaN where the
    // record or the point makes it NaN). z and the flags are ignored.
    static float evaluate(const Record& r, int flags, float x, float y, float z);
    // The same for a block of points, the search across points at once.
    static void evaluateBlock(const Record& r, int flags, const float* points, int n, float* out);

    float getCellVariability() const { return record_.cellVariability; }
    void setCellVariability(float v) { record_.cellVariability = v; }
    bool getCellRandomizeColors() const { return record_.cellRandomizeColors != 0; }
    void setCellRandomizeColors(bool on) { record_.cellRandomizeColors = on ? 1 : 0; }
    float getCellMinColor() const { return record_.cellMinColor; }
    void setCellMinColor(float v) { record_.cellMinColor = v; }
    float getCellMaxColor() const { return record_.cellMaxColor; }
    void setCellMaxColor(float v) { record_.cellMaxColor = v; }
    bool getCellAddNoise() const { return record_.cellAddNoise != 0; }
    void setCellAddNoise(bool on) { record_.cellAddNoise = on ? 1 : 0; }
    int getCellOctaves() const { return record_.cellOctaves; }
    void setCellOctaves(int n) { record_.cellOctaves = n; }
    float getCellLacunarity() const { return record_.cellLacunarity; }
    void setCellLacunarity(float v) { record_.cellLacunarity = v; }
    float getCellGain() const { return record_.cellGain; }
    void setCellGain(float v) { record_.cellGain = v; }
    float getCellDetail() const { return record_.cellDetail; }
    void setCellDetail(float v) { record_.cellDetail = v; }
    float getBoundaryThickness() const { return record_.boundaryThickness; }
    void setBoundaryThickness(float v) { record_.boundaryThickness = v; }
    bool getBoundaryAddNoise() const { return record_.boundaryAddNoise != 0; }
    void setBoundaryAddNoise(bool on) { record_.boundaryAddNoise = on ? 1 : 0; }
    int getBoundaryOctaves() const { return record_.boundaryOctaves; }
    void setBoundaryOctaves(int n) { record_.boundaryOctaves = n; }
    float getBoundaryLacunarity() const { return record_.boundaryLacunarity; }
    void setBoundaryLacunarity(float v) { record_.boundaryLacunarity = v; }
    float getBoundaryGain() const { return record_.boundaryGain; }
    void setBoundaryGain(float v) { record_.boundaryGain = v; }
    float getBoundaryDetail() const { return record_.boundaryDetail; }
    void setBoundaryDetail(float v) { record_.boundaryDetail = v; }

private:
    friend class RecordTexture3D<VoronoiTileTexture3D>;
    Record record_;
};

static_assert(offsetof(VoronoiTileTexture3D::Record, cellVariability) == 36);
static_assert(offsetof(VoronoiTileTexture3D::Record, cellRandomizeColors) == 40);
static_assert(offsetof(VoronoiTileTexture3D::Record, cellMinColor) == 44);
static_assert(offsetof(VoronoiTileTexture3D::Record, cellMaxColor) == 48);
static_assert(offsetof(VoronoiTileTexture3D::Record, cellAddNoise) == 52);
static_assert(offsetof(VoronoiTileTexture3D::Record, cellOctaves) == 56);
static_assert(offsetof(VoronoiTileTexture3D::Record, cellLacunarity) == 60);
static_assert(offsetof(VoronoiTileTexture3D::Record, cellGain) == 64);
static_assert(offsetof(VoronoiTileTexture3D::Record, cellDetail) == 68);
static_assert(offsetof(VoronoiTileTexture3D::Record, boundaryThickness) == 72);
static_assert(offsetof(VoronoiTileTexture3D::Record, boundaryAddNoise) == 76);
static_assert(offsetof(VoronoiTileTexture3D::Record, boundaryOctaves) == 80);
static_assert(offsetof(VoronoiTileTexture3D::Record, boundaryLacunarity) == 84);
static_assert(offsetof(VoronoiTileTexture3D::Record, boundaryGain) == 88);
static_assert(offsetof(VoronoiTileTexture3D::Record, boundaryDetail) == 92);

extern template class RecordTexture3D<VoronoiTileTexture3D>;

}  // namespace gritwell
