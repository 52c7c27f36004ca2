// The preview image: its size rule, the pixel formula and its 8-bit wrap.

#include <iterator>
#include <limits>

#include <QTest>

#include <gtest/gtest.h>

#include "core/FloatToInt.h"
#include "core/Texture3D.h"
#include "dialog/ImageArea.h"
#include "dialog/MainWindow.h"

using namespace gritwell;

namespace {

// A texture whose value is a chosen function of the point; it counts its
// evaluations.
class ProbeTexture final : public Texture3D {
public:
    explicit ProbeTexture(float (*f)(float, float, float)) : f_(f) {}
    float operator()(const float* p) override {
        ++evaluations;
        return f_(p[0], p[1], p[2]);
    }
    int evaluations = 0;

private:
    float (*f_)(float, float, float);
};

QRgb grey(int g) { return qRgb(g, g, g); }

}  // namespace

TEST(ImageArea, StartsWhiteAndANullTextureIsWhite) {
    ImageArea area(nullptr, nullptr);
    EXPECT_EQ(area.image().size(), QSize(256, 256));
    EXPECT_EQ(area.image().format(), QImage::Format_RGB32);
    EXPECT_EQ(area.image().pixel(17, 200), grey(255));

    ProbeTexture black([](float, float, float) { return 0.0f; });
    area.redraw(&black);
    EXPECT_EQ(area.image().pixel(17, 200), grey(0));
    area.redraw(nullptr);
    for (const QPoint p : {QPoint(0, 0), QPoint(17, 200), QPoint(255, 255)}) EXPECT_EQ(area.image().pixel(p), grey(255));
}

TEST(ImageArea, GreyLevelsWrapInsteadOfSaturating) {
    ImageArea area(nullptr, nullptr);
    const struct {
        float (*value)(float, float, float);
        QRgb expected;
    } cases[] = {
        {[](float, float, float) { return 1.0f; }, grey(255)},
        {[](float, float, float) { return 1.01f; }, grey(1)},     // 257 keeps its low 8 bits
        {[](float, float, float) { return 0.5f; }, grey(127)},    // 127.5 truncated
        {[](float, float, float) { return -0.5f; }, grey(129)},   // -127 is 0x...81
        {[](float, float, float) { return std::numeric_limits<float>::quiet_NaN(); }, grey(0)},
    };
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        ProbeTexture texture(cases[i].value);
        area.redraw(&texture);
        EXPECT_EQ(area.image().pixel(3, 4), cases[i].expected) << "case " << i;
    }
}

TEST(ImageArea, PixelsSampleTheSliceAroundTheOrigin) {
    ImageArea area(nullptr, nullptr);
    area.resize(200, 200);
    area.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&area));
    ASSERT_EQ(area.image().size(), QSize(200, 200));
    // x and y from -0.5 to just under 0.5; rows run down the texture's y.
    ProbeTexture xRamp([](float x, float, float z) { return z == 0.0f ? x + 0.5f : 0.0f; });
    area.redraw(&xRamp);
    EXPECT_EQ(xRamp.evaluations, 200 * 200);
    EXPECT_EQ(area.image().pixel(0, 0), grey(0));
    EXPECT_EQ(area.image().pixel(199, 199), grey(253));

    ProbeTexture yRamp([](float, float y, float) { return y + 0.5f; });
    area.redraw(&yRamp);
    EXPECT_EQ(area.image().pixel(100, 0), grey(0));
    EXPECT_EQ(area.image().pixel(0, 100), grey(127));
}

TEST(ImageArea, AWideWidgetGetsASquareImageOfTheCurrentGenerator) {
    MainWindow window(nullptr);
    ImageArea area(nullptr, &window);
    area.resize(300, 200);
    area.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&area));
    ASSERT_EQ(area.image().size(), QSize(200, 200));

    // The dialog opens on the checkerboard.
    Texture3D* checkerboard = window.getCurrentTexture();
    for (const QPoint pixel : {QPoint(0, 0), QPoint(199, 199), QPoint(40, 160)}) {
        const float p[3] = {float(pixel.x()) / 200.0f - 0.5f, float(pixel.y()) / 200.0f - 0.5f, 0.0f};
        const int g = truncToInt(255.0 * double((*checkerboard)(p)));
        EXPECT_EQ(area.image().pixel(pixel), grey(g)) << pixel.x() << "," << pixel.y();
    }
}

TEST(ImageArea, ResizingToTheImagesOwnSizeDoesNotRender) {
    ImageArea area(nullptr, nullptr);
    ProbeTexture texture([](float, float, float) { return 0.0f; });
    area.redraw(&texture);
    texture.evaluations = 0;
    area.resize(256, 256);
    area.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&area));
    EXPECT_EQ(area.image().pixel(0, 0), grey(0));  // kept, not re-rendered white

    area.resize(64, 100);
    EXPECT_TRUE(QTest::qWaitFor([&] { return area.image().size() == QSize(64, 64); }));
    EXPECT_EQ(area.image().pixel(0, 0), grey(255));  // no current texture: white
    EXPECT_EQ(texture.evaluations, 0);
}
