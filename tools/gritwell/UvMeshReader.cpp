#include "UvMeshReader.h"

#include <assimp/Importer.hpp>
#include <assimp/scene.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <limits>

#include "CliError.h"
#include "MeshPlacement.h"

namespace gritwell::UvMeshReader {

namespace {

constexpr const char* kExtensions[] = {".obj", ".ply", ".off", ".stl", ".gltf", ".glb"};

// Whether an OBJ file has a `vt` line. The importer drops every texture
// coordinate of a mesh when one face names a vt the file does not hold, and
// such a mesh would otherwise be reported as never unwrapped.
bool objListsTextureCoordinates(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::string line;
    while (std::getline(in, line)) {
        const std::size_t start = line.find_first_not_of(" \t");
        if (start != std::string::npos && line.compare(start, 3, "vt ") == 0) return true;
    }
    return false;
}

}  // namespace

UvMesh read(const std::string& path) {
    std::string extension = std::filesystem::path(path).extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    if (std::find(std::begin(kExtensions), std::end(kExtensions), extension) == std::end(kExtensions))
        throw CliError("'" + path + "' is not a mesh gritwell reads: the formats it reads are .obj, .ply, .off, "
                       ".stl, .gltf, .glb");
    if (std::ifstream probe(path, std::ios::binary); !probe)
        throw CliError("cannot read '" + path + "': " + std::strerror(errno));
    std::error_code ec;
    if (std::filesystem::is_directory(path, ec)) throw CliError("cannot read '" + path + "': it is a folder");

    Assimp::Importer importer;
    const aiScene* scene = importer.ReadFile(path, 0);
    if (scene == nullptr) throw CliError("cannot read the mesh '" + path + "': " + importer.GetErrorString());
    const std::vector<aiMatrix4x4> placement = MeshPlacement::of(*scene);

    UvMesh mesh;
    bool anyVertices = false;
    for (unsigned m = 0; m < scene->mNumMeshes; ++m) {
        const aiMesh* part = scene->mMeshes[m];
        if (part == nullptr || part->mVertices == nullptr) continue;
        anyVertices = anyVertices || part->mNumVertices > 0;
        const aiVector3D* uvs = part->mTextureCoords[0];
        if (uvs == nullptr) {
            for (unsigned f = 0; f < part->mNumFaces; ++f)
                mesh.facesWithoutUvs += part->mFaces[f].mNumIndices >= 3;
            continue;
        }
        if (part->mNumVertices >= std::numeric_limits<std::int32_t>::max() - mesh.vertexCount())
            throw CliError("'" + path + "' has more vertices than gritwell bakes at once (2^31 - 1)");
        const auto base = static_cast<std::uint32_t>(mesh.vertexCount());
        const bool moves = !placement[m].IsIdentity();
        for (unsigned v = 0; v < part->mNumVertices; ++v) {
            const aiVector3D p = moves ? placement[m] * part->mVertices[v] : part->mVertices[v];
            mesh.positions.insert(mesh.positions.end(), {p.x, p.y, p.z});
            mesh.uvs.insert(mesh.uvs.end(), {uvs[v].x, uvs[v].y});
        }
        for (unsigned f = 0; f < part->mNumFaces; ++f) {
            const aiFace& face = part->mFaces[f];
            if (face.mNumIndices < 3) continue;  // a point or a line, not a face
            for (unsigned c = 0; c < face.mNumIndices; ++c)
                if (face.mIndices[c] >= part->mNumVertices)
                    throw CliError("'" + path + "' is damaged: a face uses vertex " +
                                   std::to_string(face.mIndices[c]) + " of " + std::to_string(part->mNumVertices));
            for (unsigned c = 1; c + 1 < face.mNumIndices; ++c)
                mesh.triangles.insert(mesh.triangles.end(), {base + face.mIndices[0], base + face.mIndices[c],
                                                             base + face.mIndices[c + 1]});
        }
    }
    if (!anyVertices) throw CliError("'" + path + "' has no vertices to bake");
    if (mesh.triangles.empty()) {
        if (mesh.facesWithoutUvs > 0 && extension == ".obj" && objListsTextureCoordinates(path))
            throw CliError("'" + path + "' has texture coordinates (vt lines) that none of its faces could use: "
                           "a face names a texture coordinate the file does not hold, so every one was dropped");
        if (mesh.facesWithoutUvs > 0)
            throw CliError("'" + path + "' has no texture coordinates: bake lays the texture out on the mesh's UV "
                           "map, so the mesh needs one (unwrap it in a modelling program first)");
        throw CliError("'" + path + "' has no faces to bake");
    }
    return mesh;
}

}  // namespace gritwell::UvMeshReader
