// Baking onto UV layouts, ramps, tileable slices and the streamed pictures
// they go into, piece by piece; the commands themselves are in CommandLineTest.

#include <png.h>

#include <ImfChannelList.h>
#include <ImfFrameBuffer.h>
#include <ImfHeader.h>
#include <ImfInputFile.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <filesystem>
#include <string>
#include <unistd.h>
#include <vector>

#include <gtest/gtest.h>

#include "CliError.h"
#include "Colormap.h"
#include "ImageStream.h"
#include "MapBaker.h"
#include "SliceRenderer.h"
#include "core/Texture3D.h"
#include "textures/TextureFactory.h"

using namespace gritwell;
namespace fs = std::filesystem;

namespace {

// A value that tells the evaluated point back: x + 10 y + 100 z.
const BatchEvaluator kProbe = [](const float* p, int n, float* out) {
    for (int i = 0; i < n; ++i) out[i] = p[3 * i] + 10.0f * p[3 * i + 1] + 100.0f * p[3 * i + 2];
};

// A square of two triangles whose texture coordinates are its x and y
// (moved by `shift` tiles), at height z.
UvMesh square(float u0, float v0, float u1, float v1, float z, float shiftU = 0, float shiftV = 0) {
    UvMesh m;
    const float corners[4][2] = {{u0, v0}, {u1, v0}, {u1, v1}, {u0, v1}};
    for (const auto& c : corners) {
        m.positions.insert(m.positions.end(), {c[0], c[1], z});
        m.uvs.insert(m.uvs.end(), {c[0] + shiftU, c[1] + shiftV});
    }
    m.triangles = {0, 1, 2, 0, 2, 3};
    return m;
}

void append(UvMesh& to, const UvMesh& more) {
    const auto base = static_cast<std::uint32_t>(to.vertexCount());
    to.positions.insert(to.positions.end(), more.positions.begin(), more.positions.end());
    to.uvs.insert(to.uvs.end(), more.uvs.begin(), more.uvs.end());
    for (const std::uint32_t i : more.triangles) to.triangles.push_back(base + i);
}

// In bands of 16 rows, so that small maps have several.
std::vector<float> bakeAll(const UvMesh& mesh, int size, int padding, const BatchEvaluator& evaluate = kProbe) {
    const MapBaker baker(mesh, size, padding, 16);
    std::vector<float> map(static_cast<std::size_t>(size) * size);
    MapBaker::Scratch scratch;
    for (int band = 0; band < baker.bands(); ++band)
        baker.bake(band, evaluate, scratch, &map[static_cast<std::size_t>(baker.firstRow(band)) * size]);
    return map;
}

}  // namespace

// ---- baking ---------------------------------------------------------------------

TEST(MapBaker, TexelsHoldTheValueAtTheirPointOfTheSurface) {
    // The whole square, wrapped in from other tiles too: each texel's
    // centre (u, v) is the point (u, v, z), v counted up from the bottom row.
    struct Case {
        const char* what;
        float shiftU, shiftV;
    };
    const Case cases[] = {{"in the unit square", 0, 0}, {"a tile to the right", 1, 0}, {"tiles away both ways", -3, 2}};
    constexpr int n = 40;  // more than two bands
    for (const Case& c : cases) {
        const UvMesh mesh = square(0, 0, 1, 1, 0.25f, c.shiftU, c.shiftV);
        EXPECT_EQ(MapBaker(mesh, n, 0).wrapped(), c.shiftU == 0 && c.shiftV == 0 ? 0u : 2u) << c.what;
        const std::vector<float> map = bakeAll(mesh, n, 0);
        for (int y = 0; y < n; ++y)
            for (int x = 0; x < n; ++x) {
                const double u = (x + 0.5) / n, v = 1.0 - (y + 0.5) / n;
                ASSERT_NEAR(map[std::size_t(y) * n + x], u + 10 * v + 25, 1e-4) << c.what << " texel " << x << ',' << y;
            }
    }
}

