#pragma once
// The octave loop the fractal sums share: sample, weight, scale, repeat
// while the octave number is below `octaves` (a float, so 2.5 runs three
// full octaves and 0 or less runs none).

#include <array>
#include <cstring>

#include "noise/Perlin.h"

namespace gritwell {

// `add(sum, sample, amplitude)` folds one octave into the sum. The position
// is the caller's copy. Once an octave leaves sum, amplitude and position
// bit for bit as they were, every later octave would too; the loop stops
// there, so a damaged record's huge octave count costs a bounded number of
// octaves and gives the bits the full loop would.
template <std::size_t N, class Sample, class Add>
float fractalSum(std::array<float, N> position, float octaves, float lacunarity, float gain,
                 Sample sample, Add add) {
    float sum = 0.0f;
    float amplitude = 1.0f;
    for (int i = 0; static_cast<float>(i) < octaves; ++i) {
        const float before[2] = {sum, amplitude};
        const std::array<float, N> from = position;
        sum = add(sum, sample(position), amplitude);
        amplitude *= gain;
        for (float& c : position) c *= lacunarity;
        const float after[2] = {sum, amplitude};
        if (std::memcmp(before, after, sizeof before) == 0 &&
            std::memcmp(from.data(), position.data(), sizeof(float) * N) == 0)
            break;
        if (i == 2147483647) break;  // no octave number past the int range
    }
    return sum;
}

// The lattice gradient noise at a 1-, 2- or 3-D position: what FBM and
// turbulence sum.
template <std::size_t N>
float latticeNoise(const std::array<float, N>& p) {
    if constexpr (N == 1) return Perlin::noise(p[0]);
    else if constexpr (N == 2) return Perlin::noise(p[0], p[1]);
    else return Perlin::noise(p[0], p[1], p[2]);
}

}  // namespace gritwell
