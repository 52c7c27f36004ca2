#include "PngWriter.h"

#include <png.h>

#include <cmath>
#include <csetjmp>
#include <cstdio>
#include <cstring>
#include <new>

#include "CliError.h"
#include "RecordFile.h"

namespace gritwell {

namespace {

struct Sink {
    std::vector<unsigned char> bytes;
    char message[256] = {};
};

void append(png_structp png, png_bytep data, png_size_t length) {
    auto* sink = static_cast<Sink*>(png_get_io_ptr(png));
    try {
        sink->bytes.insert(sink->bytes.end(), data, data + length);
    } catch (const std::bad_alloc&) {
        png_error(png, "out of memory");
    }
}

void flush(png_structp) {}

// libpng reports by jumping back to encodeRows; the message is kept for the
// CliError rather than printed.
void keepMessage(png_structp png, png_const_charp message) {
    auto* sink = static_cast<Sink*>(png_get_error_ptr(png));
    std::snprintf(sink->message, sizeof sink->message, "%s", message);
    png_longjmp(png, 1);
}

void ignoreWarning(png_structp, png_const_charp) {}

// Only trivially destructible locals live between setjmp and its longjmp.
bool encodeRows(const Picture& picture, png_bytep* rows, Sink& sink) {
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, &sink, keepMessage, ignoreWarning);
    if (png == nullptr) return false;
    png_infop info = png_create_info_struct(png);
    if (info == nullptr) {
        png_destroy_write_struct(&png, nullptr);
        return false;
    }
    if (setjmp(png_jmpbuf(png))) {
        png_destroy_write_struct(&png, &info);
        return false;
    }
    png_set_write_fn(png, &sink, append, flush);
    png_set_IHDR(png, info, static_cast<png_uint_32>(picture.width), static_cast<png_uint_32>(picture.height),
                 picture.bitDepth, picture.channels == 3 ? PNG_COLOR_TYPE_RGB : PNG_COLOR_TYPE_GRAY,
                 PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_write_info(png, info);
    png_write_image(png, rows);
    png_write_end(png, nullptr);
    png_destroy_write_struct(&png, &info);
    return true;
}

}  // namespace

std::uint8_t toGrey(float value) {
    if (!(value > 0.0f)) return 0;  // NaN too
    if (value >= 1.0f) return 255;
    return static_cast<std::uint8_t>(std::lround(value * 255.0f));
}

std::vector<unsigned char> encodePng(const Picture& picture) {
    if (picture.width < 1 || picture.height < 1 || (picture.channels != 1 && picture.channels != 3) ||
        (picture.bitDepth != 8 && picture.bitDepth != 16) ||
        picture.samples.size() != std::size_t(picture.width) * picture.height * picture.channels)
        throw CliError("internal: a picture of an unsupported shape", CliError::kEnvironment);

    // PNG stores 16-bit samples most significant byte first.
    const std::size_t bytesPerSample = picture.bitDepth / 8;
    const std::size_t rowBytes = std::size_t(picture.width) * picture.channels * bytesPerSample;
    std::vector<unsigned char> raw(rowBytes * picture.height);
    for (std::size_t i = 0; i < picture.samples.size(); ++i) {
        const std::uint16_t s = picture.samples[i];
        if (bytesPerSample == 1) {
            raw[i] = static_cast<unsigned char>(s);
        } else {
            raw[2 * i] = static_cast<unsigned char>(s >> 8);
            raw[2 * i + 1] = static_cast<unsigned char>(s & 0xFF);
        }
    }
    std::vector<png_bytep> rows(picture.height);
    for (int y = 0; y < picture.height; ++y) rows[y] = raw.data() + rowBytes * y;

    Sink sink;
    if (!encodeRows(picture, rows.data(), sink))
        throw CliError(std::string("cannot encode the PNG: ") + (sink.message[0] ? sink.message : "libpng failed"),
                       CliError::kEnvironment);
    return std::move(sink.bytes);
}

void writePng(const std::string& path, const Picture& picture) {
    const std::vector<unsigned char> encoded = encodePng(picture);
    writeFileAtomically(path, encoded.data(), encoded.size());
}

void writePng(const std::string& path, const GreyImage& image) {
    Picture picture{image.width, image.height, 1, 8, {}};
    picture.samples.assign(image.pixels.begin(), image.pixels.end());
    writePng(path, picture);
}

}  // namespace gritwell
