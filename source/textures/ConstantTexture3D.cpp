#include "textures/ConstantTexture3D.h"

#include <istream>
#include <ostream>

namespace gritwell {

float ConstantTexture3D::evaluate(const Record& r, int, float, float, float) { return r.constant; }

std::ostream& operator<<(std::ostream& os, const ConstantTexture3D& t) {
    return os << t.getConstant() << '\n';
}

std::istream& operator>>(std::istream& is, ConstantTexture3D& t) {
    float c;
    if (is >> c) t.setConstant(c);
    return is;
}

template class RecordTexture3D<ConstantTexture3D>;

}  // namespace gritwell
