#include "core/SimdLevel.h"

#include <atomic>
#include <initializer_list>

namespace gritwell {

namespace {

SimdLevel processorLevel() {
    // libgcc's probe also checks that the operating system saves the wide
    // registers, so a supported level is a usable one. The AVX-512 level
    // asks for the features its kernels are compiled for (SimdTargets.h).
    __builtin_cpu_init();
    if (__builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
        __builtin_cpu_supports("avx512vbmi"))
        return SimdLevel::kAvx512;
    if (__builtin_cpu_supports("avx2")) return SimdLevel::kAvx2;
    return SimdLevel::kScalar;
}

constexpr int kUnchosen = -1;

}  // namespace

// A constant initialiser, so it holds before any static initialiser asks.
std::atomic<int> detail::chosenSimdLevel{kUnchosen};

SimdLevel supportedSimdLevel(SimdLevel wanted) {
    static const SimdLevel best = processorLevel();
    return wanted < best ? wanted : best;
}

// The first read picks the best level, unless setSimdLevel got there first.
SimdLevel detail::chooseBestSimdLevel() {
    const SimdLevel best = supportedSimdLevel(SimdLevel::kAvx512);
    int expected = kUnchosen;
    if (detail::chosenSimdLevel.compare_exchange_strong(expected, static_cast<int>(best),
                                                        std::memory_order_relaxed))
        return best;
    return static_cast<SimdLevel>(expected);
}

void setSimdLevel(SimdLevel level) {
    detail::chosenSimdLevel.store(static_cast<int>(supportedSimdLevel(level)), std::memory_order_relaxed);
}

const char* simdLevelName(SimdLevel level) {
    switch (level) {
    case SimdLevel::kAvx2: return "avx2";
    case SimdLevel::kAvx512: return "avx512";
    case SimdLevel::kScalar: break;
    }
    return "scalar";
}

std::optional<SimdLevel> simdLevelFromName(std::string_view name) {
    for (SimdLevel level : {SimdLevel::kScalar, SimdLevel::kAvx2, SimdLevel::kAvx512})
        if (name == simdLevelName(level)) return level;
    return std::nullopt;
}

}  // namespace gritwell
