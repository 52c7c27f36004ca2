#pragma once
// The octave loop the fractal sums share: sample, weight, scale, repeat
// while the octave number is below `octaves` (a float, so 2.5 runs three
// full octaves and 0 or less runs none).

#include <array>
#include <cstring>

#include "core/SameBits.h"
#include "noise/OctaveLanes.h"
#include "noise/Perlin.h"
#include "noise/PerlinBatch.h"

namespace gritwell {

// At most this many octaves are summed. A record from the dialog asks for a
// handful; only a damaged one asks for more, and with a lacunarity of -1 or a
// gain near 1 its sum may never settle. Past 1024 octaves of weight gain^k
// nothing a real record holds still shows in a float, and the host must not
// hang on one point.
inline constexpr int kMaxOctaves = 1024;

// The usual fold: the sample at its octave's weight. A function object, not
// a function, so each sum's loop inlines it.
inline constexpr auto addWeighted = [](float sum, float sample, float amplitude) { return sum + sample * amplitude; };

// `add(sum, sample, amplitude)` folds one octave into the sum; the first
// octave's amplitude is `amplitude`. The position is the caller's copy. Once
// an octave leaves sum, amplitude and position bit for bit as they were,
// every later octave would too, so the loop stops there with the bits of the
// full loop; it also stops at kMaxOctaves.
template <std::size_t N, class Sample, class Add>
float fractalSum(std::array<float, N> position, float octaves, float lacunarity, float gain,
                 Sample sample, Add add, float amplitude = 1.0f) {
    float sum = 0.0f;
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

// One octave over a block: each point's sum takes the sample, and its
// position moves by the lacunarity (z null in the plane). True if any
// point changed. The two forms are separate loops, each branch-free, and
// always inlined: Perlin Noise's batch sum once kept a copy of this loop
// because calling it measured 28 ns a point against the copy's 21; inlined,
// it runs at the copy's speed.
template <class Add>
[[gnu::always_inline]] inline bool fractalOctave(float* x, float* y, float* z, int m, const float* sample,
                                                 float amplitude, float lacunarity, Add add, float* sum) {
    bool changed = false;
    if (z) {
        for (int i = 0; i < m; ++i) {
            const float s = add(sum[i], sample[i], amplitude);
            const float nx = x[i] * lacunarity, ny = y[i] * lacunarity, nz = z[i] * lacunarity;
            const float before[4] = {sum[i], x[i], y[i], z[i]};
            const float after[4] = {s, nx, ny, nz};
            changed |= std::memcmp(before, after, sizeof before) != 0;
            sum[i] = s;
            x[i] = nx;
            y[i] = ny;
            z[i] = nz;
        }
    } else {
        for (int i = 0; i < m; ++i) {
            const float s = add(sum[i], sample[i], amplitude);
            const float nx = x[i] * lacunarity, ny = y[i] * lacunarity;
            const float before[3] = {sum[i], x[i], y[i]};
            const float after[3] = {s, nx, ny};
            changed |= std::memcmp(before, after, sizeof before) != 0;
            sum[i] = s;
            x[i] = nx;
            y[i] = ny;
        }
    }
    return changed;
}

// fractalSum over the lattice noise for n points at once: out[i] is
// fractalSum<3>({x[i], y[i], z[i]}, ...) with latticeNoise<3>, or, with z
// null, fractalSum<2>({x[i], y[i]}, ...) with latticeNoise<2>, bit for bit,
// the first octave at firstAmplitude. x, y and z are scratch and come back
// scaled. A point whose octave left it unchanged would be left unchanged by
// every later one, so the pass runs until every point has stopped and the
// finished ones keep their bits.
template <class Add>
void fractalSumBlock(float* x, float* y, float* z, int n, float octaves, float lacunarity, float gain,
                     float firstAmplitude, Add add, float* out) {
    constexpr int kBlock = 256;
    for (int start = 0; start < n; start += kBlock) {
        const int m = n - start < kBlock ? n - start : kBlock;
        float* bx = x + start;
        float* by = y + start;
        float* bz = z ? z + start : nullptr;
        float* sum = out + start;
        for (int i = 0; i < m; ++i) sum[i] = 0.0f;
        float amplitude = firstAmplitude;
        float sample[kBlock];
        for (int o = 0; o < kMaxOctaves && static_cast<float>(o) < octaves; ++o) {
            if (bz)
                PerlinBatch::noise(bx, by, bz, m, sample);
            else
                PerlinBatch::noise(bx, by, m, sample);
            const bool changed = fractalOctave(bx, by, bz, m, sample, amplitude, lacunarity, add, sum);
            const float next = amplitude * gain;
            const bool amplitudeSettled = std::memcmp(&next, &amplitude, sizeof next) == 0;
            amplitude = next;
            if (!changed && amplitudeSettled) break;
        }
    }
}

// The lattice gradient noise at a 1-, 2- or 3-D position: what FBM and
// turbulence sum.
template <std::size_t N>
float latticeNoise(const std::array<float, N>& p) {
    if constexpr (N == 1) return Perlin::noise(p[0]);
    else if constexpr (N == 2) return Perlin::noise(p[0], p[1]);
    else return Perlin::noise(p[0], p[1], p[2]);
}

// fractalSum<N> over latticeNoise<N> in two or three dimensions, bit for bit;
// a sum of enough octaves takes their samples as lanes (octaveLaneSum): an
// octave's position is the previous one's times the lacunarity whatever it
// sampled.
template <std::size_t N, class Add>
float latticeFractalSum(const std::array<float, N>& position, float octaves, float lacunarity, float gain, Add add,
                        float amplitude = 1.0f) {
    static_assert(N == 2 || N == 3, "the lanes run the 2-D and 3-D noise");
    // The state as plain floats, so the chain of positions stays in registers.
    struct Octaves {
        struct State {
            float x, y, z, amplitude;
        };
        bool planar;
        float count, lacunarity, gain;
        Add fold;
        bool more(int i) const { return i < kMaxOctaves && static_cast<float>(i) < count; }
        static void place(const State& s, float& x, float& y, float& z) {
            x = s.x;
            y = s.y;
            z = s.z;
        }
        State next(State s) const {
            s.amplitude *= gain;
            s.x *= lacunarity;
            s.y *= lacunarity;
            if constexpr (N == 3) s.z *= lacunarity;
            return s;
        }
        float add(float sum, float sample, const State& s) const { return fold(sum, sample, s.amplitude); }
        static bool same(const State& a, const State& b) {
            return sameBits(a.amplitude, b.amplitude) && sameBits(a.x, b.x) && sameBits(a.y, b.y) &&
                   sameBits(a.z, b.z);
        }
    };
    const Octaves steps{N == 2, octaves, lacunarity, gain, add};
    if (!octaveLanesPay(steps))
        return fractalSum<N>(position, octaves, lacunarity, gain, latticeNoise<N>, add, amplitude);
    const float z = N == 3 ? position[N - 1] : 0.0f;
    return octaveLaneSum(steps, {position[0], position[1], z, amplitude});
}

}  // namespace gritwell
