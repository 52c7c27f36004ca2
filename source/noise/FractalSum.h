#pragma once
// The octave loop the fractal sums share: sample, weight, scale, repeat
// while the octave number is below `octaves` (a float, so 2.5 runs three
// full octaves and 0 or less runs none).

#include <array>
#include <cstring>

#include "noise/Perlin.h"

namespace gritwell {

// At most this many octaves are summed. A record from the dialog asks for a
// handful; only a damaged one asks for more, and with a lacunarity of -1 or a
// gain near 1 its sum may never settle. Past 1024 octaves of weight gain^k
// nothing a real record holds still shows in a float, and the host must not
// hang on one point.
inline constexpr int kMaxOctaves = 1024;

// `add(sum, sample, amplitude)` folds one octave into the sum. The position
// is the caller's copy. Once an octave leaves sum, amplitude and position
// bit for bit as they were, every later octave would too, so the loop stops
// there with the bits of the full loop; it also stops at kMaxOctaves.
template <std::size_t N, class Sample, class Add>
float fractalSum(std::array<float, N> position, float octaves, float lacunarity, float gain,
                 Sample sample, Add add) {
    float sum = 0.0f;
    float amplitude = 1.0f;
    for (int i = 0; i < kMaxOctaves && static_cast<float>(i) < octaves; ++i) {
        const float before[2] = {sum, amplitude};
        const std::array<float, N> from = position;
        sum = add(sum, sample(position), amplitude);
        amplitude *= gain;
        for (float& c : position) c *= lacunarity;
        const float after[2] = {sum, amplitude};
        if (std::memcmp(before, after, sizeof before) == 0 &&
            std::memcmp(from.data(), position.data(), sizeof(float) * N) == 0)
            break;
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
