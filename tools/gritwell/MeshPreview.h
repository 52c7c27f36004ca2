#pragma once
// MeshPreview: a small software rasteriser that pictures a painted mesh:
// orthographic, z-buffered, each pixel the colour of the intensity
// interpolated across its face, lit by one light from the upper left (the
// normals smoothed over the vertices, both sides of a face lit alike). Four
// samples per pixel. A mesh without faces is drawn as dots.

#include <cstddef>
#include <array>
#include <cstdint>
#include <functional>
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

// The picture of a mesh before it is coloured: for each sample, the face
// (and the point on it) or the dot it shows, and how brightly it is lit.
// Made once, it colours any values of the same mesh; the colouring is the
// cheap part, so a picture that follows changing values keeps one.
class Raster {
public:
    Raster(const Mesh& mesh, const View& view);
    // One value per vertex of the mesh, in its order.
    Picture colour(const std::vector<float>& values) const;

    struct Sample {
        enum class Kind : std::uint8_t { Background, Face, Dot } kind = Kind::Background;
        std::uint32_t corners[3] = {};  // a dot's vertex is the first
        double weights[3] = {};         // of the corners' values
        double shade = 1.0;
    };

    // The picture with each face or dot sample coloured by `colourOf`
    // (channels 0..1, lit as the caller sees fit) and the background grey.
    Picture colourBy(const std::function<std::array<double, 3>(const Sample&)>& colourOf) const;

private:
    std::size_t vertexCount_;
    View view_;
    std::vector<Sample> samples_;  // kSamples x kSamples per pixel, row-major
};

// 8-bit RGB, the mesh fitted to the square with a margin; vertices that are
// not finite, and the faces that use them, are left out.
Picture render(const Mesh& mesh, const std::vector<float>& values, const View& view);

constexpr int kBackground = 40;  // the gallery's dark grey

}  // namespace gritwell::MeshPreview
