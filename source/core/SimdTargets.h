#pragma once
// The instruction sets the vector kernels are compiled for, one attribute per
// SimdLevel above the scalar one. A function carrying one may run only where
// that level is supported (supportedSimdLevel), so each kernel is reached
// through a test of simdLevel() or of a level it was handed.
//
// The build is for x86-64 alone (the top CMakeLists.txt refuses any other
// processor), so SSE2 is the baseline: its intrinsics need no attribute.

#include <immintrin.h>

// SimdLevel::kAvx2: eight float lanes, gathers.
#define GRITWELL_AVX2 __attribute__((target("avx2")))

// SimdLevel::kAvx512: sixteen lanes, with the byte and word operations and
// the byte permutes (VBMI) that level requires of the processor.
#define GRITWELL_AVX512 __attribute__((target("avx512f,avx512bw,avx512vbmi")))
