#pragma once
// static_cast<float>(std::sin(a)), the same bits, mostly without the call.
//
// A short reduction and the classic fdlibm kernel polynomials estimate
// sin(a) in double to within a few parts in 2^50 of the true value, and the
// C library is within an ulp of it. Where every double within 2^-40 of the
// estimate (relative) rounds to the same float, the library's result rounds
// to it as well, and that float is the answer; only the rare estimate that
// close to the midpoint between two floats, and any angle beyond the short
// reduction's range, asks the library.

#include <cmath>

#include "core/FloatToInt.h"

namespace gritwell {

namespace sine_detail {

// pi/2 in four parts, the first three of 33 bits: k times each is exact
// for small k, and the angle's distance to the nearest multiple of pi/2
// keeps its leading bits however small it is.
inline constexpr double kHalfPi1 = 1.57079632673412561417e+00;
inline constexpr double kHalfPi2 = 6.07710050630396597660e-11;
inline constexpr double kHalfPi3 = 2.02226624871116645580e-21;
inline constexpr double kHalfPi4 = 8.47842766036889956997e-32;
inline constexpr double kTwoOverPi = 6.36619772367581382433e-01;

// The kernels' minimax coefficients on [-pi/4, pi/4] (fdlibm, Sun Microsystems 1993).
inline constexpr double S1 = -1.66666666666666324348e-01, S2 = 8.33333333332248946124e-03,
                        S3 = -1.98412698298579493134e-04, S4 = 2.75573137070700676789e-06,
                        S5 = -2.50507602534068634195e-08, S6 = 1.58969099521155010221e-10;
inline constexpr double C1 = 4.16666666666666019037e-02, C2 = -1.38888888888741095749e-03,
                        C3 = 2.48015872894767294178e-05, C4 = -2.75573143513906633035e-07,
                        C5 = 2.08757232129817482790e-09, C6 = -1.13596475577881948265e-11;

inline double sinKernel(double r) {
    const double z = r * r;
    return r + r * z * (S1 + z * (S2 + z * (S3 + z * (S4 + z * (S5 + z * S6)))));
}

inline double cosKernel(double r) {
    const double z = r * r;
    return 1.0 - 0.5 * z + z * z * (C1 + z * (C2 + z * (C3 + z * (C4 + z * (C5 + z * C6)))));
}

// Angles up to this size take the short reduction (quadrant at most 6).
inline constexpr double kLargestAngle = 8.0;

}  // namespace sine_detail

inline float sineToFloat(double a) {
    using namespace sine_detail;
    // The kernel would lose a zero's sign; the sine of a zero is that zero.
    if (a == 0.0) return static_cast<float>(a);
    if (std::fabs(a) <= kLargestAngle) {
        const int k = roundToInt(a * kTwoOverPi);
        const double kd = static_cast<double>(k);
        const double r = (((a - kd * kHalfPi1) - kd * kHalfPi2) - kd * kHalfPi3) - kd * kHalfPi4;
        double s;
        switch (k & 3) {
            case 0: s = sinKernel(r); break;
            case 1: s = cosKernel(r); break;
            case 2: s = -sinKernel(r); break;
            default: s = -cosKernel(r); break;
        }
        const double margin = std::fabs(s) * 0x1p-40;
        const float low = static_cast<float>(s - margin);
        if (low == static_cast<float>(s + margin)) return low;
    }
    return static_cast<float>(std::sin(a));
}

}  // namespace gritwell
