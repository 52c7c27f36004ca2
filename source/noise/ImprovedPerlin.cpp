// Ken Perlin, "Improving Noise", SIGGRAPH 2002, and his reference code
// ImprovedNoise.java; noise3 gives its results bit for bit.
#include "noise/ImprovedPerlin.h"

#include <array>
#include <cmath>

#include "core/FloatToInt.h"

namespace gritwell {

namespace {

// Ken Perlin's reference permutation of 0..255 (ImprovedNoise.java).
constexpr std::array<int, 256> kPermutation = {
    151, 160, 137, 91,  90,  15,  131, 13,  201, 95,  96,  53,  194, 233, 7,   225, 140, 36,  103, 30,
    69,  142, 8,   99,  37,  240, 21,  10,  23,  190, 6,   148, 247, 120, 234, 75,  0,   26,  197, 62,
    94,  252, 219, 203, 117, 35,  11,  32,  57,  177, 33,  88,  237, 149, 56,  87,  174, 20,  125, 136,
    171, 168, 68,  175, 74,  165, 71,  134, 139, 48,  27,  166, 77,  146, 158, 231, 83,  111, 229, 122,
    60,  211, 133, 230, 220, 105, 92,  41,  55,  46,  245, 40,  244, 102, 143, 54,  65,  25,  63,  161,
    1,   216, 80,  73,  209, 76,  132, 187, 208, 89,  18,  169, 200, 196, 135, 130, 116, 188, 159, 86,
    164, 100, 109, 198, 173, 186, 3,   64,  52,  217, 226, 250, 124, 123, 5,   202, 38,  147, 118, 126,
    255, 82,  85,  212, 207, 206, 59,  227, 47,  16,  58,  17,  182, 189, 28,  42,  223, 183, 170, 213,
    119, 248, 152, 2,   44,  154, 163, 70,  221, 153, 101, 155, 167, 43,  172, 9,   129, 22,  39,  253,
    19,  98,  108, 110, 79,  113, 224, 232, 178, 185, 112, 104, 218, 246, 97,  228, 251, 34,  242, 193,
    238, 210, 144, 12,  191, 179, 162, 241, 81,  51,  145, 235, 249, 14,  239, 107, 49,  192, 214, 31,
    181, 199, 106, 157, 184, 84,  204, 176, 115, 121, 50,  45,  127, 4,   150, 254, 138, 236, 205, 93,
    222, 114, 67,  29,  24,  72,  243, 141, 128, 195, 78,  66,  215, 61,  156, 180};

// The permutation twice over, so that p[i + 1] and p[p[i] + j] need no wrap.
constexpr std::array<int, 512> kP = [] {
    std::array<int, 512> p{};
    for (int i = 0; i < 512; ++i) p[i] = kPermutation[i & 255];
    return p;
}();

double fade(double t) { return t * t * t * (t * (t * 6 - 15) + 10); }

// Blends from a at t = 0 to b at t = 1 (unlike the library's global lerp).
double lerp(double t, double a, double b) { return a + t * (b - a); }

// The reference grad picks u and v among x, y, z and negates them by the
// low four bits of the hash: twelve edge gradients, four of them repeated.
// Its choices are tabulated here from the reference's own conditions and
// applied without branches (hashes are random, so branches mispredict);
// multiplying by -1.0 is an exact negation, so the bits are the same.
struct GradientChoice {
    int u, v;      // 0 for x, 1 for y, 2 for z
    double su, sv;  // +1 or -1
};
constexpr std::array<GradientChoice, 16> kGradients = [] {
    std::array<GradientChoice, 16> g{};
    for (int h = 0; h < 16; ++h) {
        g[h].u = h < 8 ? 0 : 1;
        g[h].v = h < 4 ? 1 : h == 12 || h == 14 ? 0 : 2;
        g[h].su = (h & 1) == 0 ? 1.0 : -1.0;
        g[h].sv = (h & 2) == 0 ? 1.0 : -1.0;
    }
    return g;
}();

double grad(int hash, double x, double y, double z) {
    const GradientChoice& g = kGradients[hash & 15];
    const double c[3] = {x, y, z};
    return g.su * c[g.u] + g.sv * c[g.v];
}

// The lattice cell modulo 256 of an already floored coordinate; NaN and
// values beyond the int range land in cell 0.
int cell(double floored) { return truncToInt(floored) & 255; }

}  // namespace

double ImprovedPerlin::noise3(double x, double y, double z) const {
    const double fx = std::floor(x);
    const double fy = std::floor(y);
    const double fz = std::floor(z);
    const int X = cell(fx);
    const int Y = cell(fy);
    const int Z = cell(fz);
    x -= fx;
    y -= fy;
    z -= fz;
    const double u = fade(x);
    const double v = fade(y);
    const double w = fade(z);
    const int A = kP[X] + Y;
    const int AA = kP[A] + Z;
    const int AB = kP[A + 1] + Z;
    const int B = kP[X + 1] + Y;
    const int BA = kP[B] + Z;
    const int BB = kP[B + 1] + Z;
    return lerp(w,
                lerp(v, lerp(u, grad(kP[AA], x, y, z), grad(kP[BA], x - 1, y, z)),
                     lerp(u, grad(kP[AB], x, y - 1, z), grad(kP[BB], x - 1, y - 1, z))),
                lerp(v, lerp(u, grad(kP[AA + 1], x, y, z - 1), grad(kP[BA + 1], x - 1, y, z - 1)),
                     lerp(u, grad(kP[AB + 1], x, y - 1, z - 1), grad(kP[BB + 1], x - 1, y - 1, z - 1))));
}

double ImprovedPerlin::noise1(double x) const {
    const double fx = std::floor(x);
    const int X = cell(fx);
    x -= fx;
    const double g0 = (kP[X] & 1) == 0 ? x : -x;
    const double g1 = (kP[X + 1] & 1) == 0 ? x - 1 : -(x - 1);
    return lerp(fade(x), g0, g1);
}

}  // namespace gritwell
