#pragma once
// Rounding and small 2-D helpers of the math kit.

namespace gritwell {

// The floor through the processor's round-to-nearest: round(2x - 0.5) >> 1.
// Exact for every x in int range, integers included; INT_MIN >> 1 beyond it.
int Floor(double x);
int TheFloor(double x);  // the twin the cellular noise calls
// The ceiling by the same trick: -(round(-0.5 - 2x) >> 1).
int ceilf_ASM(float x);

// Bilinear blend of four 2-component corners at t = (u, v).
void bilinearInterp(const float* p00, const float* p01, const float* p10, const float* p11,
                    const float* t, float* out);

void polarToCartesian(float r, float theta, float& x, float& y);
void cartesianToPolar(float x, float y, float& r, float& theta);

}  // namespace gritwell
