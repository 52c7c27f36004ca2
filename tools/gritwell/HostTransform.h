#pragma once
// HostTransform: the transform record applied to points the way this host
// applies it. The record places the texture on the model: the texture is
// scaled (per-axis factor times overall scale), turned about x, then y, then
// z, then moved by the offset. A model point p is therefore evaluated at
//     q = S^-1 Rx^-1 Ry^-1 Rz^-1 (p - offset)
// so an offset of +0.5 in x slides the pattern half a unit along +x, a scale
// of 2 makes it twice as large, and a positive angle turns it
// counter-clockwise seen from the positive end of its axis.

#include <array>
#include <cstddef>
#include <string>

#include "PluginLibrary.h"
#include "core/TransformData.h"

namespace gritwell {

class HostTransform {
public:
    HostTransform() : HostTransform(TransformData{}) {}
    // The record's scales must be finite and non-zero and its offsets and
    // angles finite; anything else is a CliError (status 2) naming the field.
    explicit HostTransform(const TransformData& record);

    const TransformData& record() const { return record_; }
    // True when every point maps to itself bit for bit (the default record,
    // whatever its flags word).
    bool isIdentity() const { return identity_; }

    // Maps n packed points (x, y, z) from model to texture space; in and out
    // may be the same array. Arithmetic in double, rounded once to float.
    void apply(const float* in, float* out, std::size_t n) const;

    // Reads a 44-byte transform record file, as the host stores it.
    static TransformData readFile(const std::string& path);

private:
    TransformData record_;
    bool identity_ = true;
    bool rotates_ = false;
    std::array<double, 9> inverseRotation_{};  // row-major Rx^-1 Ry^-1 Rz^-1
    std::array<double, 3> offset_{};
    std::array<double, 3> scale_{};           // per-axis factor times overall
};

// The session's values at points first moved into texture space by
// `transform`; both must outlive the evaluator.
BatchEvaluator transformedEvaluator(PluginSession& session, const HostTransform& transform);

}  // namespace gritwell
