#pragma once
// "Gradient": a ramp from 0 to 1 across the cube [-1, 1]^3 along each chosen
// axis, repeated as a sawtooth of period 2 outside it; chosen axes multiply.

#include <cstdint>
#include <string_view>

#include "core/BaseData.h"
#include "core/RecordTexture3D.h"

namespace gritwell {

class GradientTexture3D final : public RecordTexture3D<GradientTexture3D> {
public:
    static constexpr std::string_view kName = "Gradient";
    static constexpr std::string_view kSummary = "A ramp from black to white along the chosen axes, repeating every 2 units";
    static constexpr int kMajorVersion = 2;
    static constexpr int kMinorVersion = 0;
    // Three one-byte flags straight after the header: stored records are 39
    // bytes long, not a multiple of four.
    static constexpr int kRecordSize = 39;

    struct Record {
        BaseData header = makeHeader(kRecordSize, kName, kMajorVersion, kMinorVersion);
        std::uint8_t xDir = 1;  // ramp along x
        std::uint8_t yDir = 1;  // ramp along y
        std::uint8_t zDir = 1;  // ramp along z
    };
    static constexpr FieldInfo kFields[] = {
        {"xDir", offsetof(Record, xDir), FieldType::Bool},
        {"yDir", offsetof(Record, yDir), FieldType::Bool},
        {"zDir", offsetof(Record, zDir), FieldType::Bool},
    };

    // In [0, 1] for finite points (1 with no axis chosen); beyond the int
    // range a coordinate is no longer folded into the cube and the ramp runs on.
    static float evaluate(const Record& r, int flags, float x, float y, float z);

    bool getXDir() const { return record_.xDir != 0; }
    void setXDir(bool on) { record_.xDir = on ? 1 : 0; }
    bool getYDir() const { return record_.yDir != 0; }
    void setYDir(bool on) { record_.yDir = on ? 1 : 0; }
    bool getZDir() const { return record_.zDir != 0; }
    void setZDir(bool on) { record_.zDir = on ? 1 : 0; }

private:
    friend class RecordTexture3D<GradientTexture3D>;
    Record record_;
};

static_assert(offsetof(GradientTexture3D::Record, xDir) == 36);
static_assert(offsetof(GradientTexture3D::Record, yDir) == 37);
static_assert(offsetof(GradientTexture3D::Record, zDir) == 38);

extern template class RecordTexture3D<GradientTexture3D>;

}  // namespace gritwell
