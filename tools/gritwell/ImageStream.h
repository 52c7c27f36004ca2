#pragma once
// ImageStream: a picture written a band of rows at a time, so that its size
// costs no memory: PNG (8 or 16 bits, through libpng) or OpenEXR (32-bit
// float, unclamped, through the OpenEXR library). Values go through a colour
// map: the grey map gives one channel (PNG grey, EXR "Y", the value itself),
// the others red, green and blue. The file is an AtomicOutput: it appears
// whole on commit() or not at all.

#include <memory>
#include <string>
#include <vector>

#include "AtomicOutput.h"
#include "Colormap.h"

namespace gritwell {

class ImageStream {
public:
    enum class Format { Png, Exr };

    // The format an output's extension names (.png, .exr, any case); a
    // CliError (status 2) for others. Standard output and devices take PNG.
    static Format formatOf(const CommandFile& output);

    // Opens the output (a CliError when it cannot); `bitDepth` (8 or 16)
    // is for PNG only.
    ImageStream(const std::string& path, Format format, int width, int height, const Colormap::Map& map,
                int bitDepth);
    ~ImageStream();
    ImageStream(const ImageStream&) = delete;
    ImageStream& operator=(const ImageStream&) = delete;

    // The next `rows` rows, top first, `width` values each.
    void writeRows(const float* values, int rows);
    // Once every row is written: puts the file in place.
    void commit();
    // Once every row is written: ends the picture's data and hands over the
    // output, for a command that commits several together (AtomicOutput::commitAll).
    AtomicOutput& finishRows();

private:
    struct Png;
    struct Exr;
    std::string path_;
    Format format_;
    int width_, height_;
    Colormap::Map map_;
    int bitDepth_;
    int written_ = 0;
    AtomicOutput output_;
    std::unique_ptr<Png> png_;
    std::unique_ptr<Exr> exr_;
    std::vector<std::uint16_t> samples_;
    std::vector<float> channels_;
};

}  // namespace gritwell
