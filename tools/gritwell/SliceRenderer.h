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
};

// The values at the pixel centres, row-major, top row first.
std::vector<float> sliceValues(const BatchEvaluator& evaluate, const SliceView& view);

GreyImage renderSlice(const BatchEvaluator& evaluate, const SliceView& view);

// Through a session of the plug-in, as the host evaluates.
GreyImage renderSlice(PluginLibrary& plugin, const std::vector<unsigned char>& record,
                      const SliceView& view);

}  // namespace gritwell
