// Forwards to stb_perlin (Sean Barrett's public-domain single-file library,
// an implementation of Ken Perlin's 2002 improved noise).
#include "noise/StbPerlin.h"

#include <cmath>

#include <stb_perlin.h>

namespace gritwell::StbPerlin {

namespace {

// Below 2^31 in magnitude the library's (int) cast of the floor is defined.
constexpr float kIntRange = 2147483648.0f;

bool inIntRange(float v) { return std::fabs(v) < kIntRange; }

// A coordinate the library can take. Finite floats of magnitude 2^31 and
// more are multiples of 256, so 0 is the same place in the 256-cell period;
// NaN and infinities have no place and are read as 0 as well.
float guarded(float v) { return inIntRange(v) ? v : 0.0f; }

// The library only uses (wrap - 1) & 255, which depends on wrap mod 256
// alone; reducing first keeps its wrap - 1 from overflowing at INT_MIN.
int guardedWrap(int wrap) { return wrap & 255; }

// Whether every octave coordinate the library's sums will form, p times the
// running float product of lacunarities, stays inside the int range. The
// products are formed exactly as the library forms them.
bool octavesInRange(float x, float y, float z, float lacunarity, int octaves) {
    float frequency = 1.0f;
    for (int i = 0; i < octaves; ++i) {
        if (!inIntRange(x * frequency) || !inIntRange(y * frequency) || !inIntRange(z * frequency)) return false;
        frequency *= lacunarity;
    }
    return true;
}

// One octave of the library's sums through the guarded coordinates: the
// library's own noise with the octave's seed byte.
float octaveNoise(float x, float y, float z, float frequency, int octave) {
    return stb_perlin_noise3_seed(guarded(x * frequency), guarded(y * frequency), guarded(z * frequency), 0, 0, 0,
                                  octave);
}

}  // namespace

float noise3(float x, float y, float z, int wrapX, int wrapY, int wrapZ) {
    return stb_perlin_noise3(guarded(x), guarded(y), guarded(z), guardedWrap(wrapX), guardedWrap(wrapY),
                             guardedWrap(wrapZ));
}

// The sums go to the library whenever all their octaves are in range. When
// one is not, the library's loop is followed here step for step in float,
// with each octave's coordinates guarded as in noise3.

float fbm(float x, float y, float z, float lacunarity, float gain, int octaves) {
    if (octavesInRange(x, y, z, lacunarity, octaves))
        return stb_perlin_fbm_noise3(x, y, z, lacunarity, gain, octaves);
    float frequency = 1.0f;
    float amplitude = 1.0f;
    float sum = 0.0f;
    for (int i = 0; i < octaves; ++i) {
        sum += octaveNoise(x, y, z, frequency, i) * amplitude;
        frequency *= lacunarity;
        amplitude *= gain;
    }
    return sum;
}

float turbulence(float x, float y, float z, float lacunarity, float gain, int octaves) {
    if (octavesInRange(x, y, z, lacunarity, octaves))
        return stb_perlin_turbulence_noise3(x, y, z, lacunarity, gain, octaves);
    float frequency = 1.0f;
    float amplitude = 1.0f;
    float sum = 0.0f;
    for (int i = 0; i < octaves; ++i) {
        const float r = octaveNoise(x, y, z, frequency, i) * amplitude;
        sum += std::fabs(r);
        frequency *= lacunarity;
        amplitude *= gain;
    }
    return sum;
}

float ridge(float x, float y, float z, float lacunarity, float gain, float offset, int octaves) {
    if (octavesInRange(x, y, z, lacunarity, octaves))
        return stb_perlin_ridge_noise3(x, y, z, lacunarity, gain, offset, octaves);
    float frequency = 1.0f;
    float previous = 1.0f;
    float amplitude = 0.5f;
    float sum = 0.0f;
    for (int i = 0; i < octaves; ++i) {
        float r = offset - std::fabs(octaveNoise(x, y, z, frequency, i));
        r = r * r;
        sum += r * amplitude * previous;
        previous = r;
        frequency *= lacunarity;
        amplitude *= gain;
    }
    return sum;
}

}  // namespace gritwell::StbPerlin
