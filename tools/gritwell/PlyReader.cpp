#include "PlyReader.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>
#include <sstream>
#include <vector>

#include "CliError.h"
#include "MeshText.h"

namespace gritwell::PlyReader {

namespace {

// ---- header ------------------------------------------------------------------

enum class Type : std::uint8_t { kNone, kInt8, kUInt8, kInt16, kUInt16, kInt32, kUInt32, kFloat32, kFloat64 };

Type typeOf(const std::string& name) {
    if (name == "char" || name == "int8") return Type::kInt8;
    if (name == "uchar" || name == "uint8") return Type::kUInt8;
    if (name == "short" || name == "int16") return Type::kInt16;
    if (name == "ushort" || name == "uint16") return Type::kUInt16;
    if (name == "int" || name == "int32") return Type::kInt32;
    if (name == "uint" || name == "uint32") return Type::kUInt32;
    if (name == "float" || name == "float32") return Type::kFloat32;
    if (name == "double" || name == "float64") return Type::kFloat64;
    return Type::kNone;
}

std::size_t sizeOf(Type type) {
    switch (type) {
        case Type::kInt8:
        case Type::kUInt8: return 1;
        case Type::kInt16:
        case Type::kUInt16: return 2;
        case Type::kInt32:
        case Type::kUInt32:
        case Type::kFloat32: return 4;
        case Type::kFloat64: return 8;
        case Type::kNone: break;
    }
    return 0;
}

bool isInteger(Type type) { return type != Type::kNone && type != Type::kFloat32 && type != Type::kFloat64; }

struct Property {
    std::string name;
    Type type = Type::kNone;       // of the value, or of a list's items
    Type countType = Type::kNone;  // of a list's count; kNone for a single value
    bool isList() const { return countType != Type::kNone; }
};

struct Element {
    std::string name;
    std::uint64_t count = 0;
    std::vector<Property> properties;
};

enum class Format { kAscii, kLittle, kBig };

struct Header {
    std::vector<Element> elements;
    std::size_t bodyStart = 0;
    Format format = Format::kAscii;
};

// Why the header at the start of `file` is not one this reading accepts
// (empty when it is).
std::string readHeader(std::string_view file, Header& header) {
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
        std::string word, type, countType, name;
        words >> word;
        const std::string where = "line " + std::to_string(number) + " of its header";
        if (word == "end_header") break;
        if (word.empty() || word == "comment" || word == "obj_info") continue;
        if (word == "format") {
            std::string version;
            words >> type >> version;
            if (type == "ascii")
                header.format = Format::kAscii;
            else if (type == "binary_little_endian")
                header.format = Format::kLittle;
            else if (type == "binary_big_endian")
                header.format = Format::kBig;
            else
                return where + " names the format '" + type + "'; PLY's are ascii, binary_little_endian, "
                       "binary_big_endian";
            format = true;
        } else if (word == "element") {
            Element e;
            std::string count;
            words >> e.name >> count;
            const auto [end, ec] = std::from_chars(count.data(), count.data() + count.size(), e.count);
            if (e.name.empty() || count.empty() || ec != std::errc() || end != count.data() + count.size())
                return where + " is not 'element NAME COUNT'";
            header.elements.push_back(std::move(e));
        } else if (word == "property") {
            if (header.elements.empty()) return where + " is a property before any element";
            words >> type;
            Property p;
            if (type == "list") {
                words >> countType >> type;
                p.countType = typeOf(countType);
                if (!isInteger(p.countType)) return where + " has a list count of no PLY type: '" + countType + "'";
            }
            p.type = typeOf(type);
            if (p.type == Type::kNone) return where + " has a property of no PLY type: '" + type + "'";
            if (!(words >> p.name)) return where + " names no property";
            header.elements.back().properties.push_back(std::move(p));
        } else {
            return where + " is none of format, element, property, comment, obj_info, end_header";
        }
    }
    if (!format) return "its header has no format line";
    header.bodyStart = at;
    return {};
}

// ---- what the mesh takes from the file ---------------------------------------

// The elements and properties that hold the mesh; everything else is read past.
struct Layout {
    const Element* vertex = nullptr;
    int coordinate[3] = {-1, -1, -1};  // the properties x, y, z of `vertex`
    const Element* face = nullptr;
    int corners = -1;  // the property of `face` that lists its corners; -1 for none