TEST(MapBaker, LaterFacesWinAndFacesAcrossTheEdgeWrap) {
    constexpr int n = 8;
    UvMesh overlap = square(0, 0, 1, 1, 0.0f);
    append(overlap, square(0, 0, 1, 1, 1.0f));  // the same layout, a unit higher
    const std::vector<float> map = bakeAll(overlap, n, 0);
    for (int i = 0; i < n * n; ++i) EXPECT_GT(map[i], 100.0f) << "texel " << i << " shows the earlier face";

    // A face from u = 0.75 to 1.25 covers the right quarter and the left one.
    UvMesh across = square(0.75f, 0, 1.25f, 1, 0.0f);
    const std::vector<float> wrapped = bakeAll(across, n, 0);
    for (int x = 0; x < n; ++x) {
        const bool covered = x < 2 || x >= 6;
        EXPECT_EQ(wrapped[x] != 0.0f, covered) << "column " << x;
    }
    EXPECT_NEAR(wrapped[0], 1.0625f + 10 * 0.9375f, 1e-4);  // u 0.0625 is the face's 1.0625
}

TEST(MapBaker, PaddingFillsItsWidthAcrossBandsAndNoFurther) {
    // A strip of rows 14..17 of 64, across the boundary of two bands, whose
    // value is its x alone: padding carries each column's value up and down.
    constexpr int n = 64;
    const UvMesh strip = square(0, 1 - 18.0f / n, 1, 1 - 14.0f / n, 0.0f);
    const BatchEvaluator xOnly = [](const float* p, int count, float* out) {
        for (int i = 0; i < count; ++i) out[i] = 1 + p[3 * i];
    };
    for (const int padding : {0, 3, 4}) {
        const std::vector<float> map = bakeAll(strip, n, padding, xOnly);
        for (int y = 0; y < n; ++y) {
            const bool filled = y >= 14 - padding && y < 18 + padding;
            for (const int x : {5, 30, 58}) {
                const float v = map[std::size_t(y) * n + x];
                if (filled)
                    EXPECT_NEAR(v, 1 + (x + 0.5) / n, 1e-5) << "padding " << padding << " row " << y << " col " << x;
                else
                    EXPECT_EQ(v, 0.0f) << "padding " << padding << " row " << y << " col " << x;
            }
        }
    }
}

TEST(MapBaker, FacesItCannotLayOutAreCounted) {
    UvMesh mesh = square(0, 0, 0.5f, 0.5f, 0.0f);
    const std::uint32_t good = 0;
    struct Bad {
        float u, v, x;
    };
    const Bad bad[] = {{std::nanf(""), 0.2f, 0}, {0.2f, 0.2f, std::numeric_limits<float>::infinity()},
                       {0.3f, 0.3f, 0},     // all three corners at one place
                       {2.5f, 0.5f, 0}};    // across more than the whole map
    for (const Bad& b : bad) {
        const auto i = static_cast<std::uint32_t>(mesh.vertexCount());
        mesh.positions.insert(mesh.positions.end(), {b.x, 0, 0, 0, 0, 0, 0, 0, 0});
        const bool tiny = b.u == 0.3f;
        mesh.uvs.insert(mesh.uvs.end(), {b.u, b.v, tiny ? 0.3f : 0.1f, tiny ? 0.3f : 0.1f, tiny ? 0.3f : 0.1f,
                                         tiny ? 0.3f : 0.4f});
        mesh.triangles.insert(mesh.triangles.end(), {i, i + 1, i + 2});
    }
    mesh.triangles.insert(mesh.triangles.end(), {good, good + 1, good + 2});
    const MapBaker baker(mesh, 16, 2);
    EXPECT_EQ(baker.leftOut().notFinite, 2u);
    EXPECT_EQ(baker.leftOut().noArea, 1u);
    EXPECT_EQ(baker.leftOut().tooLarge, 1u);
    for (const int size : {0, 65537})
        EXPECT_THROW(MapBaker(mesh, size, 0), CliError) << size;
}

// ---- ramps ------------------------------------------------------------------------

