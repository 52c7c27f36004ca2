#pragma once
// UvMesh: the triangles `gritwell bake` lays out in texture space: each
// vertex's position and texture coordinates, and triangles by vertex.

#include <cstddef>
#include <cstdint>
#include <vector>

namespace gritwell {

struct UvMesh {
    std::vector<float> positions;             // x, y, z of each vertex
    std::vector<float> uvs;                   // u, v of each vertex
    std::vector<std::uint32_t> triangles;     // three vertex indices each
    std::size_t facesWithoutUvs = 0;          // faces left out: their mesh has no texture coordinates

    std::size_t vertexCount() const { return positions.size() / 3; }
    std::size_t triangleCount() const { return triangles.size() / 3; }
};

}  // namespace gritwell
