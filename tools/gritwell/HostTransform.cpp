#include "HostTransform.h"

#include <cerrno>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <numbers>
#include <vector>

#include "CliError.h"

namespace gritwell {

namespace {

using Matrix = std::array<double, 9>;

Matrix multiply(const Matrix& a, const Matrix& b) {
    Matrix m{};
    for (int r = 0; r < 3; ++r)
        for (int c = 0; c < 3; ++c)
            m[3 * r + c] = a[3 * r] * b[c] + a[3 * r + 1] * b[3 + c] + a[3 * r + 2] * b[6 + c];
    return m;
}

// Cosine and sine of a whole number of turns, exact at every quarter turn so
// that a 90-degree turn swaps axes without a rounding residue.
void turnCosSin(double turns, double& c, double& s) {
    const double f = turns - std::floor(turns);
    if (f == 0.0) { c = 1.0; s = 0.0; return; }
    if (f == 0.25) { c = 0.0; s = 1.0; return; }
    if (f == 0.5) { c = -1.0; s = 0.0; return; }
    if (f == 0.75) { c = 0.0; s = -1.0; return; }
    const double radians = 2.0 * std::numbers::pi * f;
    c = std::cos(radians);
    s = std::sin(radians);
}

// The inverse (transpose) of a turn about one axis: 0 x, 1 y, 2 z.
Matrix inverseTurn(int axis, double turns) {
    double c, s;
    turnCosSin(turns, c, s);
    switch (axis) {
        case 0: return {1, 0, 0, 0, c, s, 0, -s, c};
        case 1: return {c, 0, -s, 0, 1, 0, s, 0, c};
        default: return {c, s, 0, -s, c, 0, 0, 0, 1};
    }
}

void requireFinite(float v, const char* field) {
    if (!std::isfinite(v))
        throw CliError(std::string("the transform's ") + field + " must be a finite number, not " + std::to_string(v));
}

}  // namespace

HostTransform::HostTransform(const TransformData& record) : record_(record) {
    const float offsets[3] = {record.xOffset, record.yOffset, record.zOffset};
    const float factors[3] = {record.xScale, record.yScale, record.zScale};
    const float angles[3] = {record.xAngle, record.yAngle, record.zAngle};
    const char* const offsetNames[3] = {"x offset", "y offset", "z offset"};
    const char* const factorNames[3] = {"x scale", "y scale", "z scale"};
    const char* const angleNames[3] = {"x angle", "y angle", "z angle"};
    requireFinite(record.overallScale, "overall scale");
    if (record.overallScale == 0.0f) throw CliError("the transform's overall scale must not be 0");
    for (int i = 0; i < 3; ++i) {
        requireFinite(offsets[i], offsetNames[i]);
        requireFinite(factors[i], factorNames[i]);
        requireFinite(angles[i], angleNames[i]);
        if (factors[i] == 0.0f) throw CliError(std::string("the transform's ") + factorNames[i] + " must not be 0");
        offset_[i] = offsets[i];
        scale_[i] = static_cast<double>(factors[i]) * record.overallScale;
        if (offsets[i] != 0.0f || scale_[i] != 1.0) identity_ = false;
        if (angles[i] != 0.0f) rotates_ = true;
    }
    if (rotates_) {
        identity_ = false;
        // (Rz Ry Rx)^-1 = Rx^-1 Ry^-1 Rz^-1
        inverseRotation_ = multiply(multiply(inverseTurn(0, angles[0]), inverseTurn(1, angles[1])),
                                    inverseTurn(2, angles[2]));
    }
}

void HostTransform::apply(const float* in, float* out, std::size_t n) const {
    if (identity_) {
        if (in != out) std::memmove(out, in, 3 * n * sizeof(float));
        return;
    }
    const Matrix& m = inverseRotation_;
    for (std::size_t i = 0; i < 3 * n; i += 3) {
        double d[3] = {in[i] - offset_[0], in[i + 1] - offset_[1], in[i + 2] - offset_[2]};
        if (rotates_) {
            const double r[3] = {m[0] * d[0] + m[1] * d[1] + m[2] * d[2], m[3] * d[0] + m[4] * d[1] + m[5] * d[2],
                                 m[6] * d[0] + m[7] * d[1] + m[8] * d[2]};
            std::memcpy(d, r, sizeof d);
        }
        for (int k = 0; k < 3; ++k) out[i + k] = static_cast<float>(d[k] / scale_[k]);
    }
}

TransformData HostTransform::readFile(const std::string& path) {
    // A folder opens as a stream that reads nothing: say so, not "0 bytes".
    if (std::error_code ec; std::filesystem::is_directory(path, ec))
        throw CliError("cannot read '" + path + "': it is a folder");
    std::ifstream in(path, std::ios::binary);
    if (!in) throw CliError("cannot read '" + path + "': " + std::strerror(errno));
    std::vector<char> bytes;
    char c;
    while (bytes.size() <= sizeof(TransformData) && in.get(c)) bytes.push_back(c);
    if (bytes.size() != sizeof(TransformData))
        throw CliError("'" + path + "' is not a transform record: " +
                       (bytes.size() > sizeof(TransformData) ? std::string("more than 44") : std::to_string(bytes.size())) +
                       " bytes, a transform record holds 44");
    return TransformData::fromBytes(bytes.data());
}

BatchEvaluator transformedEvaluator(PluginSession& session, const HostTransform& transform) {
    if (transform.isIdentity())
        return [&session](const float* points, int n, float* out) { session.evaluate(points, n, out); };
    return [&session, &transform](const float* points, int n, float* out) {
        std::vector<float> moved(3 * static_cast<std::size_t>(n));
        transform.apply(points, moved.data(), static_cast<std::size_t>(n));
        session.evaluate(moved.data(), n, out);
    };
}

}  // namespace gritwell
