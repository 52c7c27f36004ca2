#pragma once
// A 256-byte table held in four AVX-512 registers and read sixteen lanes at
// a time with VBMI byte permutes: table[i & 255] for every 32-bit lane i.
// Only code compiled for the AVX-512 level may use it.

#include <cstdint>

#include "core/SimdTargets.h"

namespace gritwell {

class ByteTableLanes {
public:
    GRITWELL_AVX512 explicit ByteTableLanes(const std::uint8_t* table)
        : q0_(_mm512_loadu_si512(table)), q1_(_mm512_loadu_si512(table + 64)),
          q2_(_mm512_loadu_si512(table + 128)), q3_(_mm512_loadu_si512(table + 192)) {}

    // The low byte of each lane picks the entry; bit 7 of it chooses between
    // the two register pairs.
    GRITWELL_AVX512 __m512i operator()(__m512i index) const {
        const __m512i bytes = _mm512_castsi128_si512(_mm512_cvtepi32_epi8(index));
        const __m512i low = _mm512_permutex2var_epi8(q0_, bytes, q1_);
        const __m512i high = _mm512_permutex2var_epi8(q2_, bytes, q3_);
        const __m512i looked = _mm512_mask_blend_epi8(_mm512_movepi8_mask(bytes), low, high);
        return _mm512_cvtepu8_epi32(_mm512_castsi512_si128(looked));
    }

private:
    __m512i q0_, q1_, q2_, q3_;
};

}  // namespace gritwell
