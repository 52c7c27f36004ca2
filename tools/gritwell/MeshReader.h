#pragma once
// MeshReader: the meshes `gritwell paint` reads: OBJ and PLY by readers of
// our own (ObjReader, PlyReader), which walk the file's bytes at about the
// speed the disk gives them; STL, OFF and glTF (.gltf, .glb) through the
// Open Asset Import Library.
//
// PLY, OFF and glTF files come through as they are: their vertices in their
// order, unused ones included. OBJ and STL files are joined: corners at
// exactly the same position are one vertex, across the whole file, in the
// order faces (and an OBJ file's lines and points) first use them, so
// vertices nothing uses are lost, unless the file uses none at all. A glTF
// mesh is placed by the first node that uses it. Polygons keep their
// corners (no triangulation); points and lines are not faces, but their
// vertices are painted. Text coordinates are read correctly rounded.

#include <string>

#include "Mesh.h"

namespace gritwell::MeshReader {

// Reads a mesh by its extension, any case. A missing, unreadable, damaged
// (a binary PLY cut short too) or empty file, or another extension, is a
// CliError (status 2) that says which and why.
Mesh read(const std::string& path);

}  // namespace gritwell::MeshReader
