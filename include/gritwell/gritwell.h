#pragma once
// Gritwell: procedural texture generators for programs other than a host.
//
// This is the whole public C++ interface of libgritwell (shared or static).
// A texture is one generator and its state record: the same record a host
// stores, adopted by the same rules as the host's session, evaluated by the
// same code, so a record gives here the bits it gives inside the host.
//
//   #include <gritwell/gritwell.h>
//   gritwell::Status status;
//   gritwell::Texture brick = gritwell::Texture::fromName("Brick", &status);
//   brick.set("brickWidth", 0.5f);
//   std::vector<float> xyz = {0.1f, 0.2f, 0.3f,  1.5f, 0.25f, 0.3f};
//   float values[2];
//   brick.evaluate(xyz.data(), 2, values);   // values in about 0..1
//
// Errors are values: every call that can fail returns a Status (or fills
// one) whose message says what was wrong; nothing here throws for bad input
// or aborts the process.
//
// Threads: distinct Texture objects may be used from different threads at
// the same time (copies included); one object must not be modified while
// another thread uses it. The free functions may be called from any thread.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#define GRITWELL_API __attribute__((visibility("default")))

namespace gritwell {

// Bumped whenever a declaration below changes incompatibly.
inline constexpr int kApiVersion = 1;

// ---- What the generators are ----------------------------------------------

// The type of a record field: a little-endian 32-bit integer, a 32-bit float,
// or a one-byte bool (any non-zero byte reads as true).
enum class ValueType : std::uint8_t { Int32, Float, Bool };

// A field's value, of exactly its ValueType.
using Value = std::variant<std::int32_t, float, bool>;

struct FieldDesc {
    std::string name;  // "brickWidth"
    ValueType type;
    int offset;        // byte offset in the record
};

struct GeneratorDesc {
    std::string name;     // "Brick": the name in the record and for Texture::fromName
    std::string summary;  // what it draws, in one line
    int majorVersion;
    int minorVersion;
    int recordSize;       // bytes of a record of this version, header included
    std::vector<FieldDesc> fields;             // in record order
    std::vector<int> convertedMajorVersions;   // older records it reads
};

// Every generator a host session opens, in the host's order.
GRITWELL_API std::vector<GeneratorDesc> generators();

// The type's name as records and tools print it: "int32", "float", "bool".
GRITWELL_API std::string_view valueTypeName(ValueType type);

// ---- Errors ----------------------------------------------------------------

enum class Errc : int {
    ok = 0,
    unknownGenerator,  // no generator of that name
    unknownField,      // the generator has no field of that name
    wrongType,         // a value of another type than the field's
    badRecord,         // record bytes of the wrong size or naming no generator
    badArgument,       // a null array, a size out of range, an empty Texture
};

struct Status {
    Errc code = Errc::ok;
    std::string message;  // empty when ok

    bool ok() const noexcept { return code == Errc::ok; }
    explicit operator bool() const noexcept { return ok(); }
};

// ---- Textures --------------------------------------------------------------

class GRITWELL_API Texture {
public:
    // An empty texture: every call on it but assignment reports badArgument.
    Texture() noexcept;
    ~Texture();
    Texture(const Texture& other);
    Texture& operator=(const Texture& other);
    Texture(Texture&& other) noexcept;
    Texture& operator=(Texture&& other) noexcept;

    // The generator of this exact (case-sensitive) name at its defaults.
    // On failure the texture is empty and `status`, when given, says why.
    static Texture fromName(std::string_view name, Status* status = nullptr);

    // The generator the record names, adopting the record as the host's
    // session does: a record of the generator's own version is taken whole,
    // one of an older version it converts is converted, and one of any other
    // version leaves the defaults. `size` must be the record's size as its
    // byte 0 gives it, at least the 36-byte header, and for the generator's
    // own version exactly its recordSize.
    static Texture fromRecord(const void* bytes, std::size_t size, Status* status = nullptr);

    bool empty() const noexcept;
    explicit operator bool() const noexcept { return !empty(); }

    // The generator's name and description; "" and an empty description for
    // an empty texture.
    std::string name() const;
    GeneratorDesc generator() const;

    // A field by name, of the field's own type (a float field takes 0.5f, not
    // 0.5); neither clamps nor checks the range, as records never are.
    Status get(std::string_view field, Value& value) const;
    Status set(std::string_view field, const Value& value);

    // The host's flags word (default 2); bits of value 4 or 8 evaluate in the
    // x/y plane, reading no z.
    int flags() const noexcept;
    void setFlags(int flags) noexcept;

    // The state record's bytes (recordSize of them), as a host would store it.
    std::vector<unsigned char> record() const;

    // Values at n points, interleaved x0 y0 z0 x1 y1 z1 ..., into out[0..n-1].
    Status evaluate(const float* xyz, std::size_t n, float* out) const;
    // The same from three coordinate arrays; the same bits.
    Status evaluate(const float* x, const float* y, const float* z, std::size_t n, float* out) const;

    // The slice z = const of the square [0, extent]², size × size samples at
    // pixel centres, row-major, top row first (x to the right, y up): the
    // picture `gritwell render` draws. out holds size * size floats; size is
    // 1 to kLargestSlice.
    Status renderSlice(int size, float z, float extent, float* out) const;
    static constexpr int kLargestSlice = 16384;

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace gritwell