    // Which of x, y, z property `k` of `e` is; -1 for none.
    int axisOf(const Element& e, int k) const {
        if (&e != vertex) return -1;
        for (int axis = 0; axis < 3; ++axis)
            if (coordinate[axis] == k) return axis;
        return -1;
    }
    bool holdsCorners(const Element& e, int k) const { return &e == face && k == corners; }
};

Layout layoutOf(const Header& header, const std::string& path) {
    Layout layout;
    for (const Element& e : header.elements) {
        if (e.name == "vertex" && layout.vertex == nullptr) layout.vertex = &e;
        if (e.name == "face" && layout.face == nullptr) layout.face = &e;
    }
    const std::string cannot = "cannot read the mesh '" + path + "': ";
    if (layout.vertex == nullptr) throw CliError("'" + path + "' has no vertices to paint");
    const auto& properties = layout.vertex->properties;
    for (int k = 0; k < static_cast<int>(properties.size()); ++k)
        for (int axis = 0; axis < 3; ++axis)
            if (properties[k].name == std::string(1, char('x' + axis)) && layout.coordinate[axis] < 0) {
                if (properties[k].isList()) throw CliError(cannot + "its vertices' " + properties[k].name + " is a list");
                layout.coordinate[axis] = k;
            }
    for (int axis = 0; axis < 3; ++axis)
        if (layout.coordinate[axis] < 0) throw CliError(cannot + "its vertices have no " + char('x' + axis));
    if (layout.vertex->count >= std::uint64_t(std::numeric_limits<std::int32_t>::max()))
        throw CliError("'" + path + "' has more vertices than gritwell paints at once (2^31 - 1)");
    if (layout.face != nullptr)
        for (int k = 0; k < static_cast<int>(layout.face->properties.size()); ++k) {
            const Property& p = layout.face->properties[k];
            if ((p.name == "vertex_indices" || p.name == "vertex_index") && p.isList() && layout.corners < 0) {
                if (!isInteger(p.type)) throw CliError(cannot + "its faces' " + p.name + " are not whole numbers");
                layout.corners = k;
            }
        }
    return layout;
}

// The mesh as it is read, and the checks every format's faces share.
class Builder {
public:
    Builder(const Layout& layout, const std::string& path) : path_(path), vertices_(layout.vertex->count) {}

    Mesh mesh;

    [[noreturn]] void cutShort(const Element& e, std::uint64_t row) const {
        throw CliError("'" + path_ + "' is cut short: it ends in " + e.name + " " + std::to_string(row) + " of " +
                       std::to_string(e.count));
    }
    [[noreturn]] void damaged(const std::string& why) const { throw CliError("'" + path_ + "' is damaged: " + why); }

    // A face's corners, fed one at a time after begin; fewer than three are
    // not a face and leave nothing behind.
    void beginFace() { start_ = mesh.faceCorners.size(); }
    void corner(std::int64_t index) {
        if (index < 0 || std::uint64_t(index) >= vertices_)
            damaged("a face uses vertex " + std::to_string(index) + " of " + std::to_string(vertices_));
        mesh.faceCorners.push_back(static_cast<std::uint32_t>(index));
    }
    void endFace() {
        const std::size_t corners = mesh.faceCorners.size() - start_;
        if (corners < 3)
            mesh.faceCorners.resize(start_);
        else
            mesh.faceSizes.push_back(static_cast<std::uint32_t>(corners));
    }

