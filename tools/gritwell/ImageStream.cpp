#include "ImageStream.h"

#include <png.h>
#include <sys/stat.h>

#include <ImfChannelList.h>
#include <ImfFrameBuffer.h>
#include <ImfHeader.h>
#include <ImfIO.h>
#include <ImfOutputFile.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <csetjmp>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>

#include "CliError.h"

namespace gritwell {

// ---- PNG, row by row ----------------------------------------------------------

struct ImageStream::Png {
    png_structp png = nullptr;
    png_infop info = nullptr;
    char message[256] = {};
    std::vector<unsigned char> row;

    ~Png() { png_destroy_write_struct(&png, &info); }

    static void write(png_structp png, png_bytep data, png_size_t length) {
        auto* file = static_cast<std::FILE*>(png_get_io_ptr(png));
        if (std::fwrite(data, 1, length, file) != length) png_error(png, std::strerror(errno));
    }
    static void flush(png_structp) {}
    // libpng reports by jumping back to the call that set the jump; the
    // message is kept for the CliError.
    static void fail(png_structp png, png_const_charp message) {
        auto* self = static_cast<Png*>(png_get_error_ptr(png));
        std::snprintf(self->message, sizeof self->message, "%s", message);
        png_longjmp(png, 1);
    }
    static void warn(png_structp, png_const_charp) {}

