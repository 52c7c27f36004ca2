#include "textures/AbsoluteOctaveSum.h"

#include <cmath>

#include "noise/Perlin.h"
#include "noise/PerlinBatch.h"

namespace gritwell {

namespace {
constexpr int kOctaves = 6;
constexpr int kBlock = 256;

// Octave by octave: the sum after the noise n at frequency f, and the next
// frequency.
[[gnu::always_inline]] inline float octaveTerm(float sum, float n, double weight, float f) {
    const float unit = static_cast<float>(0.5 + static_cast<double>(n) / 2.0);
    return static_cast<float>(sum + std::fabs(0.5 - static_cast<double>(unit)) * weight / f);
}
[[gnu::always_inline]] inline float nextFrequency(float f) { return f * 2.0f; }
}  // namespace

float absoluteOctaveSum(float qx, float qy, float qz, bool planar, float firstFrequency, double weight) {
    float sum = 0.0f;
    float f = firstFrequency;
    // The counter is compared as a double, as stored records were always evaluated.
    for (int i = 0; static_cast<double>(i) < kOctaves; ++i) {
        const float n = planar ? Perlin::noise(f * qx, f * qy) : Perlin::noise(f * qx, f * qy, f * qz);
        sum = octaveTerm(sum, n, weight, f);
        f = nextFrequency(f);
    }
    return sum;
}

void absoluteOctaveSum(const float* qx, const float* qy, const float* qz, int n, bool planar, float firstFrequency,
                       double weight, float* out) {
    float x[kBlock], y[kBlock], z[kBlock], sample[kBlock];
    for (int start = 0; start < n; start += kBlock) {
        const int m = n - start < kBlock ? n - start : kBlock;
        float* sum = out + start;
        for (int i = 0; i < m; ++i) sum[i] = 0.0f;
        float f = firstFrequency;
        for (int octave = 0; octave < kOctaves; ++octave) {
            for (int i = 0; i < m; ++i) {
                x[i] = f * qx[start + i];
                y[i] = f * qy[start + i];
            }
            if (planar) {
                PerlinBatch::noise(x, y, m, sample);
            } else {
                for (int i = 0; i < m; ++i) z[i] = f * qz[start + i];
                PerlinBatch::noise(x, y, z, m, sample);
            }
            for (int i = 0; i < m; ++i) sum[i] = octaveTerm(sum[i], sample[i], weight, f);
            f = nextFrequency(f);
        }
    }
}

}  // namespace gritwell
