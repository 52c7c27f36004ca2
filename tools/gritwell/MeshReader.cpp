#include "MeshReader.h"

#include <assimp/Importer.hpp>
#include <assimp/scene.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <limits>
#include <sstream>
#include <string_view>
#include <unordered_map>

#include "CliError.h"

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

// The formats read, and whether the importer hands them over as one vertex
// per face corner, to be joined again.
struct Format {
    std::string_view extension;
    bool cornerPerVertex;
};
constexpr Format kFormats[] = {{".obj", true}, {".ply", false}, {".stl", true},
                               {".off", false}, {".gltf", false}, {".glb", false}};

std::string formatList() {
    std::string list;
    for (const Format& f : kFormats) list += (list.empty() ? "" : ", ") + std::string(f.extension);
    return list;
}

int plyTypeSize(const std::string& type) {
    if (type == "char" || type == "uchar" || type == "int8" || type == "uint8") return 1;
    if (type == "short" || type == "ushort" || type == "int16" || type == "uint16") return 2;
    if (type == "int" || type == "uint" || type == "int32" || type == "uint32" || type == "float" ||
        type == "float32")
        return 4;
    if (type == "double" || type == "float64") return 8;
    return 0;
}

// A PLY header as our own reading finds it. The importer is handed a file
// only once this reading accepts it: on a header without its end_header
// line (a file cut inside it) the importer spins forever, and it reads a
// binary body cut short as if the missing bytes were there.
struct PlyProperty {
    int size;           // of the value, or of a list's items
    int countSize = 0;  // of a list's count; 0 for a single value
};
struct PlyElement {
    std::string name;
    std::uint64_t count = 0;
    std::vector<PlyProperty> properties;
};

// Why the header at the start of `file` is not one the importer may see
// (empty when it is); the elements and where the body starts when it is.
std::string readPlyHeader(std::string_view file, std::vector<PlyElement>& elements, std::uint64_t& bodyStart,
                          bool& binary, bool& little) {
    std::size_t at = 0;
    auto nextLine = [&](std::string& line) {
        const std::size_t end = file.find('\n', at);
        if (end == std::string_view::npos) return false;
        line = std::string(file.substr(at, end - at));
        if (!line.empty() && line.back() == '\r') line.pop_back();
        at = end + 1;
        return true;
    };
    std::string line;
    if (!nextLine(line) || line != "ply") return "it does not begin with the line 'ply'";
    bool format = false;
    for (int number = 2;; ++number) {
        if (!nextLine(line)) return "its header ends before 'end_header' (the file is cut short or is not PLY)";
        std::istringstream words(line);
        std::string word, type, countType, name, extra;
        words >> word;
        const std::string where = "line " + std::to_string(number) + " of its header";
        if (word == "end_header") break;
        if (word.empty() || word == "comment" || word == "obj_info") continue;
        if (word == "format") {
            std::string version;
            words >> type >> version;
            if (type != "ascii" && type != "binary_little_endian" && type != "binary_big_endian")
                return where + " names the format '" + type + "'; PLY's are ascii, binary_little_endian, "
                       "binary_big_endian";
            format = true;
            binary = type != "ascii";
            little = type == "binary_little_endian";
        } else if (word == "element") {
            PlyElement e;
            std::string count;
            words >> e.name >> count;
            const auto [end, ec] = std::from_chars(count.data(), count.data() + count.size(), e.count);
            if (e.name.empty() || count.empty() || ec != std::errc() || end != count.data() + count.size())
                return where + " is not 'element NAME COUNT'";
            elements.push_back(std::move(e));
        } else if (word == "property") {
            if (elements.empty()) return where + " is a property before any element";
            words >> type;
            PlyProperty p{};
            if (type == "list") {
                words >> countType >> type;
                p = {plyTypeSize(type), plyTypeSize(countType)};
                if (p.countSize == 0) return where + " has a list count of no PLY type: '" + countType + "'";
            } else {
                p = {plyTypeSize(type)};
            }
            if (p.size == 0) return where + " has a property of no PLY type: '" + type + "'";
            if (!(words >> name)) return where + " names no property";
            elements.back().properties.push_back(p);
        } else {
            return where + " is none of format, element, property, comment, obj_info, end_header";
        }
    }
    if (!format) return "its header has no format line";
    bodyStart = at;
    return {};
}