TEST(Colormap, RampsFromStopsAndNames) {
    using C = Colormap::Rgb;
    const Colormap::Map ramp = Colormap::parseRamp("0:#000000,0.5:#ff0000,2:#ffffff");
    struct Case {
        float value;
        C colour;
    };
    const Case cases[] = {{-1.0f, {0, 0, 0}}, {0.25f, {0.5, 0, 0}}, {0.5f, {1, 0, 0}},  {1.25f, {1, 0.5, 0.5}},
                          {9.0f, {1, 1, 1}},  {std::nanf(""), {0, 0, 0}}};
    for (const Case& c : cases)
        for (int k = 0; k < 3; ++k) EXPECT_NEAR(ramp.colour(c.value)[k], c.colour[k], 1e-12) << c.value << ' ' << k;
    EXPECT_FALSE(ramp.isGrey());
    EXPECT_EQ(Colormap::parseRamp("viridis"), Colormap::Map::Viridis);
    EXPECT_EQ(Colormap::parseRamp("wood").colour(0.5f), Colormap::parseRamp("0:#000000,0.5:#7a4a20").colour(1.0f));

    const std::pair<const char*, const char*> refused[] = {
        {"0:#000000,0.5", "has no ':'"},
        {"x:#000000", "'x' is not a finite number"},
        {"0:#00000g", "is not a colour #RRGGBB"},
        {"0:red", "is not a colour #RRGGBB"},
        {"1:#000000,0.5:#ffffff", "positions must not decrease"},
        {"inf:#000000", "is not a finite number"},
    };
    for (const auto& [text, message] : refused) {
        try {
            Colormap::parseRamp(text);
            ADD_FAILURE() << text << " was taken";
        } catch (const CliError& e) {
            EXPECT_NE(std::string(e.what()).find(message), std::string::npos) << text << ": " << e.what();
        }
    }
}

// ---- tileable slices ------------------------------------------------------------------

TEST(SliceRenderer, TileableSlicesWrapAsSmoothlyAsTheyRunForEveryGenerator) {
    constexpr int n = 64;
    for (const GeneratorInfo* info : TextureFactory::hostGenerators()) {
        TexturePtr texture(TextureFactory::create(info->name));
        const BatchEvaluator evaluate = [&](const float* p, int count, float* out) { (*texture)(p, count, out); };
        SliceView view;
        view.size = n;
        view.tileable = true;
        std::vector<float> v(std::size_t(n) * n);
        sliceRows(evaluate, view, 0, n, v.data());
        auto at = [&](int x, int y) { return static_cast<double>(v[std::size_t(y) * n + x]); };
        // Mean steps between neighbours inside, and across each pair of edges.
        double inside = 0, acrossX = 0, acrossY = 0;
        int steps = 0;
        for (int y = 0; y < n; ++y)
            for (int x = 0; x + 1 < n; ++x, ++steps) inside += std::fabs(at(x + 1, y) - at(x, y)) + std::fabs(at(y, x + 1) - at(y, x));
        for (int i = 0; i < n; ++i) {
            acrossX += std::fabs(at(0, i) - at(n - 1, i));
            acrossY += std::fabs(at(i, 0) - at(i, n - 1));
        }
        inside /= 2.0 * steps;
        acrossX /= n;
        acrossY /= n;
        // No sharper than the average step inside; a plain slice's edges
        // are as far apart as any two places of the texture.
        EXPECT_LE(acrossX, inside + 1e-6) << info->name << " left and right edges";
        EXPECT_LE(acrossY, inside + 1e-6) << info->name << " top and bottom edges";
    }
}

TEST(SliceRenderer, TileableSlicesKeepTheInteriorAndRowsComeOutAlike) {
    // Outside the margins a tileable slice is the slice itself; any band of
    // rows is those rows of the whole.
    constexpr int n = 32;
    SliceView plain;
    plain.size = n;
    SliceView tile = plain;
    tile.tileable = true;
    std::vector<float> whole(std::size_t(n) * n), tiled(whole.size()), band(std::size_t(5) * n);
    sliceRows(kProbe, plain, 0, n, whole.data());
    sliceRows(kProbe, tile, 0, n, tiled.data());
    const int margin = static_cast<int>(kTileMargin * n);
    for (int y = margin; y < n - margin; ++y)
        for (int x = margin; x < n - margin; ++x) EXPECT_EQ(tiled[std::size_t(y) * n + x], whole[std::size_t(y) * n + x]) << x << ',' << y;
    EXPECT_EQ(sliceValues(kProbe, plain), whole);
    sliceRows(kProbe, tile, 20, 5, band.data());
    EXPECT_TRUE(std::equal(band.begin(), band.end(), tiled.begin() + 20 * n));
}

// ---- streamed pictures -------------------------------------------------------------------

