#include "PlyWriter.h"

#include <bit>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <memory>
#include <vector>

#include "AtomicOutput.h"
#include "CliError.h"
#include "Colormap.h"
#include "PngWriter.h"

namespace gritwell::PlyWriter {

static_assert(std::endian::native == std::endian::little, "the file is little-endian and written as in memory");

namespace {

constexpr std::size_t kVertexBytes = 4 * sizeof(float) + 3;
constexpr std::uint32_t kMaxCorners = 255;
constexpr std::size_t kBufferBytes = std::size_t(1) << 20;  // holds any row: 19 bytes, or 1 + 255 * 4

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
    // The body goes out a buffer at a time: one write call per mebibyte
    // rather than one per value.
    const std::unique_ptr<unsigned char[]> buffer(new unsigned char[kBufferBytes]);
    unsigned char* at = buffer.get();
    unsigned char* const full = buffer.get() + kBufferBytes;
    const auto flush = [&] {
        const auto bytes = static_cast<std::size_t>(at - buffer.get());
        at = buffer.get();
        return std::fwrite(buffer.get(), 1, bytes, out) == bytes;
    };
    const auto room = [&](std::size_t bytes) { return std::size_t(full - at) >= bytes || flush(); };

    const std::string text = header(mesh);
    if (std::fwrite(text.data(), 1, text.size(), out) != text.size()) return false;
    const float* position = mesh.positions.data();
    for (std::size_t v = 0; v < mesh.vertexCount(); ++v, position += 3) {
        if (!room(kVertexBytes)) return false;
        const float value = intensities[v];
        std::memcpy(at, position, 3 * sizeof(float));
        std::memcpy(at + 3 * sizeof(float), &value, sizeof value);
        if (map.isGrey()) {
            std::memset(at + 4 * sizeof(float), toGrey(value), 3);
        } else {
            const Colormap::Rgb c = map.colour(value);
            for (int k = 0; k < 3; ++k) at[4 * sizeof(float) + k] = static_cast<unsigned char>(Colormap::level(c[k], 8));
        }
        at += kVertexBytes;
    }
    const std::uint32_t* corner = mesh.faceCorners.data();
    for (const std::uint32_t corners : mesh.faceSizes) {
        const std::size_t bytes = corners * sizeof(std::int32_t);
        if (!room(1 + bytes)) return false;
        *at = static_cast<unsigned char>(corners);
        // The indices are below 2^31 (the readers see to it), so their
        // unsigned bits are the int the header declares.
        std::memcpy(at + 1, corner, bytes);
        at += 1 + bytes;
        corner += corners;
    }
    return flush();
}

void writeFile(const std::string& path, const Mesh& mesh, const std::vector<float>& intensities,
               const Colormap::Map& map) {
    AtomicOutput out(path);
    if (!write(out.file(), mesh, intensities, map)) throw CliError("cannot write '" + path + "': " + std::strerror(errno));
    out.commit();
}

}  // namespace gritwell::PlyWriter
