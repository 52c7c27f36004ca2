#include "core/SimdLevel.h"

#include <cstdlib>
#include <cstring>
#include <initializer_list>

namespace gritwell {

namespace {

SimdLevel processorLevel() {
#if defined(__x86_64__)
    // libgcc's probe also checks that the operating system saves the wide
    // registers, so a supported level is a usable one.
    __builtin_cpu_init();
    if (__builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
        __builtin_cpu_supports("avx512vbmi"))
        return SimdLevel::kAvx512;
    if (__builtin_cpu_supports("avx2")) return SimdLevel::kAvx2;
#endif
    return SimdLevel::kScalar;
}

SimdLevel requestedLevel(SimdLevel best) {
    const char* wanted = std::getenv("GRITWELL_SIMD");
    if (wanted == nullptr) return best;
    for (SimdLevel level : {SimdLevel::kScalar, SimdLevel::kAvx2, SimdLevel::kAvx512})
        if (std::strcmp(wanted, simdLevelName(level)) == 0) return level < best ? level : best;
    return best;
}

}  // namespace

SimdLevel supportedSimdLevel(SimdLevel wanted) {
    static const SimdLevel best = processorLevel();
    return wanted < best ? wanted : best;
}

SimdLevel simdLevel() {
    static const SimdLevel level = requestedLevel(supportedSimdLevel(SimdLevel::kAvx512));
    return level;
}

const char* simdLevelName(SimdLevel level) {
    switch (level) {
    case SimdLevel::kAvx2: return "avx2";
    case SimdLevel::kAvx512: return "avx512";
    case SimdLevel::kScalar: break;
    }
    return "scalar";
}

}  // namespace gritwell
