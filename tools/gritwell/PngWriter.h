#pragma once
// PNG files, written atomically: 8- or 16-bit, grey or RGB.

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

// Any picture a PNG holds here: samples row-major, top row first, the
// channels of a pixel together, each below 2^bitDepth.
struct Picture {
    int width = 0;
    int height = 0;
    int channels = 1;  // 1 grey, 3 red green blue
    int bitDepth = 8;  // 8 or 16
    std::vector<std::uint16_t> samples;
};

// An intensity as an 8-bit grey: clamped to [0, 1], NaN black.
std::uint8_t toGrey(float value);

// The PNG file's bytes; stored as given, with no gamma or colour-space chunk.
std::vector<unsigned char> encodePng(const Picture& picture);

void writePng(const std::string& path, const Picture& picture);
void writePng(const std::string& path, const GreyImage& image);

}  // namespace gritwell
