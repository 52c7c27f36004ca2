#include "textures/CellTexture3D.h"

#include "core/UnitRange.h"

namespace gritwell {

// The flags are not consulted: this generator has no planar form.
float CellTexture3D::evaluate(const Record& r, int, float x, float y, float z) {
    const double v = Worley::Get(r.scale * x, r.scale * y, r.scale * z, static_cast<Worley::VoronoiType>(r.type),
                                 static_cast<Worley::DistanceMethod>(r.distanceMethod));
    return static_cast<float>(clampUnit(v));
}

template class RecordTexture3D<CellTexture3D>;

}  // namespace gritwell
