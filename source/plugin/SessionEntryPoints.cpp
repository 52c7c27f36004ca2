// The host's session: open a generator from a state record, evaluate it at
// batches of points, close it. Nothing here reports failure to the host:
// unknown names, other versions and calls outside a session all return 1.0
// and leave the session as it was.

#include <dlfcn.h>

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "core/SimdLevel.h"
#include "core/Texture3D.h"
#include "plugin/HostInterface.h"
#include "textures/TextureFactory.h"

#define GRITWELL_EXPORT __attribute__((visibility("default")))

using gritwell::Texture3D;

namespace {
// The one current generator of the loaded library; null outside a session.
Texture3D* t3D = nullptr;

// A command-line host of ours may ask for an instruction set (see
// kRequestedSimdLevelName), for comparing levels through the plug-in as a
// host loads it. It does so through a variable of its own executable rather
// than the environment, which the library never reads, or an eighth export,
// which no host application may see. A host application defines no such
// variable, and the best level stands.
void followRequestedSimdLevel() {
    static const int* const requested = static_cast<const int*>(dlsym(RTLD_DEFAULT, kRequestedSimdLevelName));
    if (requested == nullptr) return;
    const int level = *requested;
    if (level >= static_cast<int>(gritwell::SimdLevel::kScalar) &&
        level <= static_cast<int>(gritwell::SimdLevel::kAvx512))
        gritwell::setSimdLevel(static_cast<gritwell::SimdLevel>(level));
}

bool floatAligned(const char* p) { return reinterpret_cast<std::uintptr_t>(p) % alignof(float) == 0; }

// The host's blocks usually start where a float may, and are evaluated in
// place. One that does not (the host owes us no alignment) goes through
// aligned copies a chunk at a time, so no generator ever reads or writes a
// float at an address it may not.
void evaluateAnywhere(Texture3D& texture, const char* points, int n, char* out) {
    if (floatAligned(points) && floatAligned(out)) {
        texture(reinterpret_cast<const float*>(points), n, reinterpret_cast<float*>(out));
        return;
    }
    constexpr int kChunk = 1024;
    float chunkPoints[3 * kChunk], chunkOut[kChunk];
    for (std::int64_t start = 0; start < n; start += kChunk) {
        const int count = static_cast<int>(std::min<std::int64_t>(kChunk, n - start));
        std::memcpy(chunkPoints, points + 3 * sizeof(float) * start, 3 * sizeof(float) * count);
        texture(chunkPoints, count, chunkOut);
        std::memcpy(out + sizeof(float) * start, chunkOut, sizeof(float) * count);
    }
}
}  // namespace

extern "C" {

GRITWELL_EXPORT float beginSession(char*, double, char* record, int, char* transforms, int,
                                   void*) {
    if (record == nullptr) return 1.0f;
    Texture3D* texture = gritwell::TextureFactory::create(Texture3D::recordName(record));
    if (texture == nullptr) return 1.0f;
    followRequestedSimdLevel();
    // A session opened twice without endSession abandons the first
    // generator: the host pairs its calls, and freeing here could pull the
    // generator from under a host that does not.
    t3D = texture;
    t3D->setStateFromDescription(record);
    if (transforms != nullptr) {
        int flags;
        std::memcpy(&flags, transforms, sizeof flags);
        t3D->setFlags(flags);
    }
    return 1.0f;
}

GRITWELL_EXPORT float continueSession(char*, double, char* out, int, char* pointsBlock, int,
                                      void*) {
    if (pointsBlock == nullptr) return 1.0f;
    int n;
    std::memcpy(&n, pointsBlock, sizeof n);
    if (t3D == nullptr || out == nullptr) return 1.0f;
    evaluateAnywhere(*t3D, pointsBlock + sizeof n, n, out);
    return 1.0f;
}

GRITWELL_EXPORT float continueSessionOne(char* point, double, char*, int, char*, int, void*) {
    if (t3D == nullptr || point == nullptr) return 1.0f;
    float p[3];
    std::memcpy(p, point, sizeof p);
    return (*t3D)(p);
}

GRITWELL_EXPORT float endSession(char*, double, char*, int, char*, int, void*) {
    Texture3D::release(t3D);
    t3D = nullptr;
    return 1.0f;
}

}  // extern "C"
