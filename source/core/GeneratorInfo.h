#pragma once
// What tools, tests and docs know about a generator without a hand-written
// switch: its name, version, record size and a table of its record fields.

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iosfwd>
#include <span>
#include <string_view>

namespace gritwell {

class Texture3D;

enum class FieldType : std::uint8_t { Int32, Float, Bool };

struct FieldInfo {
    std::string_view name;  // the accessor stem: "depth" for getDepth/setDepth
    std::size_t offset;     // byte offset in the record
    FieldType type;
};

struct GeneratorInfo {
    std::string_view name;
    std::string_view summary;  // what it draws, in one line
    int majorVersion;
    int minorVersion;
    int recordSize;
    std::span<const FieldInfo> fields;
    // The older major versions whose records the generator converts to its
    // own; a record of any other version leaves it as it was.
    std::span<const int> olderMajorVersions;
    Texture3D* (*create)();  // a new generator at its defaults
    // The generator's text stream operators, for a generator of this kind.
    std::ostream& (*writeText)(std::ostream&, const Texture3D&);
    std::istream& (*readText)(std::istream&, Texture3D&);

    const FieldInfo* field(std::string_view fieldName) const {
        for (const FieldInfo& f : fields)
            if (f.name == fieldName) return &f;
        return nullptr;
    }
    bool convertsMajorVersion(int major) const {
        for (int older : olderMajorVersions)
            if (older == major) return true;
        return false;
    }
};

constexpr std::size_t fieldWidth(FieldType type) { return type == FieldType::Bool ? 1 : 4; }
constexpr std::string_view fieldTypeName(FieldType type) {
    switch (type) {
        case FieldType::Int32: return "int32";
        case FieldType::Float: return "float";
        case FieldType::Bool: return "bool";
    }
    return "?";
}

// Reads and writes of one field in a record's bytes, by its table entry.
inline float readFloatField(const void* record, const FieldInfo& f) {
    float v;
    std::memcpy(&v, static_cast<const char*>(record) + f.offset, sizeof v);
    return v;
}
inline std::int32_t readIntField(const void* record, const FieldInfo& f) {
    std::int32_t v;
    std::memcpy(&v, static_cast<const char*>(record) + f.offset, sizeof v);
    return v;
}
inline bool readBoolField(const void* record, const FieldInfo& f) {
    return static_cast<const unsigned char*>(record)[f.offset] != 0;
}
inline void writeFloatField(void* record, const FieldInfo& f, float v) {
    std::memcpy(static_cast<char*>(record) + f.offset, &v, sizeof v);
}
inline void writeIntField(void* record, const FieldInfo& f, std::int32_t v) {
    std::memcpy(static_cast<char*>(record) + f.offset, &v, sizeof v);
}
inline void writeBoolField(void* record, const FieldInfo& f, bool v) {
    static_cast<unsigned char*>(record)[f.offset] = v ? 1 : 0;
}

}  // namespace gritwell
