#pragma once
// "Plaid": a tartan in the x/y plane (z is ignored). Two layers of soft
// periodic noise stripes, one across y and one across x, over a primary
// background, plus two layers of hard random bands five per unit, summed and
// clamped to [0, 1].

#include <cstdint>
#include <string_view>

#include "core/BaseData.h"
#include "core/FloatToInt.h"
#include "core/RecordTexture3D.h"
#include "noise/PRMan.h"

namespace gritwell {

class PlaidTexture3D final : public RecordTexture3D<PlaidTexture3D> {
public:
    static constexpr std::string_view kName = "Plaid";
    static constexpr std::string_view kSummary = "A tartan of soft noise stripes and hard random bands";
    static constexpr int kMajorVersion = 1;
    static constexpr int kMinorVersion = 0;
    static constexpr int kRecordSize = 80;

    struct Record {
        BaseData header = makeHeader(kRecordSize, kName, kMajorVersion, kMinorVersion);
        float horizontalFrequency = 2.0f;  // stripe frequency along x
        float verticalFrequency = 2.0f;    // stripe frequency along y
        std::int32_t horizontalPeriod = 3;  // period of the x stripe noise
        std::int32_t verticalPeriod = 5;    // period of the y stripe noise
        float primaryBackground = PRMan::luminance(0.0f, 0.0f, 0.0f);  // under both stripe layers
        float background2 = PRMan::luminance(0.0f, 0.0f, 0.0f);        // under the x bands
        float background3 = PRMan::luminance(0.15f, 0.14f, 0.4f);      // under the y bands
        float color1 = PRMan::luminance(0.55f, 0.15f, 0.14f);          // the y stripes
        float color2 = PRMan::luminance(0.15f, 0.14f, 0.4f);           // the x stripes
        float color3 = PRMan::luminance(0.02f, 0.4f, 0.08f);           // the x bands
        float color4 = PRMan::luminance(0.0f, 0.0f, 0.0f);             // the y bands
    };
    static constexpr FieldInfo kFields[] = {
        {"horizontalFrequency", offsetof(Record, horizontalFrequency), FieldType::Float},
        {"verticalFrequency", offsetof(Record, verticalFrequency), FieldType::Float},
        {"horizontalPeriod", offsetof(Record, horizontalPeriod), FieldType::Int32},
        {"verticalPeriod", offsetof(Record, verticalPeriod), FieldType::Int32},
        {"primaryBackground", offsetof(Record, primaryBackground), FieldType::Float},
        {"background2", offsetof(Record, background2), FieldType::Float},
        {"background3", offsetof(Record, background3), FieldType::Float},
        {"color1", offsetof(Record, color1), FieldType::Float},
        {"color2", offsetof(Record, color2), FieldType::Float},
        {"color3", offsetof(Record, color3), FieldType::Float},
        {"color4", offsetof(Record, color4), FieldType::Float},
    };

    // In [0, 1] for every record and point; 1 where the sum is NaN (a period
    // of 0, say).
    static float evaluate(const Record& r, int flags, float x, float y, float z);
    // The same for a block of points, eight at a time on processors with AVX2.
    static void evaluateBlock(const Record& r, int flags, const float* points, int n, float* out);

    float getHorizontalFrequency() const { return record_.horizontalFrequency; }
    void setHorizontalFrequency(float f) { record_.horizontalFrequency = f; }
    float getVerticalFrequency() const { return record_.verticalFrequency; }
    void setVerticalFrequency(float f) { record_.verticalFrequency = f; }
    // The periods are whole numbers in the record but set from the dialog's
    // float controls, truncated toward zero: stored records hold them so.
    int getHorizontalPeriod() const { return record_.horizontalPeriod; }
    void setHorizontalPeriod(float p) { record_.horizontalPeriod = truncToInt(p); }
    int getVerticalPeriod() const { return record_.verticalPeriod; }
    void setVerticalPeriod(float p) { record_.verticalPeriod = truncToInt(p); }
    float getPrimaryBackground() const { return record_.primaryBackground; }
    void setPrimaryBackground(float c) { record_.primaryBackground = c; }
    float getBackground2() const { return record_.background2; }
    void setBackground2(float c) { record_.background2 = c; }
    float getBackground3() const { return record_.background3; }
    void setBackground3(float c) { record_.background3 = c; }
    float getColor1() const { return record_.color1; }
    void setColor1(float c) { record_.color1 = c; }
    float getColor2() const { return record_.color2; }
    void setColor2(float c) { record_.color2 = c; }
    float getColor3() const { return record_.color3; }
    void setColor3(float c) { record_.color3 = c; }
    float getColor4() const { return record_.color4; }
    void setColor4(float c) { record_.color4 = c; }

private:
    friend class RecordTexture3D<PlaidTexture3D>;
    Record record_;
};

static_assert(offsetof(PlaidTexture3D::Record, horizontalFrequency) == 36);
static_assert(offsetof(PlaidTexture3D::Record, verticalFrequency) == 40);
static_assert(offsetof(PlaidTexture3D::Record, horizontalPeriod) == 44);
static_assert(offsetof(PlaidTexture3D::Record, verticalPeriod) == 48);
static_assert(offsetof(PlaidTexture3D::Record, primaryBackground) == 52);
static_assert(offsetof(PlaidTexture3D::Record, background2) == 56);
static_assert(offsetof(PlaidTexture3D::Record, background3) == 60);
static_assert(offsetof(PlaidTexture3D::Record, color1) == 64);
static_assert(offsetof(PlaidTexture3D::Record, color2) == 68);
static_assert(offsetof(PlaidTexture3D::Record, color3) == 72);
static_assert(offsetof(PlaidTexture3D::Record, color4) == 76);

extern template class RecordTexture3D<PlaidTexture3D>;

}  // namespace gritwell
