#include "textures/SpheresTexture3D.h"

#include "core/FloatToInt.h"

namespace gritwell {

namespace {

// sqrt(2) as it has always been stored, in single precision.
constexpr float kRoot2 = 1.4142135f;

float square(float v) { return v * v; }

}  // namespace

float SpheresTexture3D::evaluate(const Record& r, int flags, float x, float y, float z) {
    if (isPlanar(flags)) z = -0.5f;

    const int cx = cellIndex(x);
    const int cy = cellIndex(y);
    const int cz = cellIndex(z);
    // The checkerboard's dark cubes, the origin's among them, hold spheres.
    const bool occupied =
        r.staggered == 0 || ((isEven(cx) != isEven(cy)) != isEven(cz));

    const float s = r.sphereSize;
    const float outer = r.staggered != 0 ? kRoot2 * s * (s * kRoot2) : s * s;
    const float inner = r.hollowness * r.hollowness * outer;
    auto onShell = [&](float d2) { return outer >= d2 && d2 >= inner; };

    // The cell corner as float, the way the centre offsets were always formed.
    const float fx = static_cast<float>(cx);
    const float fy = static_cast<float>(cy);
    const float fz = static_cast<float>(cz);
    const float dx2 = square(x - (fx + 0.5f));
    const float dy2 = square(y - (fy + 0.5f));
    const float dz2 = square(z - (fz + 0.5f));

    if (occupied) return onShell(dz2 + (dx2 + dy2)) ? 0.0f : 1.0f;

    // An empty cube: the six face neighbours' spheres reach into it.
    for (const float o : {-0.5f, 1.5f})
        if (onShell(dz2 + (square(x - (fx + o)) + dy2))) return 0.0f;
    for (const float o : {-0.5f, 1.5f})
        if (onShell(dz2 + (dx2 + square(y - (fy + o))))) return 0.0f;
    for (const float o : {-0.5f, 1.5f})
        if (onShell(square(z - (fz + o)) + (dx2 + dy2))) return 0.0f;
    return 1.0f;
}

template class RecordTexture3D<SpheresTexture3D>;

}  // namespace gritwell
