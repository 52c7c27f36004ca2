#include "PngWriter.h"

#include <png.h>

#include <cmath>
#include <cstring>

#include "CliError.h"
#include "RecordFile.h"

namespace gritwell {

std::uint8_t toGrey(float value) {
    if (!(value > 0.0f)) return 0;  // NaN too
    if (value >= 1.0f) return 255;
    return static_cast<std::uint8_t>(std::lround(value * 255.0f));
}

void writePng(const std::string& path, const GreyImage& image) {
    png_image png;
    std::memset(&png, 0, sizeof png);
    png.version = PNG_IMAGE_VERSION;
    png.width = static_cast<png_uint_32>(image.width);
    png.height = static_cast<png_uint_32>(image.height);
    png.format = PNG_FORMAT_GRAY;

    png_alloc_size_t size = 0;
    if (!png_image_write_to_memory(&png, nullptr, &size, 0, image.pixels.data(), 0, nullptr))
        throw CliError(std::string("cannot encode the PNG: ") + png.message, CliError::kEnvironment);
    std::vector<unsigned char> encoded(size);
    if (!png_image_write_to_memory(&png, encoded.data(), &size, 0, image.pixels.data(), 0, nullptr))
        throw CliError(std::string("cannot encode the PNG: ") + png.message, CliError::kEnvironment);
    writeFileAtomically(path, encoded.data(), size);
}

}  // namespace gritwell
