#pragma once
// MeshReader: OBJ and PLY meshes read through the Open Asset Import Library.
//
// The file's vertices are kept as far as the library lets them be. A PLY file
// comes through as it is: its vertices in its order, unused ones included.
// An OBJ file comes as one vertex per face corner, split into a mesh per group
// or material; corners at exactly the same position are joined into one
// vertex again, across the whole file, in the order faces first use them (so
// vertices no face uses are lost, unless the file has no faces at all).
// Polygons keep their corners (no triangulation); points and lines are not
// faces, but their vertices are painted.

#include <string>

#include "Mesh.h"

namespace gritwell::MeshReader {

// Reads a .obj or .ply file (by its extension, any case). A missing,
// unreadable, damaged or empty file, or another extension, is a CliError
// (status 2) that says which and why.
Mesh read(const std::string& path);

}  // namespace gritwell::MeshReader
