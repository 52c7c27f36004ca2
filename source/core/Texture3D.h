#pragma once
// Texture3D: the base of every generator, as the host's session sees it.

#include <memory>
#include <string>

#include "core/BaseData.h"

namespace gritwell {

class Texture3D {
public:
    Texture3D() = default;
    Texture3D(const Texture3D&) = default;
    Texture3D& operator=(const Texture3D&) = default;

    // The four virtual operations, in the host's slot order. There is
    // deliberately no virtual destructor: owners free generators through
    // release(), which runs only this base destructor, so generators keep
    // all their state as plain data.
    virtual float operator()(const float* p);                      // value at p[0..2]
    virtual void operator()(const float* points, int n, float* out);  // n packed points
    virtual void getDescription(char* out);                        // writes the record
    virtual void setStateFromDescription(const char* in);          // adopts a record

    void setFlags(int flags) { flags_ = flags; }
    int flags() const { return flags_; }

    // Header fields of any record; versions are signed bytes.
    static int majorVersion(const char* record);
    static int minorVersion(const char* record);
    static bool versionsMatch(const char* record, const BaseData& current);
    // The name in bytes 1..32, never read past byte 32 even when unterminated.
    static std::string recordName(const char* record);

    // Ends a generator's life the way the host's session always has: the base
    // destructor, then the memory.
    static void release(Texture3D* texture);

protected:
    ~Texture3D() = default;

private:
    int flags_ = 2;
};

// The bits of value 4 and 8 ask for evaluation in the x/y plane.
constexpr bool isPlanar(int flags) { return (flags & 12) != 0; }

struct Texture3DRelease {
    void operator()(Texture3D* t) const { Texture3D::release(t); }
};
using TexturePtr = std::unique_ptr<Texture3D, Texture3DRelease>;

}  // namespace gritwell
