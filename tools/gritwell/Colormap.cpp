#include "Colormap.h"

#include <cmath>
#include <cstdlib>

#include "CliError.h"

namespace gritwell::Colormap {

namespace {

constexpr double byte(int v) { return v / 255.0; }

std::vector<Stop> evenly(std::initializer_list<Rgb> colours) {
    std::vector<Stop> stops;
    const double gaps = static_cast<double>(colours.size() - 1);
    for (const Rgb& c : colours) stops.push_back({static_cast<double>(stops.size()) / gaps, c});
    return stops;
}

Rgb hex(unsigned rgb) { return {byte(rgb >> 16 & 0xFF), byte(rgb >> 8 & 0xFF), byte(rgb & 0xFF)}; }

// NaN reads as 0, as the grey of painted meshes has it.
double finiteOrZero(float value) { return value == value ? value : 0.0; }

}  // namespace

struct BuiltIn {
    static Map even(std::initializer_list<Rgb> colours, bool grey = false) {
        Map m(evenly(colours), grey);
        m.even_ = true;
        return m;
    }
};

const Map Map::Grey = BuiltIn::even({{0, 0, 0}, {1, 1, 1}}, true);
// Black to red to yellow to white, evenly spaced.
const Map Map::Heat = BuiltIn::even({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {1, 1, 1}});
// matplotlib's viridis (public domain) sampled at ten evenly spaced points,
// #440154 to #fde725.
const Map Map::Viridis = BuiltIn::even({hex(0x440154), hex(0x482878), hex(0x3e4989), hex(0x31688e), hex(0x26828e),
                                        hex(0x1f9e89), hex(0x35b779), hex(0x6ece58), hex(0xb5de2b), hex(0xfde725)});

namespace {

// Material ramps: dark grain to pale wood; slate through granite grey to
// warm sandstone; deep water to foam.
const Map& wood() {
    static const Map m({{0.0, hex(0x1a1008)}, {0.5, hex(0x7a4a20)}, {1.0, hex(0xf0d8a0)}});
    return m;
}
const Map& stone() {
    static const Map m({{0.0, hex(0x2b2d30)}, {0.45, hex(0x77787a)}, {0.8, hex(0xb3a58c)}, {1.0, hex(0xe8e0d0)}});
    return m;
}
const Map& ocean() {
    static const Map m({{0.0, hex(0x061a33)}, {0.4, hex(0x0e5a7a)}, {0.75, hex(0x3fa8a0)}, {1.0, hex(0xe6f5f0)}});
    return m;
}

}  // namespace

Map::Map(std::vector<Stop> stops, bool grey) : stops_(std::move(stops)), grey_(grey) {}

Rgb Map::colour(float value) const {
    if (even_) {
        // Clamped to 0..1 first, then position times the gaps between stops.
        const double t = value > 0.0f ? (value >= 1.0f ? 1.0 : value) : 0.0;
        const double position = t * static_cast<double>(stops_.size() - 1);
        const auto i = static_cast<std::size_t>(position);
        if (i + 1 >= stops_.size()) return stops_.back().colour;
        const double f = position - static_cast<double>(i);
        Rgb c;
        for (int k = 0; k < 3; ++k) c[k] = stops_[i].colour[k] + (stops_[i + 1].colour[k] - stops_[i].colour[k]) * f;
        return c;
    }
    const double t = finiteOrZero(value);
    if (!(t > stops_.front().position)) return stops_.front().colour;
    if (t >= stops_.back().position) return stops_.back().colour;
    std::size_t i = 0;
    while (stops_[i + 1].position <= t) ++i;  // stops_[i].position <= t < stops_[i + 1].position
    const double f = (t - stops_[i].position) / (stops_[i + 1].position - stops_[i].position);
    Rgb c;
    for (int k = 0; k < 3; ++k) c[k] = stops_[i].colour[k] + (stops_[i + 1].colour[k] - stops_[i].colour[k]) * f;
    return c;
}

std::optional<Map> find(std::string_view name) {
    if (name == "grey" || name == "gray") return Map::Grey;
    if (name == "heat") return Map::Heat;
    if (name == "viridis") return Map::Viridis;
    if (name == "wood") return wood();
    if (name == "stone") return stone();
    if (name == "ocean") return ocean();
    return std::nullopt;
}

std::string_view names() { return "grey, heat, viridis, wood, stone, ocean"; }

Map parseRamp(const std::string& text) {
    if (const std::optional<Map> named = find(text)) return *named;
    const std::string form = "; a ramp is a map's name (" + std::string(names()) +
                             ") or stops POSITION:#RRGGBB separated by commas, e.g. "
                             "\"0:#1a1008,0.5:#7a4a20,1:#f0d8a0\"";
    std::vector<Stop> stops;
    std::size_t at = 0;
    while (at <= text.size()) {
        const std::size_t comma = std::min(text.find(',', at), text.size());
        const std::string stop = text.substr(at, comma - at);
        const std::size_t colon = stop.find(':');
        const std::string where = "--ramp stop '" + stop + "'";
        if (colon == std::string::npos) throw CliError(where + " has no ':'" + form);
        const std::string position = stop.substr(0, colon), colour = stop.substr(colon + 1);
        char* end = nullptr;
        const double p = std::strtod(position.c_str(), &end);
        if (position.empty() || *end != '\0' || !std::isfinite(p))
            throw CliError(where + ": '" + position + "' is not a finite number" + form);
        if (colour.size() != 7 || colour[0] != '#' ||
            colour.find_first_not_of("0123456789abcdefABCDEF", 1) != std::string::npos)
            throw CliError(where + ": '" + colour + "' is not a colour #RRGGBB" + form);
        if (!stops.empty() && p < stops.back().position)
            throw CliError(where + " comes before the stop at " + std::to_string(stops.back().position) +
                           ": positions must not decrease");
        stops.push_back({p, hex(static_cast<unsigned>(std::strtoul(colour.c_str() + 1, nullptr, 16)))});
        at = comma + 1;
    }
    return Map(std::move(stops));
}

std::uint16_t level(double channel, int bitDepth) {
    const double top = bitDepth == 16 ? 65535.0 : 255.0;
    if (!(channel > 0.0)) return 0;
    if (channel >= 1.0) return static_cast<std::uint16_t>(top);
    return static_cast<std::uint16_t>(std::lround(channel * top));
}

void appendSamples(const float* values, std::size_t count, const Map& map, int bitDepth,
                   std::vector<std::uint16_t>& samples) {
    for (std::size_t i = 0; i < count; ++i) {
        const float v = values[i];
        if (map.isGrey()) {
            // 8-bit grey keeps toGrey's float rounding, so it matches the
            // painted meshes' colours level for level.
            samples.push_back(bitDepth == 8 ? toGrey(v) : level(v > 0.0f ? (v >= 1.0f ? 1.0 : v) : 0.0, bitDepth));
            continue;
        }
        for (const double c : map.colour(v)) samples.push_back(level(c, bitDepth));
    }
}

Picture picture(const std::vector<float>& values, int width, int height, const Map& map, int bitDepth) {
    Picture p{width, height, map.isGrey() ? 1 : 3, bitDepth, {}};
    p.samples.reserve(values.size() * p.channels);
    appendSamples(values.data(), values.size(), map, bitDepth, p.samples);
    return p;
}

}  // namespace gritwell::Colormap
