#pragma once
// ObjReader: Wavefront OBJ meshes, read directly from the file's text.
//
// The file's `v` lines are its positions (x, y, z; a w or a colour after
// them is passed over). Its faces (`f`), lines (`l`) and points (`p`) name
// positions by number (1 the first, -1 the last one so far), with texture
// and normal numbers after slashes passed over. A mesh vertex is a distinct
// position: corners at exactly the same position, by the bits of x, y and z,
// are one vertex across the whole file, numbered in the order the file's
// faces, lines and points first use them; positions nothing uses are left
// out, unless nothing uses any (a point cloud: every position, in order).
// Faces keep their corners; a face of fewer than three corners, a line or a
// point is no face, though its vertices are painted. Every other statement
// (groups, materials, normals, texture coordinates, smoothing) is passed over.
// A number that is not one, or that names no position, is a CliError
// (status 2) that gives the line.

#include <string>
#include <string_view>

#include "Mesh.h"

namespace gritwell::ObjReader {

// Reads the OBJ file whose bytes are `file`; `path` names it in messages.
Mesh read(std::string_view file, const std::string& path);

}  // namespace gritwell::ObjReader
