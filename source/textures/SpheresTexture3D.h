#pragma once
// "Spheres": a dark ball (or shell) in every unit cube on a white ground; in
// staggered mode only in the checkerboard's dark cubes, larger by sqrt(2).
// Planar mode evaluates the slice z = -0.5.

#include <cstdint>
#include <string_view>

#include "core/BaseData.h"
#include "core/RecordTexture3D.h"

namespace gritwell {

class SpheresTexture3D final : public RecordTexture3D<SpheresTexture3D> {
public:
    static constexpr std::string_view kName = "Spheres";
    static constexpr std::string_view kSummary = "A dark ball or shell in every unit cube on a white ground";
    static constexpr int kMajorVersion = 2;
    static constexpr int kMinorVersion = 0;
    static constexpr int kRecordSize = 48;

    struct Record {
        BaseData header = makeHeader(kRecordSize, kName, kMajorVersion, kMinorVersion);
        float sphereSize = 0.25f;     // radius in cell units
        std::uint8_t staggered = 0;   // alternate cubes only, radius x sqrt(2)
        std::uint8_t padding[3] = {};
        float hollowness = 0.0f;      // inner radius as a fraction of the outer
    };
    static constexpr FieldInfo kFields[] = {
        {"sphereSize", offsetof(Record, sphereSize), FieldType::Float},
        {"staggered", offsetof(Record, staggered), FieldType::Bool},
        {"hollowness", offsetof(Record, hollowness), FieldType::Float},
    };
    // Text stream operators that write and read nothing, as this pattern's
    // always have.
    static constexpr bool kFieldsAsText = false;

    static float evaluate(const Record& r, int flags, float x, float y, float z);

    float getSphereSize() const { return record_.sphereSize; }
    void setSphereSize(float s) { record_.sphereSize = s; }
    bool getStaggered() const { return record_.staggered != 0; }
    void setStaggered(bool on) { record_.staggered = on ? 1 : 0; }
    float getHollowness() const { return record_.hollowness; }
    void setHollowness(float h) { record_.hollowness = h; }

private:
    friend class RecordTexture3D<SpheresTexture3D>;
    Record record_;
};

static_assert(offsetof(SpheresTexture3D::Record, sphereSize) == 36);
static_assert(offsetof(SpheresTexture3D::Record, staggered) == 40);
static_assert(offsetof(SpheresTexture3D::Record, hollowness) == 44);

extern template class RecordTexture3D<SpheresTexture3D>;

}  // namespace gritwell
