#include "Colormap.h"

#include <cmath>
#include <span>

namespace gritwell::Colormap {

namespace {

using Rgb = std::array<double, 3>;

constexpr double byte(int v) { return v / 255.0; }

// Black to red to yellow to white, evenly spaced.
constexpr Rgb kHeat[] = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {1, 1, 1}};

// matplotlib's viridis (public domain) sampled at ten evenly spaced points,
// #440154 to #fde725.
constexpr Rgb kViridis[] = {
    {byte(0x44), byte(0x01), byte(0x54)}, {byte(0x48), byte(0x28), byte(0x78)}, {byte(0x3e), byte(0x49), byte(0x89)},
    {byte(0x31), byte(0x68), byte(0x8e)}, {byte(0x26), byte(0x82), byte(0x8e)}, {byte(0x1f), byte(0x9e), byte(0x89)},
    {byte(0x35), byte(0xb7), byte(0x79)}, {byte(0x6e), byte(0xce), byte(0x58)}, {byte(0xb5), byte(0xde), byte(0x2b)},
    {byte(0xfd), byte(0xe7), byte(0x25)},
};

double clamped(float value) {
    if (!(value > 0.0f)) return 0.0;  // NaN too
    return value >= 1.0f ? 1.0 : value;
}

Rgb interpolate(std::span<const Rgb> stops, double t) {
    const double position = t * static_cast<double>(stops.size() - 1);
    const auto i = static_cast<std::size_t>(position);
    if (i + 1 >= stops.size()) return stops.back();
    const double f = position - static_cast<double>(i);
    Rgb c;
    for (int k = 0; k < 3; ++k) c[k] = stops[i][k] + (stops[i + 1][k] - stops[i][k]) * f;
    return c;
}

}  // namespace

std::optional<Map> find(std::string_view name) {
    if (name == "grey" || name == "gray") return Map::Grey;
    if (name == "heat") return Map::Heat;
    if (name == "viridis") return Map::Viridis;
    return std::nullopt;
}

std::string_view names() { return "grey, heat, viridis"; }

std::array<double, 3> colour(Map map, float value) {
    const double t = clamped(value);
    switch (map) {
        case Map::Grey: return {t, t, t};
        case Map::Heat: return interpolate(kHeat, t);
        case Map::Viridis: return interpolate(kViridis, t);
    }
    return {t, t, t};
}

std::uint16_t level(double channel, int bitDepth) {
    const double top = bitDepth == 16 ? 65535.0 : 255.0;
    if (!(channel > 0.0)) return 0;
    if (channel >= 1.0) return static_cast<std::uint16_t>(top);
    return static_cast<std::uint16_t>(std::lround(channel * top));
}

Picture picture(const std::vector<float>& values, int width, int height, Map map, int bitDepth) {
    Picture p{width, height, map == Map::Grey ? 1 : 3, bitDepth, {}};
    p.samples.reserve(values.size() * p.channels);
    for (const float v : values) {
        if (map == Map::Grey) {
            // 8-bit grey keeps toGrey's float rounding, so it matches the
            // painted meshes' colours level for level.
            p.samples.push_back(bitDepth == 8 ? toGrey(v) : level(clamped(v), bitDepth));
            continue;
        }
        for (const double c : colour(map, v)) p.samples.push_back(level(c, bitDepth));
    }
    return p;
}

}  // namespace gritwell::Colormap
