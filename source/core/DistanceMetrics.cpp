#include "core/DistanceMetrics.h"

#include <algorithm>
#include <cmath>

namespace gritwell {

float manhattan(const Vec3& v) {
    const double xy = static_cast<double>(std::fabs(v.x)) + std::fabs(v.y);
    const float sum = static_cast<float>(xy + std::fabs(v.z));
    return sum * sum;
}

float quadratic(const Vec3& v) { return sqrlen(v) + v.x * v.y + v.x * v.z + v.y * v.z; }

float chebychev(const Vec3& v) {
    const float m = std::max(std::max(std::fabs(v.x), std::fabs(v.y)), std::fabs(v.z));
    return m * m;
}

float minkowski4(const Vec3& v) {
    const float sum = v.x * v.x * v.x * v.x + v.y * v.y * v.y * v.y + v.z * v.z * v.z * v.z;
    return std::pow(sum, 0.25f);
}

float minkowski5(const Vec3& v) {
    // Roots and sum in double; the sum is rounded to float before squaring,
    // as the Manhattan metric does.
    const double sum = std::sqrt(static_cast<double>(std::fabs(v.x))) +
                       std::sqrt(static_cast<double>(std::fabs(v.y))) +
                       std::sqrt(static_cast<double>(std::fabs(v.z)));
    const float s = static_cast<float>(sum);
    return s * s;
}

}  // namespace gritwell
