#include "PlyWriter.h"

#include <bit>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <vector>

#include "AtomicOutput.h"
#include "CliError.h"
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

bool write(std::FILE* out, const Mesh& mesh, const std::vector<float>& intensities) {
    if (intensities.size() != mesh.vertexCount())
        throw CliError("internal: " + std::to_string(intensities.size()) + " intensities for " +
                           std::to_string(mesh.vertexCount()) + " vertices",
                       CliError::kEnvironment);
    for (const std::uint32_t corners : mesh.faceSizes)
        if (corners > kMaxCorners)
            throw CliError("a face has " + std::to_string(corners) + " corners; a PLY face holds at most 255");
    // The body goes out a buffer at a time: one write call per mebibyte
    // rather than one per value.
    std::vector<unsigned char> buffer;
    buffer.reserve(kBufferBytes);
    const auto flush = [&] {
        const bool ok = std::fwrite(buffer.data(), 1, buffer.size(), out) == buffer.size();
        buffer.clear();
        return ok;
    };
    const auto room = [&](std::size_t bytes) { return buffer.size() + bytes <= kBufferBytes || flush(); };
    const auto put = [&](const void* bytes, std::size_t n) {
        const auto* b = static_cast<const unsigned char*>(bytes);
        buffer.insert(buffer.end(), b, b + n);
    };

    const std::string text = header(mesh);
    put(text.data(), text.size());
    for (std::size_t v = 0; v < mesh.vertexCount(); ++v) {
        if (!room(kVertexBytes)) return false;
        const unsigned char grey = toGrey(intensities[v]);
        const unsigned char rgb[3] = {grey, grey, grey};
        put(&mesh.positions[3 * v], 3 * sizeof(float));
        put(&intensities[v], sizeof(float));
        put(rgb, 3);
    }
    const std::uint32_t* corner = mesh.faceCorners.data();
    for (const std::uint32_t corners : mesh.faceSizes) {
        if (!room(1 + corners * sizeof(std::int32_t))) return false;
        buffer.push_back(static_cast<unsigned char>(corners));
        // The indices are below 2^31 (the readers see to it), so their
        // unsigned bits are the int the header declares.
        put(corner, corners * sizeof(std::int32_t));
        corner += corners;
    }
    return flush();
}

void writeFile(const std::string& path, const Mesh& mesh, const std::vector<float>& intensities) {
    AtomicOutput out(path);
    if (!write(out.file(), mesh, intensities)) throw CliError("cannot write '" + path + "': " + std::strerror(errno));
    out.commit();
}

}  // namespace gritwell::PlyWriter