// Where a binary PLY body ends short of what its header promises ("it ends
// in vertex 1204 of 5858"); empty when all is there.
std::string binaryPlyShortfall(std::string_view file, const std::vector<PlyElement>& elements,
                               std::uint64_t at, bool little) {
    const std::uint64_t size = file.size();
    auto shortAt = [](const PlyElement& e, std::uint64_t row) {
        return "it ends in " + e.name + " " + std::to_string(row) + " of " + std::to_string(e.count);
    };
    for (const PlyElement& e : elements) {
        std::uint64_t rowSize = 0;
        bool lists = false;
        for (const PlyProperty& p : e.properties) {
            rowSize += p.size;
            lists = lists || p.countSize != 0;
        }
        if (!lists) {
            const std::uint64_t left = size - std::min(at, size);
            if (rowSize != 0 && e.count > left / rowSize) return shortAt(e, left / rowSize);
            at += e.count * rowSize;
            continue;
        }
        for (std::uint64_t row = 0; row < e.count; ++row)
            for (const PlyProperty& p : e.properties) {
                std::uint64_t items = 1;
                if (p.countSize != 0) {
                    if (at + p.countSize > size) return shortAt(e, row);
                    items = 0;
                    for (int b = 0; b < p.countSize; ++b)
                        items |= std::uint64_t(static_cast<unsigned char>(file[at + b]))
                                 << 8 * (little ? b : p.countSize - 1 - b);
                    at += p.countSize;
                }
                if (items > size || at + items * p.size > size) return shortAt(e, row);
                at += items * p.size;
            }
    }
    return {};
}

// Refuses a PLY file whose header our reading does not accept, or whose
// binary body is cut short.
void checkPly(const std::string& path) {
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    struct stat status {};
    if (fd < 0 || ::fstat(fd, &status) != 0 || status.st_size == 0) {
        if (fd >= 0) ::close(fd);
        return;  // the importer says what is wrong
    }
    const auto size = static_cast<std::size_t>(status.st_size);
    void* mapped = ::mmap(nullptr, size, PROT_READ, MAP_PRIVATE, fd, 0);
    ::close(fd);
    if (mapped == MAP_FAILED) return;
    const std::string_view file(static_cast<const char*>(mapped), size);
    std::vector<PlyElement> elements;
    std::uint64_t bodyStart = 0;
    bool binary = false, little = true;
    std::string problem = readPlyHeader(file, elements, bodyStart, binary, little);
    const bool header = !problem.empty();
    if (!header && binary) problem = binaryPlyShortfall(file, elements, bodyStart, little);
    ::munmap(mapped, size);
    if (header) throw CliError("cannot read the mesh '" + path + "': " + problem);
    if (!problem.empty()) throw CliError("'" + path + "' is cut short: " + problem);
}

// The placement of each mesh: that of the first node that uses it. OBJ,
// PLY, STL and OFF files place nothing; a glTF scene places its meshes.
void findPlacements(const aiNode* node, const aiMatrix4x4& parent, std::vector<aiMatrix4x4>& placement,
                    std::vector<bool>& placed) {
    if (node == nullptr) return;
    const aiMatrix4x4 here = parent * node->mTransformation;
    for (unsigned i = 0; i < node->mNumMeshes; ++i) {
        const unsigned m = node->mMeshes[i];
        if (m < placement.size() && !placed[m]) {
            placement[m] = here;
            placed[m] = true;
        }
    }
    for (unsigned c = 0; c < node->mNumChildren; ++c) findPlacements(node->mChildren[c], here, placement, placed);
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
    if (extension == ".ply") checkPly(path);

    Assimp::Importer importer;
    // No post-processing: the library's own joining of corners would also
    // work, but costs seconds on a million vertices where a hash map of the
    // positions costs a fraction of one.
    const aiScene* scene = importer.ReadFile(path, 0);
    if (scene == nullptr) throw CliError("cannot read the mesh '" + path + "': " + importer.GetErrorString());
    std::vector<aiMatrix4x4> placement(scene->mNumMeshes);
    std::vector<bool> placed(scene->mNumMeshes);
    findPlacements(scene->mRootNode, aiMatrix4x4(), placement, placed);

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
