#pragma once
// "Cheetah": dark solid spots on a light ground, one per unit cell of a
// jittered grid, each spot its own size with a wobbling edge. Planar mode
// takes the 2-D search and noise in the x/y plane, ignoring z. In space the
// spots are balls around features jittered independently along x, y and z,
// sized so that a slice at any height or angle looks like the plane.

#include <string_view>

#include "core/BaseData.h"
#include "core/RecordTexture3D.h"

namespace gritwell {

class CheetahTexture3D final : public RecordTexture3D<CheetahTexture3D> {
public:
    static constexpr std::string_view kName = "Cheetah";
    static constexpr std::string_view kSummary = "Dark spots with wobbling edges on a light ground";
    static constexpr int kMajorVersion = 1;
    static constexpr int kMinorVersion = 0;
    static constexpr int kRecordSize = 48;

    struct Record {
        BaseData header = makeHeader(kRecordSize, kName, kMajorVersion, kMinorVersion);
        float spotSize = 0.35f;           // mean spot diameter in cell units
        float layoutVariability = 0.75f;  // jitter of the spot centres, 0..1
        float spotVariability = 0.5f;     // wobble of the spot edges, 0..1
    };
    static constexpr FieldInfo kFields[] = {
        {"spotSize", offsetof(Record, spotSize), FieldType::Float},
        {"layoutVariability", offsetof(Record, layoutVariability), FieldType::Float},
        {"spotVariability", offsetof(Record, spotVariability), FieldType::Float},
    };

    // 0.1 inside a spot, 0.8 outside.
    static float evaluate(const Record& r, int flags, float x, float y, float z);
    // The same for a block of points, the 3-D search and the noise across
    // points at once.
    static void evaluateBlock(const Record& r, int flags, const float* points, int n, float* out);

    float getSpotSize() const { return record_.spotSize; }
    void setSpotSize(float s) { record_.spotSize = s; }
    float getLayoutVariability() const { return record_.layoutVariability; }
    void setLayoutVariability(float v) { record_.layoutVariability = v; }
    float getSpotVariability() const { return record_.spotVariability; }
    void setSpotVariability(float v) { record_.spotVariability = v; }

private:
    friend class RecordTexture3D<CheetahTexture3D>;
    Record record_;
};

static_assert(offsetof(CheetahTexture3D::Record, spotSize) == 36);
static_assert(offsetof(CheetahTexture3D::Record, layoutVariability) == 40);
static_assert(offsetof(CheetahTexture3D::Record, spotVariability) == 44);

extern template class RecordTexture3D<CheetahTexture3D>;

}  // namespace gritwell
