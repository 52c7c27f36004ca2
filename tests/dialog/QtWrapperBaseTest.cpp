// The common transform block every panel carries, and the update it sends
// the host after each change.

#include <bit>
#include <cmath>
#include <cstring>
#include <limits>

#include <QDoubleSpinBox>
#include <QPushButton>
#include <QSlider>
#include <QTest>
#include <QVBoxLayout>

#include <gtest/gtest.h>

#include "DialogTestSupport.h"
#include "dialog/HostLink.h"
#include "dialog/panels/CheckerboardQtWrapper.h"

using namespace gritwell;
using dialogtest::hostUpdates;

namespace {

TransformData transformsOf(const QtWrapperBase& wrapper) {
    TransformData t;
    wrapper.getTransforms(t);
    return t;
}

// A checkerboard page on its own, as the registry builds it: the form goes
// on the page before the panel appends the common block.
struct FormFirstPage {
    FormFirstPage() { ui.setupUi(&page); }
    CheckerboardTexture3D texture;
    Ui_CheckerboardWidget ui;
    QWidget page;
};

struct Panel : FormFirstPage {
    Panel() : wrapper(&texture, nullptr, &ui, &page, nullptr) {}
    template <class W>
    W* control(const char* name) const {
        return page.findChild<W*>(name);
    }
    CheckerboardQtWrapper wrapper;
};

// The least a panel can be.
struct BarePanel final : QtWrapperBase {
    BarePanel(Texture3D* texture, QWidget* page) : QtWrapperBase(texture, nullptr, page, nullptr) {}
    void updateUI() override {}
};

}  // namespace

TEST(CommonControls, APageWithoutALayoutGetsAVerticalOne) {
    CheckerboardTexture3D texture;
    QWidget page;
    BarePanel panel(&texture, &page);
    auto* layout = qobject_cast<QVBoxLayout*>(page.layout());
    ASSERT_NE(layout, nullptr);
    ASSERT_EQ(layout->count(), 2);
    EXPECT_EQ(layout->itemAt(1)->widget()->objectName(), "CommonWidget");
    EXPECT_NE(page.findChild<QSlider*>("transX"), nullptr);
}

TEST(CommonControls, FormAndRanges) {
    Panel p;
    // The common block sits under the generator's controls, after a stretch.
    auto* layout = qobject_cast<QVBoxLayout*>(p.page.layout());
    ASSERT_NE(layout, nullptr);
    const int n = layout->count();
    EXPECT_EQ(layout->stretch(n - 2), 10);
    EXPECT_EQ(layout->itemAt(n - 1)->widget()->objectName(), "CommonWidget");

    for (const char* name : {"transX", "transY", "transZ"}) {
        EXPECT_EQ(p.control<QSlider>(name)->minimum(), -100) << name;
        EXPECT_EQ(p.control<QSlider>(name)->maximum(), 100) << name;
    }
    for (const char* name : {"rotX", "rotY", "rotZ"}) {
        EXPECT_EQ(p.control<QSlider>(name)->minimum(), -180) << name;
        EXPECT_EQ(p.control<QSlider>(name)->maximum(), 180) << name;
    }
    for (const char* name : {"scaleX", "scaleY", "scaleZ"}) {
        EXPECT_EQ(p.control<QSlider>(name)->minimum(), 1) << name;
        EXPECT_EQ(p.control<QSlider>(name)->maximum(), 100) << name;
        EXPECT_EQ(p.control<QSlider>(name)->value(), 100) << name;
    }
    auto* scale = p.control<QDoubleSpinBox>("overallScale");
    EXPECT_EQ(scale->decimals(), 4);
    EXPECT_DOUBLE_EQ(scale->minimum(), 0.0001);
    EXPECT_DOUBLE_EQ(scale->maximum(), 512.0);
    EXPECT_DOUBLE_EQ(scale->singleStep(), 0.1);
    EXPECT_DOUBLE_EQ(scale->value(), 1.0);
    auto* interactive = p.control<QPushButton>("newInteractiveUpdate");
    EXPECT_TRUE(interactive->isCheckable());
    EXPECT_FALSE(interactive->isChecked());
    EXPECT_EQ(interactive->text(), "      Interactive Update          ");
}

TEST(CommonControls, LoadingQuantisesToWhatTheControlsShow) {
    dialogtest::RecordingHost host;
    Panel p;
    TransformData in;
    in.flags = 12345;           // carried untouched
    in.xOffset = 0.123f;        // slider 12, read back as 0.12
    in.yOffset = 0.001f;        // slider 0, which it already shows: no report, kept
    in.zOffset = -0.257f;       // truncated toward zero: -25
    in.xAngle = 0.75f;          // 270 degrees, clamped by the slider to 180
    in.yAngle = 0.5f;           // 180
    in.overallScale = 0.0f;     // clamped by the spin box to 0.0001
    in.zScale = 0.257f;         // 25, read back in single precision
    p.wrapper.setTransforms(in);

    EXPECT_EQ(p.control<QSlider>("transX")->value(), 12);
    EXPECT_EQ(p.control<QSlider>("transZ")->value(), -25);
    EXPECT_EQ(p.control<QSlider>("rotX")->value(), 180);
    EXPECT_EQ(p.control<QSlider>("rotY")->value(), 180);
    EXPECT_EQ(p.control<QSlider>("scaleZ")->value(), 25);
    EXPECT_DOUBLE_EQ(p.control<QDoubleSpinBox>("overallScale")->value(), 0.0001);

    const TransformData out = transformsOf(p.wrapper);
    EXPECT_EQ(out.flags, 12345);
    EXPECT_EQ(out.xOffset, static_cast<float>(12 / 100.0));
    EXPECT_EQ(out.yOffset, 0.001f);
    EXPECT_EQ(out.zOffset, static_cast<float>(-25 / 100.0));
    EXPECT_EQ(out.xAngle, 0.5f);
    EXPECT_EQ(out.yAngle, 0.5f);
    EXPECT_EQ(out.overallScale, static_cast<float>(0.0001));
    EXPECT_EQ(out.zScale, 25.0f / 100.0f);
    EXPECT_EQ(out.xScale, 1.0f);
    // One update per control that moved: transX, transZ, rotX, rotY, the
    // spin box and scaleZ.
    EXPECT_EQ(hostUpdates().size(), 6u);
}

