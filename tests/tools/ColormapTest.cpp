// Intensities to pixels: the colour maps, the PNG files they go into, and
// the first pictures a user sees: render's default slice and the gallery.

#include <png.h>

#include <cmath>
#include <csetjmp>
#include <cstring>
#include <fstream>
#include <iterator>
#include <set>

#include <gtest/gtest.h>

#include "Colormap.h"
#include "Gallery.h"
#include "PngWriter.h"
#include "RecordFile.h"
#include "SliceRenderer.h"
#include "textures/TextureFactory.h"

using namespace gritwell;

namespace {

struct Decoded {
    int bitDepth = 0, colourType = -1;
    bool hasGamma = false;
    std::vector<std::uint16_t> samples;
};

// libpng's own reading of the file, without transformations.
bool decode(const std::vector<unsigned char>& bytes, Decoded& d) {
    std::pair<const std::vector<unsigned char>*, std::size_t> source{&bytes, 0};
    png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    if (setjmp(png_jmpbuf(png))) {
        png_destroy_read_struct(&png, &info, nullptr);
        return false;
    }
    png_set_read_fn(png, &source, [](png_structp p, png_bytep out, png_size_t n) {
        auto* s = static_cast<std::pair<const std::vector<unsigned char>*, std::size_t>*>(png_get_io_ptr(p));
        if (s->second + n > s->first->size()) png_error(p, "truncated");
        std::memcpy(out, s->first->data() + s->second, n);
        s->second += n;
    });
    png_read_png(png, info, PNG_TRANSFORM_IDENTITY, nullptr);
    d.bitDepth = png_get_bit_depth(png, info);
    d.colourType = png_get_color_type(png, info);
    d.hasGamma = png_get_valid(png, info, PNG_INFO_gAMA) != 0;
    const png_bytepp rows = png_get_rows(png, info);
    const auto rowSamples = png_get_image_width(png, info) * png_get_channels(png, info);
    for (png_uint_32 y = 0; y < png_get_image_height(png, info); ++y)
        for (png_uint_32 i = 0; i < rowSamples; ++i)
            d.samples.push_back(d.bitDepth == 16 ? std::uint16_t(rows[y][2 * i] << 8 | rows[y][2 * i + 1]) : rows[y][i]);
    png_destroy_read_struct(&png, &info, nullptr);
    return true;
}

}  // namespace

TEST(Colormap, StopsLevelsAndTheGreyOfPaintedMeshes) {
    using C = std::array<double, 3>;
    EXPECT_EQ(Colormap::find("gray"), Colormap::Map::Grey);
    EXPECT_FALSE(Colormap::find("Heat"));
    EXPECT_EQ(Colormap::colour(Colormap::Map::Heat, 0.25f), (C{0.75, 0, 0}));  // on the way to red
    EXPECT_EQ(Colormap::colour(Colormap::Map::Heat, 0.5f), (C{1, 0.5, 0}));    // half way to yellow
    EXPECT_EQ(Colormap::colour(Colormap::Map::Heat, 7.0f), (C{1, 1, 1}));
    EXPECT_EQ(Colormap::colour(Colormap::Map::Heat, std::nanf("")), (C{0, 0, 0}));
    EXPECT_EQ(Colormap::colour(Colormap::Map::Viridis, -2.0f), (C{0x44 / 255.0, 0x01 / 255.0, 0x54 / 255.0}));
    EXPECT_EQ(Colormap::colour(Colormap::Map::Viridis, 1.0f), (C{0xfd / 255.0, 0xe7 / 255.0, 0x25 / 255.0}));

    EXPECT_EQ(Colormap::level(0.5, 8), 128);
    EXPECT_EQ(Colormap::level(0.5, 16), 32768);
    EXPECT_EQ(Colormap::level(1.5, 16), 65535);
    EXPECT_EQ(Colormap::level(std::nan(""), 16), 0);

    // Grey pictures are one channel and, at 8 bits, exactly toGrey's levels,
    // which the painted meshes' colours use.
    const std::vector<float> values = {0.0f, 0.2f, 0.5f, 1.0f, std::nanf(""), 0.7f};
    const Picture grey = Colormap::picture(values, 3, 2, Colormap::Map::Grey, 8);
    ASSERT_EQ(grey.channels, 1);
    for (std::size_t i = 0; i < values.size(); ++i) EXPECT_EQ(grey.samples[i], toGrey(values[i])) << i;
    EXPECT_EQ(Colormap::picture(values, 3, 2, Colormap::Map::Grey, 16).samples[1], 13107);  // 0.2 * 65535
    const Picture heat = Colormap::picture(values, 3, 2, Colormap::Map::Heat, 16);
    ASSERT_EQ(heat.samples.size(), 18u);
    EXPECT_EQ(heat.samples[9], 65535);
}

