#include "BakedPreview.h"

#include <cmath>
#include <cstring>
#include <unordered_map>


namespace gritwell::BakedPreview {

namespace {

struct Key {
    std::uint32_t a, b, c;
    bool operator==(const Key&) const = default;
};
struct KeyHash {
    std::size_t operator()(const Key& k) const {
        std::uint64_t h = k.a;
        h = h * 0x9E3779B97F4A7C15ull ^ k.b;
        h = h * 0x9E3779B97F4A7C15ull ^ k.c;
        return static_cast<std::size_t>(h ^ (h >> 29));
    }
};

// The map at texel coordinates (x, y), bilinear between texel centres,
// wrapping at the edges as a repeating texture does.
float sampleMap(const std::vector<float>& map, int size, double x, double y) {
    const double fx = x - 0.5, fy = y - 0.5;
    const double x0 = std::floor(fx), y0 = std::floor(fy);
    const double tx = fx - x0, ty = fy - y0;
    auto at = [&](double cx, double cy) {
        const long long ix = static_cast<long long>(cx) % size, iy = static_cast<long long>(cy) % size;
        return static_cast<double>(map[static_cast<std::size_t>((iy + size) % size) * size + static_cast<std::size_t>((ix + size) % size)]);
    };
    const double top = at(x0, y0) * (1 - tx) + at(x0 + 1, y0) * tx;
    const double bottom = at(x0, y0 + 1) * (1 - tx) + at(x0 + 1, y0 + 1) * tx;
    return static_cast<float>(top * (1 - ty) + bottom * ty);
}

}  // namespace

Picture render(const UvMesh& uvMesh, const std::vector<float>& map, int size, const MeshPreview::View& view) {
    // Corners at one position are joined, so the shading is smoothed across
    // UV seams; each face remembers its own corners' texture coordinates.
    Mesh mesh;
    std::unordered_map<Key, std::uint32_t, KeyHash> joined;  // position bits to vertex
    std::vector<std::uint32_t> vertexOf(uvMesh.vertexCount());
    for (std::size_t v = 0; v < uvMesh.vertexCount(); ++v) {
        Key k;
        std::memcpy(&k, &uvMesh.positions[3 * v], sizeof k);
        const auto next = static_cast<std::uint32_t>(mesh.vertexCount());
        const std::uint32_t index = joined.try_emplace(k, next).first->second;
        if (index == next) mesh.positions.insert(mesh.positions.end(), &uvMesh.positions[3 * v], &uvMesh.positions[3 * v] + 3);
        vertexOf[v] = index;
    }
    std::unordered_map<Key, std::uint32_t, KeyHash> faceOf;  // joined corners to triangle
    for (std::size_t t = 0; t < uvMesh.triangleCount(); ++t) {
        const std::uint32_t* c = &uvMesh.triangles[3 * t];
        const Key k{vertexOf[c[0]], vertexOf[c[1]], vertexOf[c[2]]};
        mesh.faceSizes.push_back(3);
        mesh.faceCorners.insert(mesh.faceCorners.end(), {k.a, k.b, k.c});
        faceOf[k] = static_cast<std::uint32_t>(t);  // a later face at the same corners shows
    }
    const MeshPreview::Raster raster(mesh, view);
    return raster.colourBy([&](const MeshPreview::Raster::Sample& sample) {
        const auto face = faceOf.find(Key{sample.corners[0], sample.corners[1], sample.corners[2]});
        std::array<double, 3> colour{};
        if (face == faceOf.end()) return colour;
        const std::uint32_t* c = &uvMesh.triangles[3 * static_cast<std::size_t>(face->second)];
        double u = 0, v = 0;
        for (int k = 0; k < 3; ++k) {
            u += sample.weights[k] * uvMesh.uvs[2 * static_cast<std::size_t>(c[k])];
            v += sample.weights[k] * uvMesh.uvs[2 * static_cast<std::size_t>(c[k]) + 1];
        }
        if (!std::isfinite(u) || !std::isfinite(v)) return colour;
        u -= std::floor(u);
        v -= std::floor(v);
        colour = view.map.colour(sampleMap(map, size, u * size, (1.0 - v) * size));
        for (double& channel : colour) channel *= sample.shade;
        return colour;
    });
}

}  // namespace gritwell::BakedPreview
