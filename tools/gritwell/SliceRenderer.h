#pragma once
// Greyscale pictures of a texture: the slice z = const of the square
// [0, extent] x [0, extent], x to the right and y up, one sample at each
// pixel's centre.

#include <vector>

#include "PluginLibrary.h"
#include "PngWriter.h"

namespace gritwell {

struct SliceView {
    int size = 256;        // pixels on a side
    // Off the cell faces at z = 0, where solid patterns such as Brick,
    // Grid and Spheres show only their joints or nothing: every generator
    // but Constant shows its pattern here.
    float z = 0.3f;
    float extent = 4.0f;   // texture units across
    bool planar = false;   // the host's planar flag
    // A tile that repeats without a seam: see sliceRows.
    bool tileable = false;
};

// A tileable slice's cross-fade: its margins (at each edge, this share of
// the extent) fade into the texture around the place kTileSeam extents past
// the tile's far edge (see sliceRows).
constexpr double kTileMargin = 0.125;
constexpr double kTileSeam = 1.3183;

// The values of rows first..first+count-1 at the pixel centres, row-major,
// into out[0 .. count * size - 1]; each row is one batch.
//
// A tileable slice has period E = extent in x and in y. With s = kTileSeam E,
// margins m = kTileMargin E and pixels h = E / size wide, the value at x
// within m of the left edge is (x/m) f(x) + (1 - x/m) f(x + s - h), and
// within m of the right edge ((E - x)/m) f(x) + (1 - (E - x)/m) f(x - E + s);
// likewise in y, both weights multiplied in the corners. Both edges fade
// into f around s, where the texture runs on without a break, and the two
// pixels at the seam read the same place there (s - h/2), so the tile
// repeats without a seam for every generator. s lies off the whole and half
// units where lattice patterns (checkers, bricks, grids) put their edges.
// Between the margins the tile is the slice itself.
void sliceRows(const BatchEvaluator& evaluate, const SliceView& view, int first, int count, float* out);

// The values at the pixel centres, row-major, top row first.
std::vector<float> sliceValues(const BatchEvaluator& evaluate, const SliceView& view);

GreyImage renderSlice(const BatchEvaluator& evaluate, const SliceView& view);

// Through a session of the plug-in, as the host evaluates.
GreyImage renderSlice(PluginLibrary& plugin, const std::vector<unsigned char>& record,
                      const SliceView& view);

}  // namespace gritwell
