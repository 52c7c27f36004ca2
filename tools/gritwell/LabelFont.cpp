#include "LabelFont.h"

#include <stb_truetype.h>

#include <cmath>
#include <fstream>
#include <iterator>
#include <vector>

#include "CliError.h"

namespace gritwell {

struct LabelFont::Impl {
    std::vector<unsigned char> data;
    stbtt_fontinfo font{};
    float scale = 0.0f;
    int ascent = 0;
};

LabelFont::LabelFont(float pixelHeight) : impl_(std::make_unique<Impl>()) {
    std::ifstream in(kFontPath, std::ios::binary);
    impl_->data.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    if (impl_->data.empty() ||
        !stbtt_InitFont(&impl_->font, impl_->data.data(), stbtt_GetFontOffsetForIndex(impl_->data.data(), 0))) {
        throw CliError(std::string("cannot load the label font ") + kFontPath +
                           " (Debian package fonts-dejavu-core)",
                       CliError::kEnvironment);
    }
    impl_->scale = stbtt_ScaleForPixelHeight(&impl_->font, pixelHeight);
    int descent = 0, lineGap = 0;
    stbtt_GetFontVMetrics(&impl_->font, &impl_->ascent, &descent, &lineGap);
}

LabelFont::~LabelFont() = default;

int LabelFont::textWidth(std::string_view text) const {
    float width = 0.0f;
    for (unsigned char c : text) {
        int advance = 0, bearing = 0;
        stbtt_GetCodepointHMetrics(&impl_->font, c, &advance, &bearing);
        width += advance * impl_->scale;
    }
    return static_cast<int>(std::ceil(width));
}

void LabelFont::draw(GreyImage& image, int x, int y, std::string_view text, std::uint8_t ink) const {
    const int baseline = y + static_cast<int>(std::lround(impl_->ascent * impl_->scale));
    float penX = static_cast<float>(x);
    for (unsigned char c : text) {
        int w = 0, h = 0, xoff = 0, yoff = 0;
        unsigned char* glyph = stbtt_GetCodepointBitmap(&impl_->font, 0, impl_->scale, c, &w, &h, &xoff, &yoff);
        const int left = static_cast<int>(std::lround(penX)) + xoff;
        for (int gy = 0; gy < h; ++gy)
            for (int gx = 0; gx < w; ++gx) {
                const int px = left + gx, py = baseline + yoff + gy;
                if (px < 0 || py < 0 || px >= image.width || py >= image.height) continue;
                const int a = glyph[gy * w + gx];
                std::uint8_t& dst = image.at(px, py);
                dst = static_cast<std::uint8_t>((ink * a + dst * (255 - a)) / 255);
            }
        stbtt_FreeBitmap(glyph, nullptr);
        int advance = 0, bearing = 0;
        stbtt_GetCodepointHMetrics(&impl_->font, c, &advance, &bearing);
        penX += advance * impl_->scale;
    }
}

}  // namespace gritwell
