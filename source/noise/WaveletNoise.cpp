// Robert L. Cook and Tony DeRose, "Wavelet Noise", SIGGRAPH 2005: tile
// construction and 3-D evaluation after the code in the paper's appendix.
#include "noise/WaveletNoise.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <vector>

#include "core/FloatToInt.h"

namespace gritwell::WaveletNoise {

namespace {

constexpr int kN = kTileSize;
constexpr int kMask = kN - 1;

// Half-width of the downsampling filter in fine samples.
constexpr int kRadius = 16;

// The downsampling (analysis) filter of the quadratic B-spline wavelet, as
// printed in the paper's appendix, including its one asymmetric tap
// (0.003545 against 0.003546).
constexpr std::array<float, 2 * kRadius> kDownsample = {
    0.000334f,  -0.001528f, 0.000410f,  0.003545f,  -0.000938f, -0.008233f, 0.002172f,  0.019120f,
    -0.005040f, -0.044412f, 0.011655f,  0.103311f,  -0.025936f, -0.243780f, 0.033979f,  0.655340f,
    0.655340f,  0.033979f,  -0.243780f, -0.025936f, 0.103311f,  0.011655f,  -0.044412f, -0.005040f,
    0.019120f,  0.002172f,  -0.008233f, -0.000938f, 0.003546f,  0.000410f,  -0.001528f, 0.000334f};

// The upsampling (refinement) mask of the quadratic B-spline.
constexpr std::array<float, 4> kUpsample = {0.25f, 0.75f, 0.75f, 0.25f};

// Mathematical modulo for the small indices of the filters.
int mod(int x, int n) {
    const int m = x % n;
    return m < 0 ? m + n : m;
}

// Fine row of n samples (every stride-th float) to coarse row of n / 2.
// The printed loop runs k up to 2i + 16 inclusive, one tap past the
// 32-entry filter; the filter's own 32 taps are used here.
void downsample(const float* from, float* to, int n, int stride) {
    for (int i = 0; i < n / 2; ++i) {
        float sum = 0.0f;
        for (int k = 2 * i - kRadius; k < 2 * i + kRadius; ++k)
            sum += kDownsample[k - 2 * i + kRadius] * from[mod(k, n) * stride];
        to[i * stride] = sum;
    }
}

// Coarse row of n / 2 samples back to a fine row of n.
void upsample(const float* from, float* to, int n, int stride) {
    for (int i = 0; i < n; ++i) {
        float sum = 0.0f;
        for (int k = i / 2; k <= i / 2 + 1; ++k) sum += kUpsample[i - 2 * k + 2] * from[mod(k, n / 2) * stride];
        to[i * stride] = sum;
    }
}

// SplitMix64 (Steele, Lea and Flood, 2014): a fixed-seed integer generator
// defined entirely by 64-bit wrap-around arithmetic.
class SplitMix64 {
public:
    explicit SplitMix64(std::uint64_t seed) : state_(seed) {}
    std::uint64_t next() {
        std::uint64_t z = (state_ += 0x9e3779b97f4a7c15u);
        z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9u;
        z = (z ^ (z >> 27)) * 0x94d049bb133111ebu;
        return z ^ (z >> 31);
    }

private:
    std::uint64_t state_;
};

// Seed of the tile's coefficients; stored renderings depend on it.
constexpr std::uint64_t kSeed = 0x5EED2005u;

// Mean 0, variance 1, in [-6, 6): twelve uniforms of 24 bits summed less 6
// (the Irwin-Hall approximation of a Gaussian). The sum is exact in double,
// so no library function can make platforms disagree.
float gaussian(SplitMix64& rng) {
    double sum = 0.0;
    for (int i = 0; i < 12; ++i) sum += static_cast<double>(rng.next() >> 40) * 0x1p-24;
    return static_cast<float>(sum - 6.0);
}

std::vector<float> buildTile() {
    const int n = kN;
    const int size = n * n * n;
    std::vector<float> noise(size), temp1(size), temp2(size);

    // Step 1: Gaussian coefficients, x fastest, then y, then z.
    SplitMix64 rng(kSeed);
    for (float& v : noise) v = gaussian(rng);

    // Steps 2 and 3: down- and upsample along x, then y, then z, leaving the
    // coarse-scale part of the tile in temp2.
    for (int iy = 0; iy < n; ++iy)
        for (int iz = 0; iz < n; ++iz) {
            const int i = iy * n + iz * n * n;
            downsample(&noise[i], &temp1[i], n, 1);
            upsample(&temp1[i], &temp2[i], n, 1);
        }
    for (int ix = 0; ix < n; ++ix)
        for (int iz = 0; iz < n; ++iz) {
            const int i = ix + iz * n * n;
            downsample(&temp2[i], &temp1[i], n, n);
            upsample(&temp1[i], &temp2[i], n, n);
        }
    for (int ix = 0; ix < n; ++ix)
        for (int iy = 0; iy < n; ++iy) {
            const int i = ix + iy * n;
            downsample(&temp2[i], &temp1[i], n, n * n);
            upsample(&temp1[i], &temp2[i], n, n * n);
        }

    // Step 4: subtract the coarse part, leaving the finest band.
    for (int i = 0; i < size; ++i) noise[i] -= temp2[i];

    // Even and odd coefficients carry different variance; adding a copy
    // shifted by an odd offset evens it out. Both copies are indexed x fastest
    // (the printed loop counts its output as if x were fastest while nesting
    // x outermost, which transposes x and z).
    int offset = n / 2;
    if (offset % 2 == 0) ++offset;
    for (int iz = 0; iz < n; ++iz)
        for (int iy = 0; iy < n; ++iy)
            for (int ix = 0; ix < n; ++ix)
                temp1[ix + iy * n + iz * n * n] =
                    noise[mod(ix + offset, n) + mod(iy + offset, n) * n + mod(iz + offset, n) * n * n];
    for (int i = 0; i < size; ++i) noise[i] += temp1[i];
    return noise;
}

const std::vector<float>& tile() {
    static const std::vector<float> coefficients = buildTile();
    return coefficients;
}

// Beyond 2^24 every float is a whole number.
constexpr float kWholeNumbers = 16777216.0f;

// A coordinate the evaluation can take without leaving the int range: small
// ones as they are, large ones reduced exactly modulo the tile (fmod is
// exact), NaN and infinities as 0.
float wrapped(float v) {
    if (std::fabs(v) < kWholeNumbers) return v;
    if (std::isfinite(v)) return std::fmod(v, static_cast<float>(kN));
    return 0.0f;
}

}  // namespace

float noise(float x, float y, float z) {
    const float* coefficients = tile().data();
    const float p[3] = {wrapped(x), wrapped(y), wrapped(z)};

    // Per axis: the three coefficients around the coordinate (as offsets into
    // the tile) and their quadratic B-spline weights; p - 0.5 is formed in
    // double, as in the paper.
    int offset[3][3];
    float w[3][3];
    constexpr int kStride[3] = {1, kN, kN * kN};
    for (int i = 0; i < 3; ++i) {
        const double shifted = p[i] - 0.5;
        const double centre = std::ceil(shifted);
        const int mid = truncToInt(centre);
        for (int f = -1; f <= 1; ++f) offset[i][f + 1] = ((mid + f) & kMask) * kStride[i];
        const float t = static_cast<float>(centre - shifted);
        w[i][0] = t * t / 2;
        w[i][2] = (1 - t) * (1 - t) / 2;
        w[i][1] = 1 - w[i][0] - w[i][2];
    }

    // The paper's order: z outermost, x innermost; each weight is the
    // product w_x * w_y * w_z formed left to right.
    float result = 0.0f;
    for (int fz = 0; fz < 3; ++fz)
        for (int fy = 0; fy < 3; ++fy)
            for (int fx = 0; fx < 3; ++fx) {
                const float weight = w[0][fx] * w[1][fy] * w[2][fz];
                result += weight * coefficients[offset[2][fz] + offset[1][fy] + offset[0][fx]];
            }
    return result;
}

}  // namespace gritwell::WaveletNoise
