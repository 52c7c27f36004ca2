#include "MeshReader.h"

#include <assimp/Importer.hpp>
#include <assimp/scene.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <limits>
#include <string_view>
#include <unordered_map>

#include "CliError.h"
#include "MappedFile.h"
#include "MeshPlacement.h"
#include "ObjReader.h"
#include "PlyReader.h"

namespace gritwell::MeshReader {

namespace {

// A position by its bits, so that only identical coordinates are joined.
struct PositionKey {
    std::uint32_t x, y, z;
    bool operator==(const PositionKey&) const = default;
};

struct PositionHash {
    std::size_t operator()(const PositionKey& k) const {
        std::uint64_t h = k.x;
        h = h * 0x9E3779B97F4A7C15ull ^ k.y;
        h = h * 0x9E3779B97F4A7C15ull ^ k.z;
        return static_cast<std::size_t>(h ^ (h >> 29));
    }
};

PositionKey keyOf(const aiVector3D& v) {
    PositionKey k;
    const float xyz[3] = {v.x, v.y, v.z};
    std::memcpy(&k, xyz, sizeof k);
    return k;
}

std::string lowerExtension(const std::string& path) {
    std::string extension = std::filesystem::path(path).extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return extension;
}

// The formats read; OBJ and PLY by our own readers, the rest through the
// importer, which hands STL over as one vertex per face corner, to be
// joined again.
struct Format {
    std::string_view extension;
    bool cornerPerVertex;
};
constexpr Format kFormats[] = {{".obj", true}, {".ply", false}, {".stl", true},
                               {".off", false}, {".gltf", false}, {".glb", false}};

Mesh readDirectly(const std::string& path, const std::string& extension) {
    const MappedFile file(path);
    return extension == ".ply" ? PlyReader::read(file.bytes(), path) : ObjReader::read(file.bytes(), path);
}

std::string formatList() {
    std::string list;
    for (const Format& f : kFormats) list += (list.empty() ? "" : ", ") + std::string(f.extension);
    return list;
}

}  // namespace

Mesh read(const std::string& path) {
    const std::string extension = lowerExtension(path);
    const Format* format = nullptr;
    for (const Format& f : kFormats)
        if (f.extension == extension) format = &f;
    if (format == nullptr)
        throw CliError("'" + path + "' is not a mesh gritwell reads: the formats it reads are " + formatList());
    if (std::ifstream probe(path, std::ios::binary); !probe)
        throw CliError("cannot read '" + path + "': " + std::strerror(errno));
    std::error_code ec;
    if (std::filesystem::is_directory(path, ec)) throw CliError("cannot read '" + path + "': it is a folder");
    if (extension == ".ply" || extension == ".obj") {
        Mesh mesh = readDirectly(path, extension);
        if (mesh.vertexCount() == 0) throw CliError("'" + path + "' has no vertices to paint");
        return mesh;
    }

    Assimp::Importer importer;
    // No post-processing: the library's own joining of corners would also
    // work, but costs seconds on a million vertices where a hash map of the
    // positions costs a fraction of one.
    const aiScene* scene = importer.ReadFile(path, 0);
    if (scene == nullptr) throw CliError("cannot read the mesh '" + path + "': " + importer.GetErrorString());
    const std::vector<aiMatrix4x4> placement = MeshPlacement::of(*scene);

    Mesh mesh;
    const bool joinCorners = format->cornerPerVertex;
    std::unordered_map<PositionKey, std::uint32_t, PositionHash> indexOf;
    std::vector<std::uint32_t> global;
    for (unsigned m = 0; m < scene->mNumMeshes; ++m) {
        const aiMesh* part = scene->mMeshes[m];
        if (part == nullptr || part->mVertices == nullptr) continue;
        if (part->mNumVertices >= std::numeric_limits<std::int32_t>::max() - mesh.vertexCount())
            throw CliError("'" + path + "' has more vertices than gritwell paints at once (2^31 - 1)");
        global.resize(part->mNumVertices);
        const bool moves = !placement[m].IsIdentity();
        for (unsigned v = 0; v < part->mNumVertices; ++v) {
            const aiVector3D p = moves ? placement[m] * part->mVertices[v] : part->mVertices[v];
            const auto next = static_cast<std::uint32_t>(mesh.vertexCount());
            const std::uint32_t index = joinCorners ? indexOf.try_emplace(keyOf(p), next).first->second : next;
            if (index == next) mesh.positions.insert(mesh.positions.end(), {p.x, p.y, p.z});
            global[v] = index;
        }
        for (unsigned f = 0; f < part->mNumFaces; ++f) {
            const aiFace& face = part->mFaces[f];
            if (face.mNumIndices < 3) continue;  // a point or a line, not a face
            for (unsigned c = 0; c < face.mNumIndices; ++c) {
                if (face.mIndices[c] >= part->mNumVertices)
                    throw CliError("'" + path + "' is damaged: a face uses vertex " +
                                   std::to_string(face.mIndices[c]) + " of " + std::to_string(part->mNumVertices));
                mesh.faceCorners.push_back(global[face.mIndices[c]]);
            }
            mesh.faceSizes.push_back(face.mNumIndices);
        }
    }
    if (mesh.vertexCount() == 0) throw CliError("'" + path + "' has no vertices to paint");
    return mesh;
}

}  // namespace gritwell::MeshReader
