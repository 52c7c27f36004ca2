#include "textures/PlaidTexture3D.h"

#include "noise/CellNoise.h"

namespace gritwell {

namespace {

// Hard bands per unit of x and of y: each is 0.2 units wide.
constexpr float kBandsPerUnit = 5.0f;

}  // namespace

// Each layer mixes from its colour (noise 0) to its background (noise 1).
float PlaidTexture3D::evaluate(const Record& r, int, float x, float y, float) {
    const float vPeriod = static_cast<float>(r.verticalPeriod);
    const float hPeriod = static_cast<float>(r.horizontalPeriod);
    const float a = PRMan::pnoise(r.verticalFrequency * y, vPeriod);
    const float ya = PRMan::mix(r.color1, r.primaryBackground, a);
    const float b = PRMan::pnoise(r.horizontalFrequency * x, hPeriod);
    const float xb = PRMan::mix(r.color2, r.primaryBackground, b);
    const float c = CellNoise::cellNoise(kBandsPerUnit * x);
    const float xc = PRMan::mix(r.color3, r.background2, c);
    const float d = CellNoise::cellNoise(kBandsPerUnit * y);
    const float yd = PRMan::mix(r.color4, r.background3, d);

    float s = ya + xb + xc + yd;
    // The high bound first and as "s < 1 ? s : 1": a NaN sum (from a period
    // of 0, say) fails that test and comes out as 1.0, as it always has.
    s = s < 1.0f ? s : 1.0f;
    s = 0.0f < s ? s : 0.0f;
    return s;
}

template class RecordTexture3D<PlaidTexture3D>;

}  // namespace gritwell
