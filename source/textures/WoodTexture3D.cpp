#include "textures/WoodTexture3D.h"

#include <cmath>
#include <istream>
#include <ostream>

#include "noise/PRMan.h"
#include "noise/Perlin.h"

namespace gritwell {

namespace {

// The ring profile: rising over the first 80% of a period, dark up to 83%,
// back to light by the period's end.
constexpr float kRiseEnd = 0.8f;
constexpr float kFallStart = 0.83f;

}  // namespace

float WoodTexture3D::evaluate(const Record& r, int, float x, float y, float z) {
    // The whole point moves along (1, 1, 1); the rings run along y, so only
    // the x and z of the moved point are ever measured.
    if (r.frequency > 0.0f) {
        const float n = Perlin::Get(x, y, z, r.octaves, r.frequency, r.amplitude);
        const float shift = static_cast<float>((n + 1.0) / 2.0);
        x = x + shift;
        z = z + shift;
    }

    float ring = std::sqrt(x * x + z * z) * r.ringScale;
    const float wobble = static_cast<float>((Perlin::noise(ring) + 1.0) / 2.0);
    ring = ring + std::fabs(wobble);

    // The fraction by the cell-index rule: an exactly negative whole ring
    // number gives 1.0, not 0.0 (both read as light, so no value depends on it).
    ring = ring - static_cast<float>(cellIndex(ring));

    const float t =
        PRMan::smoothstep(0.0f, kRiseEnd, ring) - PRMan::smoothstep(kFallStart, 1.0f, ring);
    return PRMan::mmix(r.lightColor, r.darkColor, t);
}

std::ostream& operator<<(std::ostream& os, const WoodTexture3D& t) {
    const WoodTexture3D::Record& r = t.record();
    return os << r.ringScale << ' ' << r.octaves << ' ' << r.frequency << ' ' << r.amplitude << ' '
              << r.darkColor << ' ' << r.lightColor << '\n';
}

std::istream& operator>>(std::istream& is, WoodTexture3D& t) {
    float ringScale, frequency, amplitude, dark, light;
    int octaves;
    if (is >> ringScale >> octaves >> frequency >> amplitude >> dark >> light) {
        t.setRingScale(ringScale);
        t.setOctaves(octaves);
        t.setFrequency(frequency);
        t.setAmplitude(amplitude);
        t.setDarkColor(dark);
        t.setLightColor(light);
    }
    return is;
}

template class RecordTexture3D<WoodTexture3D>;

}  // namespace gritwell
