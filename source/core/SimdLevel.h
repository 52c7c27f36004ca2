#pragma once
// Which vector instruction set the batch paths use.
//
// Batch kernels exist for AVX2 and for AVX-512 with byte permutes (VBMI);
// every other x86-64 processor takes the scalar level, which is plain code
// and, where a batch path has them, four-lane kernels on SSE2, the baseline
// of every x86-64. All levels give the same bits, so the choice only changes
// speed.

#include <atomic>
#include <optional>
#include <string_view>

namespace gritwell {

enum class SimdLevel { kScalar, kAvx2, kAvx512 };

namespace detail {
// The chosen level, or -1 until the first read or setSimdLevel.
extern std::atomic<int> chosenSimdLevel;
SimdLevel chooseBestSimdLevel();
}  // namespace detail

// The level the batch paths run: the best this processor and operating
// system run, unless setSimdLevel chose another. Inline, one load and a
// test, because the one-point noise asks on every call.
inline SimdLevel simdLevel() {
    const int level = detail::chosenSimdLevel.load(std::memory_order_relaxed);
    return level >= 0 ? static_cast<SimdLevel>(level) : detail::chooseBestSimdLevel();
}

// Holds the batch paths to `level`, or to the best below it that this
// processor runs, from the next evaluation on: for timing and comparing one
// level against another. Nothing else chooses the level; the library reads
// no environment.
void setSimdLevel(SimdLevel level);

// The level a request can really run here: `wanted`, or the best below it.
SimdLevel supportedSimdLevel(SimdLevel wanted);

// "scalar", "avx2" or "avx512".
const char* simdLevelName(SimdLevel level);

// The level one of those names spells; nothing for any other text.
std::optional<SimdLevel> simdLevelFromName(std::string_view name);

}  // namespace gritwell
