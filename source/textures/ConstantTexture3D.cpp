#include "textures/ConstantTexture3D.h"

namespace gritwell {

float ConstantTexture3D::evaluate(const Record& r, int, float, float, float) { return r.constant; }

template class RecordTexture3D<ConstantTexture3D>;

}  // namespace gritwell
