#pragma once
// Colormap: how intensities become pixels. "grey" is the intensity itself;
// "heat" runs black, red, yellow, white; "viridis" runs dark violet, blue,
// green, yellow, evenly bright to the eye.

#include <array>
#include <optional>
#include <string_view>
#include <vector>

#include "PngWriter.h"

namespace gritwell::Colormap {

enum class Map { Grey, Heat, Viridis };

// The map called `name` ("grey", "heat", "viridis"; "gray" too); none for others.
std::optional<Map> find(std::string_view name);
// "grey, heat, viridis", for help texts and messages.
std::string_view names();

// The colour of an intensity, each channel in 0..1: the intensity clamped to
// 0..1 (NaN as 0), then interpolated linearly between the map's stops.
std::array<double, 3> colour(Map map, float value);

// A sample of `bitDepth` (8 or 16) bits from a channel value in 0..1, rounded.
std::uint16_t level(double channel, int bitDepth);

// Values (row-major, top row first) as a picture: one grey channel for the
// grey map, whose 8-bit levels are toGrey's, RGB for the others.
Picture picture(const std::vector<float>& values, int width, int height, Map map, int bitDepth);

}  // namespace gritwell::Colormap
