#pragma once
// The octave loop of Simple Marble and Granite: each octave samples the
// lattice gradient noise at frequency f, folds it into the sum, and steps f.
// A generator names its three steps in a type with static members:
//   at(c, f)      where the octave at frequency f samples coordinate c
//   add(sum, n, f) the sum after the octave's noise n
//   next(f)       the next octave's frequency
//
// Sum and frequency alone decide the next octave. Once one leaves both bit
// for bit as they were (the frequency has overflowed or reached 0, so every
// later octave adds nothing or NaN to the same NaN), every later one would
// too: the loop stops there with the bits the full loop would give, and a
// damaged record's huge count ends within a few hundred octaves.

#include <cstdint>

#include "core/SameBits.h"
#include "noise/OctaveLanes.h"
#include "noise/Perlin.h"
#include "noise/PerlinBatch.h"

namespace gritwell {

// The octaves of one point for octaveLaneSum: the frequency is the state.
template <class Steps>
struct SettlingOctaves {
    using State = float;
    bool planar;
    std::int32_t count;
    float x, y, z;
    bool more(int i) const { return i < count; }
    void place(float f, float& sx, float& sy, float& sz) const {
        sx = Steps::at(x, f);
        sy = Steps::at(y, f);
        sz = Steps::at(z, f);
    }
    static float next(float f) { return Steps::next(f); }
    static float add(float sum, float n, float f) { return Steps::add(sum, n, f); }
    static bool same(float a, float b) { return sameBits(a, b); }
};

// The sum at one point; the plane samples the 2-D noise of x and y.
template <class Steps>
float settlingOctaveSum(std::int32_t octaves, float f, bool planar, float x, float y, float z) {
    const SettlingOctaves<Steps> lanes{planar, octaves, x, y, z};
    if (octaveLanesPay(lanes)) return octaveLaneSum(lanes, f);
    float sum = 0.0f;
    for (std::int32_t i = 0; i < octaves; ++i) {
        const float sx = Steps::at(x, f);
        const float sy = Steps::at(y, f);
        const float n = planar ? Perlin::noise(sx, sy) : Perlin::noise(sx, sy, Steps::at(z, f));
        const float s = Steps::add(sum, n, f);
        const float next = Steps::next(f);
        const bool settled = sameBits(s, sum) && sameBits(next, f);
        sum = s;
        f = next;
        if (settled) break;
    }
    return sum;
}

// The sum at up to kBlock points at once, the noise across points: out[i]
// is settlingOctaveSum at (x[i], y[i], z[i]), bit for bit. The pass runs
// until every point has settled, and settled points keep their bits.
template <class Steps, int kBlock>
void settlingOctaveSum(std::int32_t octaves, float f, bool planar, const float* x, const float* y, const float* z,
                       int n, float* out) {
    float sx[kBlock], sy[kBlock], sz[kBlock], sample[kBlock];
    float* sum = out;
    for (int j = 0; j < n; ++j) sum[j] = 0.0f;
    for (std::int32_t i = 0; i < octaves; ++i) {
        for (int j = 0; j < n; ++j) {
            sx[j] = Steps::at(x[j], f);
            sy[j] = Steps::at(y[j], f);
            sz[j] = Steps::at(z[j], f);
        }
        if (planar)
            PerlinBatch::noise(sx, sy, n, sample);
        else
            PerlinBatch::noise(sx, sy, sz, n, sample);
        bool changed = false;
        for (int j = 0; j < n; ++j) {
            const float s = Steps::add(sum[j], sample[j], f);
            changed |= !sameBits(s, sum[j]);
            sum[j] = s;
        }
        const float next = Steps::next(f);
        if (!changed && sameBits(next, f)) break;
        f = next;
    }
}

}  // namespace gritwell
