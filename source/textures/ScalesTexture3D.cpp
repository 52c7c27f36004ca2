#include "textures/ScalesTexture3D.h"

#include <cmath>

#include "core/Vec2.h"
#include "noise/CellNoise.h"
#include "noise/Perlin.h"

namespace gritwell {

namespace {

constexpr double kPi = 3.141592653589793;  // the double pi of the shading and the sine outline

// s sin(pi t) + (1 - s): 1 - s at t = 0 and t = 1, 1 at t = 1/2. The sine
// and its product in double, 1 - s in float, the sum rounded to float.
float getShading(float t, float s) {
    return static_cast<float>(s * std::sin(kPi * t) + (1.0f - s));
}

// Gradient noise of the scaled point times the amplitude. The noise is 0 on
// every lattice point, so a whole-number coordinate is moved half a cell on
// to keep those points wobbling too.
float getVariabilityNoise(const Vec2& v, float frequency, float amplitude) {
    float x = v[0] * frequency;
    float y = v[1] * frequency;
    if (std::fmod(x, 1.0) == 0.0) x += 0.5f;
    if (std::fmod(y, 1.0) == 0.0) y += 0.5f;
    return Perlin::noise(x, y) * amplitude;
}

// A random intensity in [lo, hi] from a cell hash.
float pick(float lo, float hi, float c) { return lo + c * (hi - lo); }

// Every intensity a point may take. Slot 0 belongs to the scale centred on
// the cell's middle, whose base shows in the lower half and whose tip fills
// the upper half; slots 1 and 2 to the scales centred on the cell's left and
// right sides that rise through the lower half; slots 3 and 4 to the scales
// of the next row up, centred on the same sides, whose bases reach down into
// the upper half.
struct Tones {
    float base0, base3, base4;
    float body0, body1, body2, body3, body4;
    float edge0, edge1, edge2;
};

Tones tones(const ScalesTexture3D::Record& r, float x, float y) {
    Tones t{r.baseColor, r.baseColor, r.baseColor,
            r.bodyColor, r.bodyColor, r.bodyColor, r.bodyColor, r.bodyColor,
            r.edgeColor, r.edgeColor, r.edgeColor};
    const bool base = r.baseRandomizeColors != 0;
    const bool body = r.bodyRandomizeColors != 0;
    const bool edge = r.edgeRandomizeColors != 0;
    if (!base && !body && !edge) return t;

    // The cell itself, then the side-centred scales keyed by the cell on
    // their right: this cell, its right, upper and upper-right neighbours,
    // shifted by 17 and 83 so that they do not repeat c0's values.
    const float c0 = CellNoise::cellNoise(x, y);
    const float c1 = CellNoise::cellNoise(17.0f + x, y + 83.0f);
    const float c2 = CellNoise::cellNoise(17.0f + (x + 1.0f), y + 83.0f);
    const float c3 = CellNoise::cellNoise(17.0f + x, y + 1.0f + 83.0f);
    const float c4 = CellNoise::cellNoise(17.0f + (x + 1.0f), y + 1.0f + 83.0f);
    if (body) {
        t.body0 = pick(r.bodyMinColor, r.bodyMaxColor, c0);
        t.body1 = pick(r.bodyMinColor, r.bodyMaxColor, c1);
        t.body2 = pick(r.bodyMinColor, r.bodyMaxColor, c2);
        t.body3 = pick(r.bodyMinColor, r.bodyMaxColor, c3);
        t.body4 = pick(r.bodyMinColor, r.bodyMaxColor, c4);
    }
    if (base) {
        t.base0 = pick(r.baseMinColor, r.baseMaxColor, c0);
        t.base3 = pick(r.baseMinColor, r.baseMaxColor, c3);
        t.base4 = pick(r.baseMinColor, r.baseMaxColor, c4);
    }
    if (edge) {
        t.edge0 = pick(r.edgeMinColor, r.edgeMaxColor, c0);
        t.edge1 = pick(r.edgeMinColor, r.edgeMaxColor, c1);
        t.edge2 = pick(r.edgeMinColor, r.edgeMaxColor, c2);
    }
    return t;
}

// A scale's outline at one x fraction, as heights above the row line: the
// rim's outer edge, its inner edge, and the top of the dark base band.
struct Outline {
    float rim, inner, band;
};

}  // namespace

float ScalesTexture3D::evaluate(const Record& r, int, float x, float y, float) {
    if (r.scaleVariabilityEnabled != 0) {
        const float f = r.scaleVariabilityFrequency;
        const float a = r.scaleVariabilityAmplitude;
        // Both offsets from the point before either moves it.
        const float dx = getVariabilityNoise(Vec2(x, y), f, a);
        const float dy = getVariabilityNoise(Vec2(x + 17.0f, y + 83.0f), f, a);
        x += dx;
        y += dy;
    }
    // The true floor: rows and columns start at whole numbers, negative ones
    // included. A tiny negative coordinate gives 1, where the difference
    // rounds up; the outlines are symmetric, so that stays in bounds.
    const float fs = static_cast<float>(x - std::floor(static_cast<double>(x)));
    const float ft = static_cast<float>(y - std::floor(static_cast<double>(y)));

    const Tones c = tones(r, x, y);

    // The outline at fs: a, the own scale's arc centred in the cell; b, the
    // arc of the neighbouring row's scales centred on the cell's sides. At
    // ft = 0.5 exactly the lower row's choice is taken although the point
    // lies in the upper half: stored records depend on that seam.
    const bool lower = 0.5f >= ft;
    Outline o;
    switch (static_cast<ScaleShape>(r.scaleShape)) {
        case SCALE_SHAPE_SEMICIRCLE: {
            const double angle = static_cast<double>(180.0f * fs) * kPi / 180.0;
            const float a = std::fabs(static_cast<float>(std::sin(angle)));
            const float b = std::fabs(static_cast<float>(std::cos(angle)));
            o.rim = 0.5f * (lower ? b : a);
            o.band = r.baseDimension * (lower ? a : b);
            break;
        }
        case SCALE_SHAPE_NORMAL:
        default: {  // every non-zero value
            const double s = fs;
            const float a = std::fabs(static_cast<float>(std::sqrt(0.25 - (s - 0.5) * (s - 0.5))));
            const float b = std::fabs(static_cast<float>(
                fs < 0.5f ? std::sqrt(0.25 - s * s) : std::sqrt(0.25 - (s - 1.0) * (s - 1.0))));
            o.rim = lower ? b : a;
            o.band = static_cast<float>(2.0 * (static_cast<double>(r.baseDimension) * (lower ? a : b)));
            break;
        }
    }
    o.inner = o.rim - r.edgeDimension;

    float v = 1.0f;
    auto along = [&](float t) {
        if (r.shadingAlongEnabled != 0) v *= getShading(t, r.shadingAlongStrength);
    };
    auto across = [&](float t) {
        if (r.shadingAcrossEnabled != 0) v *= getShading(t, r.shadingAcrossStrength);
    };
    // One of the two neighbouring scales whose middles lie on the cell's
    // sides, shaded across from its own middle.
    auto sideScale = [&](float left, float right) {
        if (fs < 0.5f) {
            v = left;
            across(0.5f + fs);
        } else {
            v = right;
            across(fs - 0.5f);
        }
    };

    if (ft < 0.5f) {
        // Lower half: the tips of the row below's scales over this scale's base.
        const float t = ft;
        if (o.inner > t) {
            sideScale(c.body1, c.body2);
            along(0.5f + ft);
        } else if (t > o.rim) {
            v = o.band > t ? c.base0 : c.body0;
            along(ft);
            across(fs);
        } else {
            sideScale(c.edge1, c.edge2);
            along(0.5f + ft);
        }
    } else {
        // Upper half: this scale's tip over the bases of the row above.
        const float t = ft - 0.5f;
        if (o.inner > t) {
            v = c.body0;
            along(ft);
            across(fs);
        } else if (t > o.rim) {
            if (o.band > t)
                sideScale(c.base3, c.base4);
            else
                sideScale(c.body3, c.body4);
            along(ft - 0.5f);
        } else {
            v = c.edge0;
            along(ft);
            across(fs);
        }
    }
    return v;
}

template class RecordTexture3D<ScalesTexture3D>;

}  // namespace gritwell