class Streams : public testing::Test {
protected:
    void SetUp() override {
        dir_ = fs::temp_directory_path() / ("gritwell-streams-" + std::to_string(::getpid()));
        fs::create_directories(dir_);
    }
    void TearDown() override { fs::remove_all(dir_); }
    fs::path dir_;
};

TEST_F(Streams, ExrHoldsTheValuesUnclampedOrTheirColours) {
    const std::vector<float> values = {0.25f, -1.5f, 7.0f, std::nanf(""), 0.5f, 1.0f};
    struct Case {
        const char* map;
        std::vector<std::string> channels;
    };
    const Case cases[] = {{"grey", {"Y"}}, {"heat", {"R", "G", "B"}}, {"0:#000000,1:#ff8000", {"R", "G", "B"}}};
    for (const Case& c : cases) {
        const Colormap::Map map = Colormap::parseRamp(c.map);
        const std::string file = (dir_ / "v.exr").string();
        ImageStream out(file, ImageStream::Format::Exr, 3, 2, map, 8);
        out.writeRows(values.data(), 1);  // a row at a time, as bands arrive
        out.writeRows(values.data() + 3, 1);
        out.commit();

        Imf::InputFile in(file.c_str());
        const Imath::Box2i window = in.header().dataWindow();
        ASSERT_EQ(window.max.x - window.min.x + 1, 3) << c.map;
        ASSERT_EQ(window.max.y - window.min.y + 1, 2) << c.map;
        std::vector<std::string> names;
        for (auto i = in.header().channels().begin(); i != in.header().channels().end(); ++i) {
            names.emplace_back(i.name());
            EXPECT_EQ(i.channel().type, Imf::FLOAT) << c.map;
        }
        std::sort(names.begin(), names.end());
        std::vector<std::string> expected = c.channels;
        std::sort(expected.begin(), expected.end());
        ASSERT_EQ(names, expected) << c.map;
        std::vector<float> read(values.size() * c.channels.size());
        Imf::FrameBuffer frame;
        const std::size_t stride = c.channels.size() * sizeof(float);
        for (std::size_t k = 0; k < c.channels.size(); ++k)
            frame.insert(c.channels[k], Imf::Slice(Imf::FLOAT, reinterpret_cast<char*>(read.data() + k), stride, stride * 3));
        in.setFrameBuffer(frame);
        in.readPixels(0, 1);
        for (std::size_t i = 0; i < values.size(); ++i) {
            if (c.channels.size() == 1) {
                EXPECT_TRUE(read[i] == values[i] || (std::isnan(read[i]) && std::isnan(values[i]))) << i;
                continue;
            }
            const Colormap::Rgb rgb = map.colour(values[i]);
            for (int k = 0; k < 3; ++k) EXPECT_EQ(read[3 * i + k], static_cast<float>(rgb[k])) << c.map << ' ' << i;
        }
    }
}

TEST_F(Streams, PngRowsAreThePictureOfTheWholeAndUnknownFormatsAreRefused) {
    const std::vector<float> values = {0.0f, 0.2f, 0.5f, 1.0f, std::nanf(""), 0.7f, 0.9f, 0.1f, 0.3f};
    for (const char* map : {"grey", "viridis", "0:#102030,1:#f0e0d0"})
        for (const int depth : {8, 16}) {
            const Colormap::Map m = Colormap::parseRamp(map);
            const std::string file = (dir_ / "v.png").string();
            ImageStream out(file, ImageStream::Format::Png, 3, 3, m, depth);
            for (int row = 0; row < 3; ++row) out.writeRows(values.data() + 3 * row, 1);
            out.commit();
            std::FILE* f = std::fopen(file.c_str(), "rb");
            ASSERT_NE(f, nullptr);
            std::vector<unsigned char> bytes(static_cast<std::size_t>(fs::file_size(file)));
            ASSERT_EQ(std::fread(bytes.data(), 1, bytes.size(), f), bytes.size());
            std::fclose(f);
            EXPECT_EQ(bytes, encodePng(Colormap::picture(values, 3, 3, m, depth))) << map << ' ' << depth;
        }
    for (const char* name : {"x.jpg", "x", "x.EXRS"})
        EXPECT_THROW(ImageStream::formatOf({"-o", (dir_ / name).string()}), CliError) << name;
    EXPECT_EQ(ImageStream::formatOf({"-o", "x.EXR"}), ImageStream::Format::Exr);
}