    // Only trivially destructible locals live between setjmp and its longjmp.
    bool begin(std::FILE* file, int width, int height, int channels, int bitDepth) {
        png = png_create_write_struct(PNG_LIBPNG_VER_STRING, this, fail, warn);
        if (png == nullptr) return false;
        info = png_create_info_struct(png);
        if (info == nullptr) return false;
        if (setjmp(png_jmpbuf(png))) return false;
        png_set_write_fn(png, file, write, flush);
        png_set_IHDR(png, info, static_cast<png_uint_32>(width), static_cast<png_uint_32>(height), bitDepth,
                     channels == 3 ? PNG_COLOR_TYPE_RGB : PNG_COLOR_TYPE_GRAY, PNG_INTERLACE_NONE,
                     PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
        png_write_info(png, info);
        return true;
    }
    bool writeRow(png_bytep bytes) {
        if (setjmp(png_jmpbuf(png))) return false;
        png_write_row(png, bytes);
        return true;
    }
    bool end() {
        if (setjmp(png_jmpbuf(png))) return false;
        png_write_end(png, nullptr);
        return true;
    }
};

// ---- OpenEXR, scan lines through the AtomicOutput's file ------------------------

namespace {

class FileStream final : public Imf::OStream {
public:
    FileStream(std::FILE* file, const std::string& name) : Imf::OStream(name.c_str()), file_(file) {}
    void write(const char c[], int n) override {
        if (std::fwrite(c, 1, static_cast<std::size_t>(n), file_) != static_cast<std::size_t>(n)) fail();
    }
    uint64_t tellp() override { return static_cast<uint64_t>(ftello(file_)); }
    void seekp(uint64_t pos) override {
        if (fseeko(file_, static_cast<off_t>(pos), SEEK_SET) != 0) fail();
    }
    // The library's file writes its table of line offsets when it is
    // destroyed and swallows what goes wrong there, so a failure is also kept.
    bool failed() const { return failed_; }

private:
    [[noreturn]] void fail() {
        failed_ = true;
        throw CliError("cannot write '" + std::string(fileName()) + "': " + std::strerror(errno));
    }
    std::FILE* file_;
    bool failed_ = false;
};

}  // namespace

struct ImageStream::Exr {
    FileStream stream;
    std::unique_ptr<Imf::OutputFile> file;
    Exr(std::FILE* f, const std::string& name) : stream(f, name) {}
};

// ---- the stream -----------------------------------------------------------------

ImageStream::Format ImageStream::formatOf(const CommandFile& output) {
    struct stat status {};
    if (output.path == "-" || (::stat(output.path.c_str(), &status) == 0 && !S_ISREG(status.st_mode)))
        return Format::Png;
    std::string given = std::filesystem::path(output.path).extension().string();
    std::transform(given.begin(), given.end(), given.begin(), [](unsigned char c) { return std::tolower(c); });
    if (given == ".png") return Format::Png;
    if (given == ".exr") return Format::Exr;
    const std::string formats = "; pictures are written as: .png, .exr";
    if (given.empty())
        throw CliError(output.name + " '" + output.path + "' has no extension to name its format" + formats);
    throw CliError(output.name + " '" + output.path + "': " + given + " is not a format gritwell writes" + formats);
}

ImageStream::ImageStream(const std::string& path, Format format, int width, int height, const Colormap::Map& map,
                         int bitDepth)
    : path_(path), format_(format), width_(width), height_(height), map_(map), bitDepth_(bitDepth), output_(path) {
    const int channels = map_.isGrey() ? 1 : 3;
    if (format_ == Format::Png) {
        png_ = std::make_unique<Png>();
        if (!png_->begin(output_.file(), width, height, channels, bitDepth))
            throw CliError("cannot write '" + path_ + "': " + (png_->message[0] ? png_->message : "libpng failed"));
        png_->row.resize(static_cast<std::size_t>(width) * channels * (bitDepth / 8));
        return;
    }
    exr_ = std::make_unique<Exr>(output_.file(), path_);
    Imf::Header header(width, height);
    header.compression() = Imf::ZIP_COMPRESSION;
    if (channels == 1) {
        header.channels().insert("Y", Imf::Channel(Imf::FLOAT));
    } else {
        for (const char* name : {"R", "G", "B"}) header.channels().insert(name, Imf::Channel(Imf::FLOAT));
    }
    try {
        exr_->file = std::make_unique<Imf::OutputFile>(exr_->stream, header, 0);
    } catch (const CliError&) {
        throw;
    } catch (const std::exception& e) {
        throw CliError("cannot write '" + path_ + "': " + e.what());
    }
}

ImageStream::~ImageStream() = default;

void ImageStream::writeRows(const float* values, int rows) {
    if (rows <= 0) return;
    const std::size_t count = static_cast<std::size_t>(width_) * rows;
    if (png_) {
        for (int r = 0; r < rows; ++r) {
            samples_.clear();
            Colormap::appendSamples(values + static_cast<std::size_t>(r) * width_, width_, map_, bitDepth_, samples_);
            unsigned char* out = png_->row.data();
            // PNG stores 16-bit samples most significant byte first.
            for (const std::uint16_t s : samples_) {
                if (bitDepth_ == 8) {
                    *out++ = static_cast<unsigned char>(s);
                } else {
                    *out++ = static_cast<unsigned char>(s >> 8);
                    *out++ = static_cast<unsigned char>(s & 0xFF);
                }
            }
            if (!png_->writeRow(png_->row.data()))
                throw CliError("cannot write '" + path_ + "': " + (png_->message[0] ? png_->message : "libpng failed"));
        }
        written_ += rows;
        return;
    }

    // The frame buffer is addressed by absolute row: base + y * yStride.
    const bool grey = map_.isGrey();
    const std::size_t channels = grey ? 1 : 3;
    const float* data = values;
    if (!grey) {
        channels_.resize(count * 3);
        for (std::size_t i = 0; i < count; ++i) {
            const Colormap::Rgb c = map_.colour(values[i]);
            for (std::size_t k = 0; k < 3; ++k) channels_[3 * i + k] = static_cast<float>(c[k]);
        }
        data = channels_.data();
    }
    const std::size_t xStride = channels * sizeof(float), yStride = xStride * width_;
    const auto origin = reinterpret_cast<std::uintptr_t>(data) - static_cast<std::uintptr_t>(written_) * yStride;
    Imf::FrameBuffer frame;
    if (grey) {
        frame.insert("Y", Imf::Slice(Imf::FLOAT, reinterpret_cast<char*>(origin), xStride, yStride));
    } else {
        const char* names[] = {"R", "G", "B"};
        for (std::size_t k = 0; k < 3; ++k)
            frame.insert(names[k], Imf::Slice(Imf::FLOAT, reinterpret_cast<char*>(origin + k * sizeof(float)),
                                              xStride, yStride));
    }
    try {
        exr_->file->setFrameBuffer(frame);
        exr_->file->writePixels(rows);
    } catch (const CliError&) {
        throw;
    } catch (const std::exception& e) {
        throw CliError("cannot write '" + path_ + "': " + e.what());
    }
    written_ += rows;
}

void ImageStream::commit() { finishRows().commit(); }

AtomicOutput& ImageStream::finishRows() {
    if (written_ != height_)
        throw CliError("internal: " + std::to_string(written_) + " of " + std::to_string(height_) + " rows written",
                       CliError::kEnvironment);
    if (png_ && !png_->end())
        throw CliError("cannot write '" + path_ + "': " + (png_->message[0] ? png_->message : "libpng failed"));
    if (exr_) {
        try {
            exr_->file.reset();  // writes the table of line offsets
        } catch (const std::exception& e) {
            throw CliError("cannot write '" + path_ + "': " + e.what());
        }
        if (exr_->stream.failed()) throw CliError("cannot write '" + path_ + "': " + std::strerror(errno));
    }
    return output_;
}

}  // namespace gritwell
