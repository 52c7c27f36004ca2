#pragma once
// "Simplex": simplex noise of the scaled point, remapped from about -1..1 to
// 0..1 and clamped. Planar mode uses the 2-D noise.

#include <string_view>

#include "core/BaseData.h"
#include "core/RecordTexture3D.h"

namespace gritwell {

class SimplexTexture3D final : public RecordTexture3D<SimplexTexture3D> {
public:
    static constexpr std::string_view kName = "Simplex";
    static constexpr std::string_view kSummary = "Simplex noise";
    static constexpr int kMajorVersion = 1;
    static constexpr int kMinorVersion = 0;
    static constexpr int kRecordSize = 40;

    struct Record {
        BaseData header = makeHeader(kRecordSize, kName, kMajorVersion, kMinorVersion);
        float scale = 4.0f;
    };
    static constexpr FieldInfo kFields[] = {
        {"scale", offsetof(Record, scale), FieldType::Float},
    };

    static float evaluate(const Record& r, int flags, float x, float y, float z);
    // The same for a block of points, the noise across points at once.
    static void evaluateBlock(const Record& r, int flags, const float* points, int n, float* out);

    float getScale() const { return record_.scale; }
    void setScale(float scale) { record_.scale = scale; }

private:
    friend class RecordTexture3D<SimplexTexture3D>;
    Record record_;
};

static_assert(offsetof(SimplexTexture3D::Record, scale) == 36);

extern template class RecordTexture3D<SimplexTexture3D>;

}  // namespace gritwell
