#pragma once
// "Constant": the same intensity everywhere, unclamped.

#include <string_view>

#include "core/BaseData.h"
#include "core/RecordTexture3D.h"

namespace gritwell {

class ConstantTexture3D final : public RecordTexture3D<ConstantTexture3D> {
public:
    static constexpr std::string_view kName = "Constant";
    static constexpr std::string_view kSummary = "The same intensity everywhere";
    static constexpr int kMajorVersion = 2;
    static constexpr int kMinorVersion = 0;
    static constexpr int kRecordSize = 40;

    struct Record {
        BaseData header = makeHeader(kRecordSize, kName, kMajorVersion, kMinorVersion);
        float constant = 0.5f;  // the output intensity
    };
    static constexpr FieldInfo kFields[] = {
        {"constant", offsetof(Record, constant), FieldType::Float},
    };

    static float evaluate(const Record& r, int flags, float x, float y, float z);

    float getConstant() const { return record_.constant; }
    void setConstant(float c) { record_.constant = c; }

private:
    friend class RecordTexture3D<ConstantTexture3D>;
    Record record_;
};

static_assert(offsetof(ConstantTexture3D::Record, constant) == 36);

extern template class RecordTexture3D<ConstantTexture3D>;

}  // namespace gritwell
