#pragma once
// PlyReader: PLY meshes, ASCII and binary of either byte order, read
// directly from the file's bytes.
//
// The vertices are the first `vertex` element's x, y and z, whatever their
// types (a double is rounded to float, an integer converted), in the file's
// order, unused ones included. The faces are the first `face` element's
// `vertex_indices` (or `vertex_index`) lists; a list of fewer than three
// corners is not a face and is passed over. Every other element and
// property is read past. An index outside the vertices, a file cut short, a
// word that is not a number where one belongs, or a header this reading does
// not accept is a CliError (status 2) that says where.

#include <string>
#include <string_view>

#include "Mesh.h"

namespace gritwell::PlyReader {

// Reads the PLY file whose bytes are `file`; `path` names it in messages.
Mesh read(std::string_view file, const std::string& path);

}  // namespace gritwell::PlyReader
