#include "PlyWriter.h"

#include <bit>
#include <cerrno>
#include <cstdint>
#include <cstring>

#include "AtomicOutput.h"
#include "CliError.h"
#include "Colormap.h"
#include "PngWriter.h"

namespace gritwell::PlyWriter {

static_assert(std::endian::native == std::endian::little, "the file is little-endian and written as in memory");

namespace {

constexpr std::size_t kVertexBytes = 4 * sizeof(float) + 3;
constexpr std::uint32_t kMaxCorners = 255;

}  // namespace

std::string header(const Mesh& mesh) {
    return "ply\n"
           "format binary_little_endian 1.0\n"
           "comment painted by gritwell\n"
           "element vertex " + std::to_string(mesh.vertexCount()) + "\n"
           "property float x\n"
           "property float y\n"
           "property float z\n"
           "property float intensity\n"
           "property uchar red\n"
           "property uchar green\n"
           "property uchar blue\n"
           "element face " + std::to_string(mesh.faceCount()) + "\n"
           "property list uchar int vertex_indices\n"
           "end_header\n";
}

bool write(std::FILE* out, const Mesh& mesh, const std::vector<float>& intensities, const Colormap::Map& map) {
    if (intensities.size() != mesh.vertexCount())
        throw CliError("internal: " + std::to_string(intensities.size()) + " intensities for " +
                           std::to_string(mesh.vertexCount()) + " vertices",
                       CliError::kEnvironment);
    for (const std::uint32_t corners : mesh.faceSizes)
        if (corners > kMaxCorners)
            throw CliError("a face has " + std::to_string(corners) + " corners; a PLY face holds at most 255");
    const std::string text = header(mesh);
    if (std::fwrite(text.data(), 1, text.size(), out) != text.size()) return false;

    unsigned char vertex[kVertexBytes];
    for (std::size_t v = 0; v < mesh.vertexCount(); ++v) {
        const float value = intensities[v];
        std::memcpy(vertex, &mesh.positions[3 * v], 3 * sizeof(float));
        std::memcpy(vertex + 3 * sizeof(float), &value, sizeof value);
        if (map.isGrey()) {
            std::memset(vertex + 4 * sizeof(float), toGrey(value), 3);
        } else {
            const Colormap::Rgb c = map.colour(value);
            for (int k = 0; k < 3; ++k) vertex[4 * sizeof(float) + k] = static_cast<unsigned char>(Colormap::level(c[k], 8));
        }
        if (std::fwrite(vertex, 1, sizeof vertex, out) != sizeof vertex) return false;
    }

    const std::uint32_t* corner = mesh.faceCorners.data();
    for (const std::uint32_t corners : mesh.faceSizes) {
        const auto count = static_cast<unsigned char>(corners);
        if (std::fwrite(&count, 1, 1, out) != 1) return false;
        for (std::uint32_t c = 0; c < corners; ++c, ++corner) {
            const auto index = static_cast<std::int32_t>(*corner);
            if (std::fwrite(&index, sizeof index, 1, out) != 1) return false;
        }
    }
    return true;
}

void writeFile(const std::string& path, const Mesh& mesh, const std::vector<float>& intensities,
               const Colormap::Map& map) {
    AtomicOutput out(path);
    if (!write(out.file(), mesh, intensities, map)) throw CliError("cannot write '" + path + "': " + std::strerror(errno));
    out.commit();
}

}  // namespace gritwell::PlyWriter
