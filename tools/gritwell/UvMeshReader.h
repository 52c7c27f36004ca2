#pragma once
// UvMeshReader: meshes with texture coordinates, for baking, read through the
// Open Asset Import Library: OBJ, PLY, OFF, STL and glTF (.gltf, .glb), the
// formats `paint` reads. Each face keeps its corners' own texture
// coordinates (a vertex shared by faces on both sides of a UV seam has two);
// polygons are cut into triangles as a fan from their first corner. A glTF
// mesh is placed by the first node that uses it, as `paint` places it. The
// first set of texture coordinates is used.

#include <string>

#include "UvMesh.h"

namespace gritwell::UvMeshReader {

// Reads a mesh by its extension, any case. A missing, unreadable or damaged
// file, another extension, or a mesh with no texture coordinates at all
// (STL and OFF files have none) is a CliError (status 2) saying so.
UvMesh read(const std::string& path);

}  // namespace gritwell::UvMeshReader
