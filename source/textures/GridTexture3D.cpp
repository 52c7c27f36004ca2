#include "textures/GridTexture3D.h"

#include "core/FloatToInt.h"
#include "noise/CellNoise.h"

namespace gritwell {

namespace {

// Whether c lies within half a line width of either integer plane bounding
// its cell. Equality counts as on the line, so a width of 0 still blackens
// the planes themselves. The cell index puts an exact negative integer one
// cell low, where it touches that cell's upper plane.
bool onLine(float c, float stripeWidth) {
    const int f = cellIndex(c);
    const float d1 = c - static_cast<float>(f);
    const float d2 = static_cast<float>(wrapAdd(1, f)) - c;
    const float w = 0.5f * stripeWidth;
    return w * w >= d1 * d1 || w * w >= d2 * d2;
}

}  // namespace

float GridTexture3D::evaluate(const Record& r, int flags, float x, float y, float z) {
    // Planar mode leaves z untested: the lines become columns through z.
    const float p[3] = {x, y, z};
    const int axes = isPlanar(flags) ? 2 : 3;
    for (int a = 0; a < axes; ++a)
        if (onLine(p[a], r.stripeWidth)) return 0.0f;
    if (r.randomizeColors == 0) return 1.0f;
    const float c = CellNoise::cellNoise(x, y, z);
    return r.minColor + (r.maxColor - r.minColor) * c;
}

template class RecordTexture3D<GridTexture3D>;

}  // namespace gritwell
