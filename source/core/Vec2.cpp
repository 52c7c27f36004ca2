#include "core/Vec2.h"

#include <istream>
#include <ostream>

#include "core/VectorText.h"

namespace gritwell {

std::ostream& operator<<(std::ostream& os, const Vec2& v) {
    const float c[2] = {v.x, v.y};
    writeVectorText(os, c, 2);
    return os;
}
std::istream& operator>>(std::istream& is, Vec2& v) {
    float c[2];
    if (readVectorText(is, c, 2)) v = {c[0], c[1]};
    return is;
}

}  // namespace gritwell
