#pragma once
// PlyWriter: a painted mesh as a binary little-endian PLY file: per vertex
// float x, y, z, the float `intensity` and uchar red, green, blue: the
// intensity's colour under the map (for grey, the intensity clamped to 0..1,
// times 255, rounded; NaN black); then the faces as `vertex_indices` lists
// (uchar count, int indices). The rows are gathered a mebibyte at a time,
// one write call each: a million vertices go out in about 45 calls.

#include <cstdio>
#include <string>
#include <vector>

#include "Colormap.h"
#include "Mesh.h"

namespace gritwell::PlyWriter {

// The header, up to and including "end_header\n".
std::string header(const Mesh& mesh);

// Writes the whole file to `out`; false when a write fails. `intensities`
// holds one value per vertex. Faces with more than 255 corners cannot be
// written (the count is a uchar) and are a CliError before anything is written.
bool write(std::FILE* out, const Mesh& mesh, const std::vector<float>& intensities,
           const Colormap::Map& map = Colormap::Map::Grey);

// Writes through an AtomicOutput: `path` gets the whole file or is left as it was.
void writeFile(const std::string& path, const Mesh& mesh, const std::vector<float>& intensities,
               const Colormap::Map& map = Colormap::Map::Grey);

}  // namespace gritwell::PlyWriter
