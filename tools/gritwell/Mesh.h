#pragma once
// Mesh: the vertices and faces `gritwell paint` reads and writes.

#include <cstddef>
#include <cstdint>
#include <vector>

namespace gritwell {

struct Mesh {
    std::vector<float> positions;            // x, y, z of each vertex
    std::vector<std::uint32_t> faceSizes;    // the number of corners of each face
    std::vector<std::uint32_t> faceCorners;  // every face's vertex indices, face after face

    std::size_t vertexCount() const { return positions.size() / 3; }
    std::size_t faceCount() const { return faceSizes.size(); }
};

}  // namespace gritwell