TEST(CommonControls, DamagedWordsLandOnTheSliderLimits) {
    dialogtest::RecordingHost host;
    Panel p;
    TransformData in;
    in.xOffset = std::numeric_limits<float>::quiet_NaN();
    in.yAngle = std::numeric_limits<float>::infinity();
    in.xScale = -1e30f;
    p.wrapper.setTransforms(in);
    const TransformData out = transformsOf(p.wrapper);
    EXPECT_EQ(out.xOffset, -1.0f);  // NaN converts to INT_MIN, clamped to -100
    EXPECT_EQ(out.yAngle, -0.5f);
    EXPECT_EQ(out.xScale, 0.01f);
}

TEST(CommonControls, EachControlStoresItsWordAndUpdatesTheHost) {
    dialogtest::RecordingHost host;
    Panel p;
    const struct {
        const char* slider;
        int value;
        float TransformData::*word;
        float expected;
    } cases[] = {
        {"transX", 37, &TransformData::xOffset, static_cast<float>(37 / 100.0)},
        {"transY", -3, &TransformData::yOffset, static_cast<float>(-3 / 100.0)},
        {"transZ", 100, &TransformData::zOffset, 1.0f},
        {"rotX", 90, &TransformData::xAngle, 0.25f},
        {"rotY", -45, &TransformData::yAngle, static_cast<float>(-45 / 360.0)},
        {"rotZ", 7, &TransformData::zAngle, static_cast<float>(7 / 360.0)},
        {"scaleX", 33, &TransformData::xScale, 33.0f / 100.0f},
        {"scaleY", 1, &TransformData::yScale, 1.0f / 100.0f},
        {"scaleZ", 70, &TransformData::zScale, 70.0f / 100.0f},
    };
    for (const auto& c : cases) {
        hostUpdates().clear();
        p.control<QSlider>(c.slider)->setValue(c.value);
        EXPECT_EQ(transformsOf(p.wrapper).*c.word, c.expected) << c.slider;
        ASSERT_EQ(hostUpdates().size(), 1u) << c.slider;
        const TransformData sent = TransformData::fromBytes(hostUpdates()[0].transforms.data());
        EXPECT_EQ(sent.*c.word, c.expected) << c.slider;
    }
    hostUpdates().clear();
    p.control<QDoubleSpinBox>("overallScale")->setValue(2.1234);
    EXPECT_EQ(transformsOf(p.wrapper).overallScale, static_cast<float>(2.1234));
    EXPECT_EQ(hostUpdates().size(), 1u);
}

TEST(CommonControls, TheHostReceivesTheTagWordsTheRecordAndTheTransforms) {
    dialogtest::RecordingHost host;
    Panel p;
    p.control<QSlider>("transY")->setValue(40);
    hostUpdates().clear();

    QTest::keyClick(p.control<QSlider>("variability"), Qt::Key_Right);  // 0 -> 1
    ASSERT_EQ(hostUpdates().size(), 1u);
    const dialogtest::HostUpdate& u = hostUpdates()[0];
    EXPECT_EQ(u.words[0], std::bit_cast<std::uint32_t>(4.0f));
    EXPECT_EQ(u.words[1], 8u);
    EXPECT_EQ(u.words[2], 0u);
    EXPECT_EQ(u.words[3], 0u);

    // The record is the texture's, already holding the new value: the setter
    // ran before the host was called.
    EXPECT_EQ(p.texture.getVariability(), 0.01f);
    char record[256] = {};
    p.texture.getDescription(record);
    EXPECT_EQ(std::memcmp(u.record.data(), record, sizeof record), 0);
    EXPECT_EQ(TransformData::fromBytes(u.transforms.data()).yOffset, 0.4f);
}

TEST(CommonControls, InteractiveUpdateSwitchesTrackingOfTheCommonControls) {
    Panel p;
    auto* button = p.control<QPushButton>("newInteractiveUpdate");
    button->setChecked(true);
    button->setChecked(false);
    for (const char* name : {"transX", "transY", "transZ", "rotX", "rotY", "rotZ", "scaleX", "scaleY", "scaleZ"})
        EXPECT_FALSE(p.control<QSlider>(name)->hasTracking()) << name;
    EXPECT_FALSE(p.control<QDoubleSpinBox>("overallScale")->keyboardTracking());
    button->setChecked(true);
    EXPECT_TRUE(p.control<QSlider>("rotZ")->hasTracking());
    EXPECT_TRUE(p.control<QDoubleSpinBox>("overallScale")->keyboardTracking());
}

TEST(CommonControls, NoHostCallbackMeansNoCall) {
    Panel p;
    ASSERT_EQ(HostLink::callback(), nullptr);
    p.control<QSlider>("transX")->setValue(10);  // must not crash
    EXPECT_EQ(transformsOf(p.wrapper).xOffset, 0.1f);
}
