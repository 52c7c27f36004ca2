#include "core/Vec3.h"

#include <cmath>
#include <istream>
#include <ostream>

#include "core/VectorText.h"

namespace gritwell {

float len(const Vec3& v) { return std::sqrt(dot(v, v)); }

std::ostream& operator<<(std::ostream& os, const Vec3& v) {
    const float c[3] = {v.x, v.y, v.z};
    writeVectorText(os, c, 3);
    return os;
}
std::istream& operator>>(std::istream& is, Vec3& v) {
    float c[3];
    if (readVectorText(is, c, 3)) v = {c[0], c[1], c[2]};
    return is;
}

}  // namespace gritwell