    // The common face element, nothing but a list of a one-byte count and
    // 32-bit little-endian indices, kept apart so its loop has no
    // per-value type switch; returns where the element ends.
    std::size_t byteCountedFaces(std::string_view file, std::size_t at, const Element& e) {
        const bool signedCount = e.properties[0].countType == Type::kInt8;
        const bool signedItems = e.properties[0].type == Type::kInt32;
        const char* data = file.data();
        for (std::uint64_t row = 0; row < e.count; ++row) {
            if (at == file.size()) cutShort(e, row);
            const int items = signedCount ? int(static_cast<signed char>(data[at])) : int(static_cast<unsigned char>(data[at]));
            ++at;
            if (items < 0) damaged(e.name + " " + std::to_string(row) + " has a list of " + std::to_string(items) + " items");
            if (std::size_t(items) * 4 > file.size() - at) cutShort(e, row);
            if (items >= 3) {
                for (int i = 0; i < items; ++i) {
                    std::uint32_t index;
                    std::memcpy(&index, data + at + 4 * i, 4);
                    if (index >= vertices_)
                        corner(signedItems ? std::int64_t(static_cast<std::int32_t>(index)) : std::int64_t(index));
                    mesh.faceCorners.push_back(index);
                }
                mesh.faceSizes.push_back(static_cast<std::uint32_t>(items));
            }
            at += std::size_t(items) * 4;
        }
        return at;
    }

private:
    const std::string& path_;
    std::uint64_t vertices_;
    std::size_t start_ = 0;
};

// ---- binary body --------------------------------------------------------------

template <typename T>
T load(const char* at, bool swap) {
    if constexpr (sizeof(T) == 1) {
        T value;
        std::memcpy(&value, at, 1);
        return value;
    } else {
        using Bits = std::conditional_t<sizeof(T) == 2, std::uint16_t,
                                        std::conditional_t<sizeof(T) == 4, std::uint32_t, std::uint64_t>>;
        Bits bits;
        std::memcpy(&bits, at, sizeof bits);
        if (swap) {
            if constexpr (sizeof(T) == 2) bits = __builtin_bswap16(bits);
            if constexpr (sizeof(T) == 4) bits = __builtin_bswap32(bits);
            if constexpr (sizeof(T) == 8) bits = __builtin_bswap64(bits);
        }
        T value;
        std::memcpy(&value, &bits, sizeof value);
        return value;
    }
}

// A double rounded to float as the processor rounds it, a value past the
// float range included (there the language leaves the conversion
// undefined): from FLT_MAX plus half its step on, an infinity.
float narrow(double value) {
    constexpr double kOverflow = 0x1.ffffffp127;
    if (value >= kOverflow) return std::numeric_limits<float>::infinity();
    if (value <= -kOverflow) return -std::numeric_limits<float>::infinity();
    return static_cast<float>(value);
}

// A stored value as a coordinate: a float as it is, a double rounded, an
// integer converted (through double, which holds every 32-bit one exactly,
// so it is rounded once).
float coordinateAt(const char* at, Type type, bool swap) {
    switch (type) {
        case Type::kInt8: return static_cast<float>(load<std::int8_t>(at, swap));
        case Type::kUInt8: return static_cast<float>(load<std::uint8_t>(at, swap));
        case Type::kInt16: return static_cast<float>(load<std::int16_t>(at, swap));
        case Type::kUInt16: return static_cast<float>(load<std::uint16_t>(at, swap));
        case Type::kInt32: return static_cast<float>(static_cast<double>(load<std::int32_t>(at, swap)));
        case Type::kUInt32: return static_cast<float>(static_cast<double>(load<std::uint32_t>(at, swap)));
        case Type::kFloat32: return load<float>(at, swap);
        case Type::kFloat64: return narrow(load<double>(at, swap));
        case Type::kNone: break;
    }
    return 0.0f;
}

// A stored integer (counts and indices are never floats; the header check
// sees to that).
std::int64_t integerAt(const char* at, Type type, bool swap) {
    switch (type) {
        case Type::kInt8: return load<std::int8_t>(at, swap);
        case Type::kUInt8: return load<std::uint8_t>(at, swap);
        case Type::kInt16: return load<std::int16_t>(at, swap);
        case Type::kUInt16: return load<std::uint16_t>(at, swap);
        case Type::kInt32: return load<std::int32_t>(at, swap);
        case Type::kUInt32: return load<std::uint32_t>(at, swap);
        case Type::kFloat32:
        case Type::kFloat64:
        case Type::kNone: break;
    }
    return 0;
}

void readBinary(std::string_view file, const Header& header, const Layout& layout, Builder& b) {
    const bool swap = header.format == Format::kBig;
    const char* data = file.data();
    std::size_t at = header.bodyStart;
    for (const Element& e : header.elements) {
        const bool lists = std::any_of(e.properties.begin(), e.properties.end(),
                                       [](const Property& p) { return p.isList(); });
        if (!lists) {
            // Rows of one size: the whole element is checked at once and,
            // for the vertices, read with each coordinate at its offset.
            std::size_t rowSize = 0;
            std::size_t offset[3] = {};
            for (int k = 0; k < static_cast<int>(e.properties.size()); ++k) {
                if (const int axis = layout.axisOf(e, k); axis >= 0) offset[axis] = rowSize;
                rowSize += sizeOf(e.properties[k].type);
            }
            if (rowSize == 0) continue;
            const std::size_t left = file.size() - std::min(at, file.size());
            if (e.count > left / rowSize) b.cutShort(e, left / rowSize);
            if (&e == layout.vertex) {
                const Type types[3] = {e.properties[layout.coordinate[0]].type,
                                       e.properties[layout.coordinate[1]].type,
                                       e.properties[layout.coordinate[2]].type};
                b.mesh.positions.resize(3 * e.count);
                float* out = b.mesh.positions.data();
                const char* row = data + at;
                if (!swap && types[0] == Type::kFloat32 && types[1] == Type::kFloat32 && types[2] == Type::kFloat32) {
                    // The common layout, kept apart so the loop is three copies.
                    for (std::uint64_t v = 0; v < e.count; ++v, row += rowSize, out += 3)
                        for (int axis = 0; axis < 3; ++axis) std::memcpy(out + axis, row + offset[axis], 4);
                } else {
                    for (std::uint64_t v = 0; v < e.count; ++v, row += rowSize, out += 3)
                        for (int axis = 0; axis < 3; ++axis) out[axis] = coordinateAt(row + offset[axis], types[axis], swap);
                }
            }
            at += e.count * rowSize;
            continue;
        }
        if (&e == layout.face) {
            const std::size_t left = file.size() - std::min(at, file.size());
            b.mesh.faceSizes.reserve(std::min<std::uint64_t>(e.count, left / 4));
            b.mesh.faceCorners.reserve(3 * std::min<std::uint64_t>(e.count, left / 13));
        }
        if (&e == layout.vertex) b.mesh.positions.reserve(3 * std::min<std::uint64_t>(e.count, file.size() / 4));
        if (&e == layout.face && e.properties.size() == 1 && layout.corners == 0 && !swap &&
            sizeOf(e.properties[0].countType) == 1 && sizeOf(e.properties[0].type) == 4) {
            at = b.byteCountedFaces(file, at, e);
            continue;
        }
        for (std::uint64_t row = 0; row < e.count; ++row) {
            float xyz[3] = {};
            for (int k = 0; k < static_cast<int>(e.properties.size()); ++k) {
                const Property& p = e.properties[k];
                const std::size_t size = sizeOf(p.type);
                if (!p.isList()) {
                    if (file.size() - at < size) b.cutShort(e, row);
                    if (const int axis = layout.axisOf(e, k); axis >= 0) xyz[axis] = coordinateAt(data + at, p.type, swap);
                    at += size;
                    continue;
                }
                const std::size_t countSize = sizeOf(p.countType);
                if (file.size() - at < countSize) b.cutShort(e, row);
                const std::int64_t items = integerAt(data + at, p.countType, swap);
                at += countSize;
                if (items < 0)
                    b.damaged(e.name + " " + std::to_string(row) + " has a list of " + std::to_string(items) + " items");
                if (std::uint64_t(items) > (file.size() - at) / size) b.cutShort(e, row);
                if (layout.holdsCorners(e, k)) {
                    b.beginFace();
                    for (std::int64_t i = 0; i < items; ++i) b.corner(integerAt(data + at + i * size, p.type, swap));
                    b.endFace();
                }
                at += items * size;
            }
            if (&e == layout.vertex) b.mesh.positions.insert(b.mesh.positions.end(), xyz, xyz + 3);
        }
    }
}

// ---- ASCII body ------------------------------------------------------------------

void readAscii(std::string_view file, const Header& header, const Layout& layout, Builder& b) {
    std::size_t at = header.bodyStart;
    const auto word = [&](const Element& e, std::uint64_t row) {
        const std::string_view w = MeshText::nextWord(file, at);
        if (w.empty()) b.cutShort(e, row);
        return w;
    };
    const auto notANumber = [&](const Element& e, std::uint64_t row, std::string_view w) {
        b.damaged(e.name + " " + std::to_string(row) + " holds '" + std::string(w.substr(0, 40)) +
                  "' where a number belongs");
    };
    for (const Element& e : header.elements) {
        // An element of no properties takes no words, however many rows.
        if (e.properties.empty()) continue;
        // At least "0 0 0\n" a vertex: the file bounds what is reserved.
        if (&e == layout.vertex) b.mesh.positions.reserve(3 * std::min<std::uint64_t>(e.count, file.size() / 6));
        for (std::uint64_t row = 0; row < e.count; ++row) {
            float xyz[3] = {};
            for (int k = 0; k < static_cast<int>(e.properties.size()); ++k) {
                const Property& p = e.properties[k];
                if (!p.isList()) {
                    const std::string_view w = word(e, row);
                    const int axis = layout.axisOf(e, k);
                    if (axis < 0) continue;
                    float value = 0.0f;
                    double wide = 0.0;
                    std::int64_t whole = 0;
                    bool ok;
                    if (p.type == Type::kFloat32) {
                        ok = MeshText::parseWhole(w, value);
                    } else if (p.type == Type::kFloat64) {
                        ok = MeshText::parseWhole(w, wide);
                        value = narrow(wide);
                    } else {
                        ok = MeshText::parseWhole(w, whole);
                        value = static_cast<float>(static_cast<double>(whole));
                    }
                    if (!ok) notANumber(e, row, w);
                    xyz[axis] = value;
                    continue;
                }
                const std::string_view countWord = word(e, row);
                std::int64_t items = 0;
                if (!MeshText::parseWhole(countWord, items)) notANumber(e, row, countWord);
                if (items < 0)
                    b.damaged(e.name + " " + std::to_string(row) + " has a list of " + std::to_string(items) + " items");
                const bool corners = layout.holdsCorners(e, k);
                if (corners) b.beginFace();
                for (std::int64_t i = 0; i < items; ++i) {
                    const std::string_view w = word(e, row);
                    if (!corners) continue;
                    std::int64_t index = 0;
                    if (!MeshText::parseWhole(w, index)) notANumber(e, row, w);
                    b.corner(index);
                }
                if (corners) b.endFace();
            }
            if (&e == layout.vertex) b.mesh.positions.insert(b.mesh.positions.end(), xyz, xyz + 3);
        }
    }
}

}  // namespace

Mesh read(std::string_view file, const std::string& path) {
    Header header;
    if (const std::string problem = readHeader(file, header); !problem.empty())
        throw CliError("cannot read the mesh '" + path + "': " + problem);
    const Layout layout = layoutOf(header, path);
    Builder builder(layout, path);
    if (header.format == Format::kAscii)
        readAscii(file, header, layout, builder);
    else
        readBinary(file, header, layout, builder);
    return std::move(builder.mesh);
}

}  // namespace gritwell::PlyReader
