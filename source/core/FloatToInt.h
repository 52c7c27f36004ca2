#pragma once
// The one place where a float or double becomes an integer (FloatToIntLanes.h
// holds the same rule lane by lane for the batch kernels).
//
// A record from a damaged file, or a point far out on a mesh, can hand us NaN,
// an infinity or a value beyond the int range. A plain C++ conversion of such
// a value is undefined behaviour; these helpers return what the x86
// conversion instructions return instead (the "integer indefinite" INT_MIN),
// so results stay the same bits as stored records always produced.

#include <climits>
#include <cmath>
#include <cstdint>

#include <emmintrin.h>

namespace gritwell {

// Truncation toward zero (cvttsd2si): INT_MIN for NaN and out-of-range values.
constexpr int truncToInt(double x) {
    // Both bounds are exact doubles; every x strictly between them truncates
    // into range. NaN fails both comparisons.
    if (x > -2147483649.0 && x < 2147483648.0) return static_cast<int>(x);
    return INT_MIN;
}

// Round to nearest, ties to even: INT_MIN for NaN and out-of-range values.
// The instruction itself (cvtsd2si, in the default rounding mode), which
// returns exactly that; the library's nearbyint saves and restores the
// floating-point environment around it, several times the cost.
inline int roundToInt(double x) { return _mm_cvtsd_si32(_mm_set_sd(x)); }

// Two's-complement wrap-around arithmetic, as the 32-bit hashes and cell
// sums were always computed; signed overflow would be undefined.
constexpr int wrapAdd(int a, int b) {
    return static_cast<int>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
}
constexpr int wrapMul(int a, int b) {
    return static_cast<int>(static_cast<std::uint32_t>(a) * static_cast<std::uint32_t>(b));
}

// The cell index of a coordinate: truncation toward zero, then one less for
// negative values. An exactly negative integer -n therefore falls in cell
// -n - 1, one below its floor; stored records depend on where those seams
// lie, so this is kept and used wherever a cell of a coordinate is taken.
constexpr int cellIndex(double v) {
    const int i = truncToInt(v);
    return v < 0.0 ? wrapAdd(i, -1) : i;
}

// Mathematical parity: -1 is odd.
constexpr bool isEven(int i) { return (i & 1) == 0; }

}  // namespace gritwell
