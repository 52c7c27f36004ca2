#pragma once
// MapBaker: a texture baked onto a mesh's UV layout, a band of rows at a time.
//
// Texel (x, y) of an N x N map covers u in [x/N, (x+1)/N] and v from the
// top: row 0 is v = 1. Each triangle is laid out in texel space and every
// texel whose centre lies inside it or on its edge takes the value at the
// triangle's position there, interpolated from its corners by barycentric
// weights in double precision and rounded once to float; the values come
// from one batch call per band. Where faces overlap in UV space the face
// read later wins (file order, but an OBJ's faces arrive grouped by object
// and material).
//
// Texture coordinates outside 0..1 wrap, as engines sample them: a face is
// moved by whole tiles so that its lowest u and v fall in [0, 1), and the
// texels it covers past the map's edge are those at the other edge. Faces are
// left out, and counted, when a corner's texture coordinates or position are
// not finite, when they have no area in texel space, or when they span more
// than the whole map in u or v.
//
// Texels no face covers take, for `padding` passes, the mean of their
// covered (or already filled) neighbours among the eight around them, so
// that mip-maps and filtering blend in values of the texture rather than
// the background; texels still empty after that are 0.

#include <cstddef>
#include <cstdint>
#include <vector>

#include "PluginLibrary.h"
#include "UvMesh.h"

namespace gritwell {

class MapBaker {
public:
    // Lays the mesh out for an N x N map (1..65536) with the given padding
    // (>= 0), in bands of `bandHeight` rows (0: chosen by the size, see
    // heightFor).
    MapBaker(const UvMesh& mesh, int size, int padding, int bandHeight = 0);

    // Bands of about 128 K texels, 16 to 128 rows: each band also lays out
    // and evaluates its padding rows either side, so taller bands waste
    // less, and smaller ones keep every thread busy and memory low.
    static int heightFor(int size) { return size >= 8192 ? 16 : size <= 1024 ? 128 : (1 << 17) / size; }

    int size() const { return size_; }
    int bands() const { return (size_ + bandHeight_ - 1) / bandHeight_; }
    int firstRow(int band) const { return band * bandHeight_; }
    int bandRows(int band) const;

    // Faces left out, by reason.
    struct LeftOut {
        std::size_t notFinite = 0;
        std::size_t noArea = 0;
        std::size_t tooLarge = 0;
    };
    const LeftOut& leftOut() const { return leftOut_; }
    // Faces with texture coordinates outside 0..1, laid out wrapped.
    std::size_t wrapped() const { return wrapped_; }

    // A band's working memory; one per thread.
    struct Scratch {
        std::vector<float> values;         // the band and its padding rows
        std::vector<float> next;           // the values after a pass of padding
        std::vector<std::int32_t> texel;   // covered texel indices, in evaluation order
        std::vector<float> points;         // their positions
        std::vector<float> results;
        std::vector<std::uint8_t> state, nextState;  // 0 empty, 1 filled
    };

    // The values of the band's rows, row-major, into out[0 .. bandRows(band) * size - 1].
    void bake(int band, const BatchEvaluator& evaluate, Scratch& scratch, float* out) const;

private:
    struct Triangle {
        std::uint32_t index;    // into the mesh's triangles
        double x[3], y[3];      // corners in texel space, moved by whole tiles
        int rowFirst, rowLast;  // texel rows whose centres it may cover (before wrapping)
    };

    const UvMesh& mesh_;
    int size_;
    int padding_;
    int bandHeight_;
    std::vector<Triangle> triangles_;
    std::vector<std::vector<std::uint32_t>> bandTriangles_;  // per band, into triangles_, in face order
    LeftOut leftOut_;
    std::size_t wrapped_ = 0;
};

}  // namespace gritwell
