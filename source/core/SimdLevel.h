#pragma once
// Which vector instruction set the batch paths use on this processor.
//
// Batch kernels exist for AVX2 and for AVX-512 with byte permutes (VBMI);
// every other x86-64 processor takes the scalar path. All levels give the
// same bits, so the choice only changes speed.

namespace gritwell {

enum class SimdLevel { kScalar, kAvx2, kAvx512 };

// The best level this processor and operating system run. GRITWELL_SIMD
// (scalar, avx2 or avx512) in the environment lowers it, never raises it: for
// timing one level against another. Read once, on first use.
SimdLevel simdLevel();

// The level a request can really run here: `wanted`, or the best below it.
SimdLevel supportedSimdLevel(SimdLevel wanted);

// "scalar", "avx2" or "avx512".
const char* simdLevelName(SimdLevel level);

}  // namespace gritwell
