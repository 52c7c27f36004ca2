#pragma once
// "Voronoi": single-precision cellular noise of the scaled point, one of
// the distance combinations under one metric, clamped to 0..1. Planar mode
// uses the 2-D noise.

#include <cstdint>
#include <string_view>

#include "core/BaseData.h"
#include "core/RecordTexture3D.h"
#include "noise/Voronoi.h"

namespace gritwell {

class VoronoiTexture3D final : public RecordTexture3D<VoronoiTexture3D> {
public:
    static constexpr std::string_view kName = "Voronoi";
    static constexpr std::string_view kSummary = "Cellular noise: distances to the nearest features under a chosen metric";
    static constexpr int kMajorVersion = 2;
    static constexpr int kMinorVersion = 0;
    static constexpr int kRecordSize = 48;

    struct Record {
        BaseData header = makeHeader(kRecordSize, kName, kMajorVersion, kMinorVersion);
        float scale = 4.0f;
        std::int32_t type = Voronoi::First;
        // Squared length, unlike the cell texture's Euclidean default.
        std::int32_t distanceMethod = Voronoi::LengthSquared;
    };
    static constexpr FieldInfo kFields[] = {
        {"scale", offsetof(Record, scale), FieldType::Float},
        {"type", offsetof(Record, type), FieldType::Int32},
        {"distanceMethod", offsetof(Record, distanceMethod), FieldType::Int32},
    };

    static float evaluate(const Record& r, int flags, float x, float y, float z);
    // The same for a block of points, the 3-D search across points at once.
    static void evaluateBlock(const Record& r, int flags, const float* points, int n, float* out);

    float scale() const { return record_.scale; }
    void setScale(float scale) { record_.scale = scale; }
    Voronoi::VoronoiType type() const { return static_cast<Voronoi::VoronoiType>(record_.type); }
    void setType(Voronoi::VoronoiType type) { record_.type = type; }
    Voronoi::DistanceMethod distanceMethod() const {
        return static_cast<Voronoi::DistanceMethod>(record_.distanceMethod);
    }
    void setDistanceMethod(Voronoi::DistanceMethod method) { record_.distanceMethod = method; }

private:
    friend class RecordTexture3D<VoronoiTexture3D>;
    Record record_;
};

static_assert(offsetof(VoronoiTexture3D::Record, scale) == 36);
static_assert(offsetof(VoronoiTexture3D::Record, type) == 40);
static_assert(offsetof(VoronoiTexture3D::Record, distanceMethod) == 44);

extern template class RecordTexture3D<VoronoiTexture3D>;

}  // namespace gritwell