TEST(SliceRenderer, SamplesPixelCentresTopRowFirstWithYUp) {
    const BatchEvaluator probe = [](const float* p, int n, float* out) {
        for (int i = 0; i < n; ++i) out[i] = p[3 * i] + 10.0f * p[3 * i + 1] + 100.0f * p[3 * i + 2];
    };
    SliceView view;
    view.size = 2;
    view.z = 0.25f;
    // Centres at 1 and 3 across 4 units; the top row is y = 3.
    EXPECT_EQ(sliceValues(probe, view), (std::vector<float>{56, 58, 36, 38}));
}

TEST(PngWriter, SamplesArriveAsGivenAtEitherDepth) {
    for (const int depth : {8, 16}) {
        for (const int channels : {1, 3}) {
            Picture p{3, 2, channels, depth, {}};
            for (int i = 0; i < 6 * channels; ++i)
                p.samples.push_back(static_cast<std::uint16_t>((i * 4099 + 7) % (depth == 8 ? 256 : 65536)));
            Decoded d;
            ASSERT_TRUE(decode(encodePng(p), d)) << depth << ' ' << channels;
            EXPECT_EQ(d.bitDepth, depth);
            EXPECT_EQ(d.colourType, channels == 3 ? PNG_COLOR_TYPE_RGB : PNG_COLOR_TYPE_GRAY);
            // Intensities are stored as they are: no gamma for viewers to undo.
            EXPECT_FALSE(d.hasGamma);
            EXPECT_EQ(d.samples, p.samples) << depth << ' ' << channels;
        }
    }
    EXPECT_ANY_THROW(encodePng(Picture{2, 2, 1, 8, std::vector<std::uint16_t>(3)}));
}

// ---- the first pictures ---------------------------------------------------------

class FirstPictures : public testing::Test {
protected:
    static PluginLibrary& plugin() {
        static PluginLibrary library(GRITWELL_PLUGIN_PATH);
        return library;
    }
};

TEST_F(FirstPictures, EveryGeneratorButConstantShowsItsPatternAtRendersDefaults) {
    ASSERT_TRUE(plugin().ok()) << plugin().error();
    for (const GeneratorInfo* g : TextureFactory::hostGenerators()) {
        const GreyImage image = renderSlice(plugin(), defaultRecord(*g), SliceView{});
        const std::set<std::uint8_t> levels(image.pixels.begin(), image.pixels.end());
        EXPECT_EQ(levels.size() > 1, g->name != "Constant") << g->name;
    }
}

TEST_F(FirstPictures, TheReadmeGalleryIsWhatGalleryDrawsToday) {
    ASSERT_TRUE(plugin().ok()) << plugin().error();
    std::ifstream in(std::string(GRITWELL_SOURCE_DIR) + "/docs/images/gallery.png", std::ios::binary);
    const std::vector<unsigned char> bytes{std::istreambuf_iterator<char>(in), {}};
    Decoded readme;
    ASSERT_TRUE(decode(bytes, readme));
    const GreyImage today = renderGallery(plugin());
    const std::string regenerate = "regenerate it: build/gritwell gallery -o docs/images/gallery.png";
    ASSERT_EQ(readme.samples.size(), today.pixels.size()) << regenerate;
    // The tiles, pixel for pixel; the labels are left to the font.
    const GalleryLayout layout = galleryLayout();
    ASSERT_EQ(layout.tiles.size(), TextureFactory::allGenerators().size());
    for (const GalleryLayout::Corner& at : layout.tiles)
        for (int y = at.top; y < at.top + GalleryLayout::kTile; ++y)
            for (int x = at.left; x < at.left + GalleryLayout::kTile; ++x) {
                const std::size_t i = std::size_t(y) * today.width + x;
                ASSERT_EQ(readme.samples[i], today.pixels[i]) << "at " << x << ", " << y << "; " << regenerate;
            }
}
