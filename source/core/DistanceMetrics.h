#pragma once
// The distance metrics the cellular noises choose between, on an offset
// vector v. They deliberately disagree on whether they return a distance or
// its square; callers compare values of one metric only, and stored records
// depend on each being exactly as it is.

#include "core/Vec3.h"

namespace gritwell {

float manhattan(const Vec3& v);   // (|x| + |y| + |z|)^2
float quadratic(const Vec3& v);   // x^2 + y^2 + z^2 + xy + xz + yz
float chebychev(const Vec3& v);   // max(|x|, |y|, |z|)^2
float minkowski4(const Vec3& v);  // (x^4 + y^4 + z^4)^(1/4), not squared
float minkowski5(const Vec3& v);  // (sqrt|x| + sqrt|y| + sqrt|z|)^2: "Minkowski(0.5)"

}  // namespace gritwell
