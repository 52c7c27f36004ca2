#pragma once
// Greyscale PNG files, written atomically.

#include <cstdint>
#include <string>
#include <vector>

namespace gritwell {

struct GreyImage {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> pixels;  // row-major, top row first

    GreyImage(int w, int h, std::uint8_t fill = 0) : width(w), height(h), pixels(std::size_t(w) * h, fill) {}
    std::uint8_t& at(int x, int y) { return pixels[std::size_t(y) * width + x]; }
};

// An intensity as an 8-bit grey: clamped to [0, 1], NaN black.
std::uint8_t toGrey(float value);

void writePng(const std::string& path, const GreyImage& image);

}  // namespace gritwell
