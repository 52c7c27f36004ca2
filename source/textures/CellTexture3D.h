#pragma once
// "Cell Noise": double-precision cellular noise of the scaled point,
// clamped to 0..1; always three-dimensional. Host sessions never open it.

#include <cstdint>
#include <string_view>

#include "core/BaseData.h"
#include "core/RecordTexture3D.h"
#include "noise/Worley.h"

namespace gritwell {

class CellTexture3D final : public RecordTexture3D<CellTexture3D> {
public:
    static constexpr std::string_view kName = "Cell Noise";
    static constexpr std::string_view kSummary = "Cellular noise in double precision: the distance to the nearest random feature";
    static constexpr int kMajorVersion = 2;
    static constexpr int kMinorVersion = 0;
    static constexpr int kRecordSize = 48;

    struct Record {
        BaseData header = makeHeader(kRecordSize, kName, kMajorVersion, kMinorVersion);
        float scale = 4.0f;
        std::int32_t type = Worley::First;
        // Euclidean length, unlike the Voronoi texture's squared default.
        std::int32_t distanceMethod = Worley::Length;
    };
    static constexpr FieldInfo kFields[] = {
        {"scale", offsetof(Record, scale), FieldType::Float},
        {"type", offsetof(Record, type), FieldType::Int32},
        {"distanceMethod", offsetof(Record, distanceMethod), FieldType::Int32},
    };

    static float evaluate(const Record& r, int flags, float x, float y, float z);

    float scale() const { return record_.scale; }
    void setScale(float scale) { record_.scale = scale; }
    Worley::VoronoiType type() const { return static_cast<Worley::VoronoiType>(record_.type); }
    void setType(Worley::VoronoiType type) { record_.type = type; }
    Worley::DistanceMethod distanceMethod() const {
        return static_cast<Worley::DistanceMethod>(record_.distanceMethod);
    }
    void setDistanceMethod(Worley::DistanceMethod method) { record_.distanceMethod = method; }

private:
    friend class RecordTexture3D<CellTexture3D>;
    Record record_;
};

static_assert(offsetof(CellTexture3D::Record, scale) == 36);
static_assert(offsetof(CellTexture3D::Record, type) == 40);
static_assert(offsetof(CellTexture3D::Record, distanceMethod) == 44);

extern template class RecordTexture3D<CellTexture3D>;

}  // namespace gritwell
