#include "textures/VoronoiTexture3D.h"

#include "core/UnitRange.h"

namespace gritwell {

float VoronoiTexture3D::evaluate(const Record& r, int flags, float x, float y, float z) {
    const auto type = static_cast<Voronoi::VoronoiType>(r.type);
    const auto method = static_cast<Voronoi::DistanceMethod>(r.distanceMethod);
    const float v = isPlanar(flags) ? Voronoi::Get(r.scale * x, r.scale * y, type, method)
                                    : Voronoi::Get(r.scale * x, r.scale * y, r.scale * z, type, method);
    return clampUnit(v);
}

void VoronoiTexture3D::evaluateBlock(const Record& r, int flags, const float* points, int n, float* out) {
    const PointBlock p(points, n, r.scale);
    const auto type = static_cast<Voronoi::VoronoiType>(r.type);
    const auto method = static_cast<Voronoi::DistanceMethod>(r.distanceMethod);
    if (isPlanar(flags))
        Voronoi::Get(p.x, p.y, n, type, method, out);
    else
        Voronoi::Get(p.x, p.y, p.z, n, type, method, out);
    for (int i = 0; i < n; ++i) out[i] = clampUnit(out[i]);
}

template class RecordTexture3D<VoronoiTexture3D>;

}  // namespace gritwell
