#pragma once
// Gradient noise, in two layers under one name.
//
// The static layer is what the texture generators call: lattice gradient
// noise (`noise`), simplex noise (`snoise`), their kernels, octave sums and
// band-limited forms over constant tables. It is pure and thread-safe.
//
// The instance layer is the classic table-driven noise with 1024-entry
// random tables built lazily from the object's seed through the standard
// library's srand/rand. It writes the process-wide rand() state on first use
// and is meant for one thread.

#include <cstdint>

#include "core/SimdLevel.h"

namespace gritwell {

class Perlin {
public:
    // ---- Instance layer ------------------------------------------------

    // Stores the parameters; the tables are built on the first noise call.
    Perlin(int octaves, float freq, float amp, int seed);

    // Fills p, g1, g2, g3 from rand(); the caller has seeded the generator.
    void init();
    // Scale a vector in place to unit length; a zero vector becomes NaNs.
    static void normalize2(float* v);
    static void normalize3(float* v);

    // Roughly [-1, 1], 0 at integers; with unit, (n + 1) / 2 in [0, 1].
    float noise1(float x, bool unit);
    float noise2(float* v, bool unit);
    float noise3(float* v, bool unit);

    // Octave sums; a unit sum lies in [0, amp * (2 - 2^(1 - octaves))].
    // The 2-D and 3-D forms leave v multiplied by freq * 2^octaves.
    float perlin_noise_1D(float x, int octaves, float freq, float amp, bool unit);
    float perlin_noise_2D(float* v, int octaves, float freq, float amp, bool unit);
    float perlin_noise_3D(float* v, int octaves, float freq, float amp, bool unit);
    // The same with the object's own octaves, frequency and amplitude.
    float perlin_noise_1D(float x, bool unit);
    float perlin_noise_2D(float* v, bool unit);

    // ---- Static layer --------------------------------------------------
    // What each function returns is listed in noise/Noise.h.

    // Lattice gradient noise.
    static float noise(float x);
    static float noise(float x, float y);
    static float noise(float x, float y, float z);
    static float noise(float x, float y, float z, float w);

    // Simplex noise.
    static float snoise(float x);
    static float snoise(float x, float y);
    static float snoise(float x, float y, float z);
    static float snoise(float x, float y, float z, float w);
    // out[i] = snoise(x[i], y[i], z[i]) (or snoise(x[i], y[i])) for
    // 0 <= i < n, eight points at a time on processors with AVX2 (AVX-512
    // ones run the same kernel), on this processor's best level or a chosen
    // one; out may be x, y or z.
    static void snoise(const float* x, const float* y, const float* z, int n, float* out);
    static void snoise(const float* x, const float* y, int n, float* out);
    static void snoise(SimdLevel level, const float* x, const float* y, const float* z, int n, float* out);
    static void snoise(SimdLevel level, const float* x, const float* y, int n, float* out);

    // A hash's gradient dotted with an offset: 1-D g x with g = +-1..8;
    // 2-D +-u +- 2v, 3-D +-u +- v, 4-D +-u +- v +- s over the offset's components.
    static float grad(int hash, float x);
    static float grad(int hash, float x, float y);
    static float grad(int hash, float x, float y, float z);
    static float grad(int hash, float x, float y, float z, float w);

    // One simplex corner at offset (x, ...) with lattice indices (i, ...):
    // (r^2 - |offset|^2)^4 * grad, 0 outside the corner's radius (except 1-D,
    // which has no cut-off). Indices are taken modulo 256 toward zero.
    static float point(float x, int i);
    static float point(float x, float y, int i, int j);
    static float point(float x, float y, float z, int i, int j, int k);
    static float point(float x, float y, float z, float w, int i, int j, int k, int l);

    // Octave sums of `noise`, each octave at kGetLacunarity times the
    // frequency and kGetGain times the amplitude of the one before.
    static constexpr float kGetLacunarity = 2.0f;
    static constexpr float kGetGain = 0.5f;
    static float Get(float x, float y, int octaves, float freq, float amp);
    static float Get(float x, float y, float z, int octaves, float freq, float amp);

    // `noise` / `snoise` faded out as the filter width fw grows.
    static float fnoise2D(float x, float y, float fw);
    static float fnoise3D(float x, float y, float z, float fw);
    static float fnoise4D(float x, float y, float z, float w, float fw);
    static float fsnoise2D(float x, float y, float fw);
    static float fsnoise3D(float x, float y, float z, float fw);
    static float fsnoise4D(float x, float y, float z, float w, float fw);

    // Table size, index mask and the offset that keeps truncation positive.
    static constexpr int B = 1024;
    static constexpr int BM = 1023;
    static constexpr int N = 4096;
    static constexpr int TableLength = B + B + 2;

private:
    void startIfNeeded();

    std::int32_t octaves;
    float frequency;
    float amplitude;
    std::int32_t seed;
    std::int32_t p[TableLength];
    float g3[TableLength][3];
    float g2[TableLength][2];
    float g1[TableLength];
    bool start;
};

}  // namespace gritwell
