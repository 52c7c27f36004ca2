#pragma once
// MeshPreview: a small software rasteriser that pictures a painted mesh:
// orthographic, z-buffered, each pixel the colour of the intensity
// interpolated across its face, lit by one light from the upper left (the
// normals smoothed over the vertices, both sides of a face lit alike). Four
// samples per pixel. A mesh without faces is drawn as dots.

#include <vector>

#include "Colormap.h"
#include "Mesh.h"
#include "PngWriter.h"

namespace gritwell::MeshPreview {

struct View {
    int size = 512;           // pixels on a side
    double yawTurns = 0.07;   // the model turned about y, then...
    double pitchTurns = 0.03; // ...tipped towards the viewer about x
    Colormap::Map map = Colormap::Map::Grey;
};

// 8-bit RGB, the mesh fitted to the square with a margin; vertices that are
// not finite, and the faces that use them, are left out.
Picture render(const Mesh& mesh, const std::vector<float>& values, const View& view);

constexpr int kBackground = 40;  // the gallery's dark grey

}  // namespace gritwell::MeshPreview
