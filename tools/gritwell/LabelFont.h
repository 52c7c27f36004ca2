#pragma once
// LabelFont: text for the gallery's labels, drawn with Debian's DejaVu Sans
// through stb_truetype.

#include <memory>
#include <string_view>

#include "PngWriter.h"

namespace gritwell {

class LabelFont {
public:
    // Loads the font file; throws CliError when it is missing.
    explicit LabelFont(float pixelHeight);
    ~LabelFont();
    LabelFont(const LabelFont&) = delete;
    LabelFont& operator=(const LabelFont&) = delete;

    int textWidth(std::string_view text) const;
    // Draws text in the grey `ink` with its top-left corner at (x, y),
    // blending by coverage and clipping to the image.
    void draw(GreyImage& image, int x, int y, std::string_view text, std::uint8_t ink) const;

    static constexpr const char* kFontPath = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace gritwell
