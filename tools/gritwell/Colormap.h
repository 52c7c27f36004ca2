#pragma once
// Colormap: how intensities become pixels. "grey" is the intensity itself;
// "heat" runs black, red, yellow, white; "viridis" runs dark violet, blue,
// green, yellow, evenly bright to the eye; "wood", "stone" and "ocean" are
// ramps of material colours. A ramp of the user's own is a list of stops,
// "0:#1a1008,0.5:#7a4a20,1:#f0d8a0": colours at intensities, interpolated
// linearly between them and held beyond the first and the last.

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "PngWriter.h"

namespace gritwell::Colormap {

using Rgb = std::array<double, 3>;

struct Stop {
    double position;  // the intensity the colour sits at
    Rgb colour;       // each channel 0..1
    bool operator==(const Stop&) const = default;
};

class Map {
public:
    static const Map Grey;
    static const Map Heat;
    static const Map Viridis;

    // Stops in non-decreasing order of position, at least one.
    explicit Map(std::vector<Stop> stops, bool grey = false);

    // One channel (the intensity as grey) rather than red, green, blue.
    bool isGrey() const { return grey_; }
    // The colour of an intensity, each channel in 0..1; NaN takes the colour of 0.
    Rgb colour(float value) const;
    const std::vector<Stop>& stops() const { return stops_; }

    bool operator==(const Map&) const = default;

private:
    std::vector<Stop> stops_;
    bool grey_ = false;
    // The built-in maps space their stops evenly over 0..1 and are looked up
    // by position times the count of gaps, as they always have been, so their
    // colours stay the same to the last bit.
    bool even_ = false;
    friend struct BuiltIn;
};

// The map called `name` ("grey", "heat", "viridis", "wood", "stone",
// "ocean"; "gray" too); none for others.
std::optional<Map> find(std::string_view name);
// "grey, heat, viridis, wood, stone, ocean", for help texts and messages.
std::string_view names();

// A ramp from its text: a map's name, or stops "POSITION:#RRGGBB" separated
// by commas, positions finite and non-decreasing. A CliError (status 2)
// says what is wrong.
Map parseRamp(const std::string& text);

// The colour of an intensity under a map.
inline Rgb colour(const Map& map, float value) { return map.colour(value); }

// A sample of `bitDepth` (8 or 16) bits from a channel value in 0..1, rounded.
std::uint16_t level(double channel, int bitDepth);

// The samples of values (one channel for the grey map, whose 8-bit levels are
// toGrey's; red, green, blue for the others) appended to `samples`.
void appendSamples(const float* values, std::size_t count, const Map& map, int bitDepth,
                   std::vector<std::uint16_t>& samples);

// Values (row-major, top row first) as a picture.
Picture picture(const std::vector<float>& values, int width, int height, const Map& map, int bitDepth);

}  // namespace gritwell::Colormap
