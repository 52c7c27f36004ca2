#pragma once
// MeshReader: meshes read through the Open Asset Import Library: OBJ, PLY,
// STL, OFF and glTF (.gltf, .glb).
//
// The file's vertices are kept as far as the library lets them be. PLY, OFF
// and glTF files come through as they are: their vertices in their order,
// unused ones included. OBJ and STL files come as one vertex per face
// corner (OBJ split into a mesh per group or material); corners at exactly
// the same position are joined into one vertex again, across the whole
// file, in the order faces first use them (so vertices no face uses are
// lost, unless the file has no faces at all). A glTF mesh is placed by the
// first node that uses it. Polygons keep their corners (no triangulation);
// points and lines are not faces, but their vertices are painted.

#include <string>

#include "Mesh.h"

namespace gritwell::MeshReader {

// Reads a mesh by its extension, any case. A missing, unreadable, damaged
// (a binary PLY cut short too) or empty file, or another extension, is a
// CliError (status 2) that says which and why.
Mesh read(const std::string& path);

}  // namespace gritwell::MeshReader
