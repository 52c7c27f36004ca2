#pragma once
// One point's octave loop over the lattice gradient noise, its octaves'
// samples taken as lanes. Where an octave samples at a place its loop state
// alone decides (position times lacunarity, frequency times its step), never one
// an earlier sample moved, the samples of a run of octaves are independent:
// one step of the batch kernels takes them all, and the fold then runs in
// octave order with the loop's own steps and stop rule.
//
// A step costs about as much as six single-point samples, so a sum takes
// this path only when it runs more octaves than that
// (PerlinBatch::fewestForAStep, octaveLanesPay) and keeps its plain loop
// otherwise.
//
// A sum names its octaves in a type with:
//   State                         what moves from octave to octave
//   bool planar                   2-D noise of x and y; else 3-D
//   bool more(int i)              whether octave i runs at all (true for a
//                                 prefix of the octaves)
//   void place(s, &x, &y, &z)     where the octave in state s samples
//   State next(s)                 the following octave's state
//   float add(sum, sample, s)     the sum after the octave in state s
//   static bool same(a, b)        states equal bit for bit
// Once an octave leaves sum and state bit for bit as they were, every later
// one would too, so the loop stops there with the bits of the full loop.
// The state is plain floats, so its chain stays in registers.

#include "core/SameBits.h"
#include "core/SimdLevel.h"
#include "noise/PerlinBatch.h"

namespace gritwell {

// Whether the lanes are worth a step on this processor's level for a sum of
// these octaves.
template <class Octaves>
bool octaveLanesPay(const Octaves& octaves) {
    const SimdLevel level = simdLevel();
    return PerlinBatch::lanes(level) > 1 && octaves.more(PerlinBatch::fewestForAStep(level) - 1);
}

template <class Octaves>
float octaveLaneSum(const Octaves& octaves, typename Octaves::State state) {
    using State = typename Octaves::State;
    constexpr int kMax = PerlinBatch::kMaxLanes;
    const SimdLevel level = simdLevel();
    const int lanes = PerlinBatch::lanes(level);
    // Lanes past the loop's end sample the origin and are never folded.
    float x[kMax] = {}, y[kMax] = {}, z[kMax] = {}, sample[kMax];
    State states[kMax + 1];
    float sum = 0.0f;
    for (int i = 0; octaves.more(i);) {
        int m = 0;
        for (; m < lanes && octaves.more(i + m); ++m) {
            states[m] = state;
            octaves.place(state, x[m], y[m], z[m]);
            state = octaves.next(state);
        }
        states[m] = state;
        if (octaves.planar)
            PerlinBatch::noise(level, x, y, lanes, sample);
        else
            PerlinBatch::noise(level, x, y, z, lanes, sample);
        for (int j = 0; j < m; ++j) {
            const float s = octaves.add(sum, sample[j], states[j]);
            const bool settled = sameBits(s, sum) && Octaves::same(states[j + 1], states[j]);
            sum = s;
            if (settled) return sum;
        }
        i += m;
    }
    return sum;
}

}  // namespace gritwell
