#include "textures/GraniteTexture3D.h"

#include <bit>
#include <cstdint>

#include "core/FloatToInt.h"
#include "core/UnitRange.h"
#include "noise/Perlin.h"
#include "noise/PerlinBatch.h"

namespace gritwell {

namespace {

// Each layer samples the noise at four times its frequency.
constexpr float kSampleScale = 4.0f;

// The integer absolute value as the machine's instructions give it: the
// INT_MIN that a NaN sample truncates to stays INT_MIN.
constexpr int wrapAbs(int k) { return k < 0 ? wrapMul(k, -1) : k; }

}  // namespace

float GraniteTexture3D::evaluate(const Record& r, int flags, float x, float y, float z) {
    const bool planar = isPlanar(flags);
    float sum = 0.0f;
    float f = r.frequency;
    for (int i = 0; i < r.octaves; ++i) {
        const float before[2] = {sum, f};
        const float sx = kSampleScale * x * f;
        const float sy = kSampleScale * y * f;
        const float n = planar ? Perlin::noise(sx, sy) : Perlin::noise(sx, sy, kSampleScale * z * f);
        // Truncating before the absolute value makes each layer all or
        // nothing (1 where the noise is -0.5 or below): the speckles' hard
        // edges depend on it.
        const int k = truncToInt(0.5 - static_cast<double>(n));
        sum += static_cast<float>(wrapAbs(k)) / f;
        f *= 2.0f;
        // A layer depends only on the sum and the frequency so far. Once a
        // layer leaves both bit for bit as they were (the frequency has
        // reached 0, infinity or NaN and adds nothing more), every later one
        // would too: a damaged record's huge count stops here, within some
        // 280 layers, with the bits the full loop would give.
        if (std::bit_cast<std::uint32_t>(before[0]) == std::bit_cast<std::uint32_t>(sum) &&
            std::bit_cast<std::uint32_t>(before[1]) == std::bit_cast<std::uint32_t>(f))
            break;
    }
    return clampUnit(sum);
}

// The layers across a block, each point stopping as above: the pass runs
// until every point has settled, and settled points keep their bits.
void GraniteTexture3D::evaluateBlock(const Record& r, int flags, const float* points, int n, float* out) {
    const bool planar = isPlanar(flags);
    float x[kBlockPoints], y[kBlockPoints], z[kBlockPoints], sample[kBlockPoints];
    float* sum = out;
    for (int j = 0; j < n; ++j) sum[j] = 0.0f;
    float f = r.frequency;
    for (int i = 0; i < r.octaves; ++i) {
        for (int j = 0; j < n; ++j) {
            x[j] = kSampleScale * points[3 * j] * f;
            y[j] = kSampleScale * points[3 * j + 1] * f;
            z[j] = kSampleScale * points[3 * j + 2] * f;
        }
        if (planar)
            PerlinBatch::noise(x, y, sample, n);
        else
            PerlinBatch::noise(x, y, z, sample, n);
        bool changed = false;
        for (int j = 0; j < n; ++j) {
            const int k = truncToInt(0.5 - static_cast<double>(sample[j]));
            const float s = sum[j] + static_cast<float>(wrapAbs(k)) / f;
            changed |= std::bit_cast<std::uint32_t>(s) != std::bit_cast<std::uint32_t>(sum[j]);
            sum[j] = s;
        }
        const float next = f * 2.0f;
        if (!changed && std::bit_cast<std::uint32_t>(next) == std::bit_cast<std::uint32_t>(f)) break;
        f = next;
    }
    for (int j = 0; j < n; ++j) out[j] = clampUnit(sum[j]);
}

template class RecordTexture3D<GraniteTexture3D>;

}  // namespace gritwell
