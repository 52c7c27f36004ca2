// The generator panels: each control reaches its setter, updateUI shows the
// record, the paired colour sliders, and interactive update.

#include <QComboBox>
#include <QDoubleSpinBox>
#include <QFrame>
#include <QPushButton>
#include <QSlider>
#include <QSpinBox>
#include <QTest>

#include <gtest/gtest.h>

#include "DialogTestSupport.h"
#include "dialog/panels/BrickQtWrapper.h"
#include "dialog/panels/CheckerboardQtWrapper.h"

using namespace gritwell;
using dialogtest::hostUpdates;

namespace {

using BrickPage = dialogtest::PanelPage<BrickTexture3D, BrickQtWrapper, Ui_BrickWidget>;
using CheckerboardPage = dialogtest::PanelPage<CheckerboardTexture3D, CheckerboardQtWrapper, Ui_CheckerboardWidget>;

const char* const kBrickSliders[] = {"roundedCornersRadius", "rowOffsetVariabilityAmplitude", "brickColor",
                                     "mortarColor",          "minColor",                      "maxColor"};
const char* const kBrickSpinBoxes[] = {"width", "height", "depth", "mortarThickness"};

}  // namespace

TEST(BrickPanel, FormAsDesigned) {
    BrickPage p;
    EXPECT_EQ(p.form.page.windowTitle(), "Brick");
    auto* pattern = p.control<QComboBox>("pattern");
    ASSERT_EQ(pattern->count(), 2);
    EXPECT_EQ(pattern->itemText(0), "Running Bond");
    EXPECT_EQ(pattern->itemText(1), "Herringbone");
    for (const char* name : kBrickSpinBoxes) {
        auto* spin = p.control<QDoubleSpinBox>(name);
        EXPECT_EQ(spin->decimals(), 3) << name;
        EXPECT_DOUBLE_EQ(spin->minimum(), 0.001) << name;
        EXPECT_DOUBLE_EQ(spin->maximum(), 99.99) << name;
        EXPECT_DOUBLE_EQ(spin->singleStep(), std::string(name) == "width" ? 0.01 : 0.001) << name;
    }
    for (const char* name : kBrickSliders) {
        auto* slider = p.control<QSlider>(name);
        EXPECT_EQ(slider->minimum(), 0) << name;
        EXPECT_EQ(slider->maximum(), std::string(name) == "rowOffsetVariabilityAmplitude" ? 99 : 100) << name;
        // The theme outlines each slider's frame on hover.
        auto* frame = qobject_cast<QFrame*>(slider->parentWidget());
        ASSERT_NE(frame, nullptr) << name;
        EXPECT_TRUE(frame->property("sliderFrame").toBool()) << name;
        EXPECT_FALSE(slider->toolTip().isEmpty()) << name;
    }
    for (const char* name : {"roundedCornersEnable", "randomizeColors", "rowOffsetVariabilityEnable"})
        EXPECT_TRUE(p.control<QPushButton>(name)->isCheckable()) << name;
}

TEST(BrickPanel, EveryControlReachesItsSetterThenTheHost) {
    dialogtest::RecordingHost host;
    BrickPage p;
    BrickTexture3D& t = p.texture();
    const auto expectOneUpdate = [&](const char* what) {
        ASSERT_EQ(hostUpdates().size(), 1u) << what;
        char record[256] = {};
        t.getDescription(record);
        EXPECT_EQ(std::memcmp(hostUpdates()[0].record.data(), record, sizeof record), 0) << what;
        hostUpdates().clear();
    };

    // "Herringbone" is item 1 and is stored as 1, the running-bond value:
    // the labels are crossed with the stored numbers, as records expect.
    p.control<QComboBox>("pattern")->setCurrentIndex(1);
    EXPECT_EQ(t.getPattern(), 1);
    expectOneUpdate("pattern");
    p.control<QComboBox>("pattern")->setCurrentIndex(0);
    EXPECT_EQ(t.getPattern(), 0);
    expectOneUpdate("pattern");

    p.control<QDoubleSpinBox>("width")->setValue(1.25);
    EXPECT_EQ(t.getBrickWidth(), 1.25f);
    expectOneUpdate("width");
    p.control<QDoubleSpinBox>("height")->setValue(0.333);
    EXPECT_EQ(t.getBrickHeight(), static_cast<float>(0.333));
    expectOneUpdate("height");
    p.control<QDoubleSpinBox>("depth")->setValue(0.5);
    EXPECT_EQ(t.getBrickDepth(), 0.5f);
    expectOneUpdate("depth");
    p.control<QDoubleSpinBox>("mortarThickness")->setValue(0.02);
    EXPECT_EQ(t.getMortarThickness(), static_cast<float>(0.02));
    expectOneUpdate("mortarThickness");

    p.control<QPushButton>("roundedCornersEnable")->click();
    EXPECT_TRUE(t.getRoundedCornersEnabled());
    expectOneUpdate("roundedCornersEnable");
    p.control<QPushButton>("rowOffsetVariabilityEnable")->click();
    EXPECT_TRUE(t.getRowOffsetVariabilityEnabled());
    expectOneUpdate("rowOffsetVariabilityEnable");
    p.control<QPushButton>("randomizeColors")->click();
    EXPECT_TRUE(t.getRandomizeColors());
    expectOneUpdate("randomizeColors");

    const struct {
        const char* slider;
        int value;
        float (BrickTexture3D::*get)() const;
    } sliders[] = {
        {"roundedCornersRadius", 37, &BrickTexture3D::getRoundedCornersRadius},
        {"rowOffsetVariabilityAmplitude", 99, &BrickTexture3D::getRowOffsetVariabilityAmplitude},
        {"brickColor", 3, &BrickTexture3D::getBrickColor},
        {"mortarColor", 100, &BrickTexture3D::getMortarColor},
    };
    for (const auto& s : sliders) {
        p.control<QSlider>(s.slider)->setValue(s.value);
        EXPECT_EQ((t.*s.get)(), static_cast<float>(s.value) / 100.0f) << s.slider;
        expectOneUpdate(s.slider);
    }
}

TEST(BrickPanel, MaximumBelowMinimumPullsTheMinimumDown) {
    dialogtest::RecordingHost host;
    BrickPage p;
    auto* minColor = p.control<QSlider>("minColor");
    auto* maxColor = p.control<QSlider>("maxColor");
    maxColor->setValue(80);
    minColor->setValue(40);
    hostUpdates().clear();

    maxColor->setValue(30);
    EXPECT_EQ(minColor->value(), 30);
    EXPECT_EQ(p.texture().getMaxColor(), 0.3f);
    EXPECT_EQ(p.texture().getMinColor(), 0.3f);
    // The partner's slot ran inside the first one's: both report.
    EXPECT_EQ(hostUpdates().size(), 2u);

    // And the other way round.
    minColor->setValue(60);
    EXPECT_EQ(maxColor->value(), 60);
    EXPECT_EQ(p.texture().getMinColor(), 0.6f);
    EXPECT_EQ(p.texture().getMaxColor(), 0.6f);

    // Moving within the range leaves the partner alone.
    maxColor->setValue(90);
    EXPECT_EQ(minColor->value(), 60);
    EXPECT_EQ(p.texture().getMinColor(), 0.6f);
}

TEST(BrickPanel, UpdateUIShowsTheRecordWithoutRewritingIt) {
    dialogtest::RecordingHost host;
    BrickPage p;
    BrickTexture3D& t = p.texture();
    t.setPattern(BrickTexture3D::RUNNING_BOND);
    t.setBrickWidth(1.234f);
    t.setBrickHeight(0.257f);
    t.setBrickDepth(0.5f);
    t.setMortarThickness(0.025f);
    t.setRoundedCornersEnabled(true);
    t.setRoundedCornersRadius(0.257f);
    t.setRowOffsetVariabilityAmplitude(0.5f);
    t.setMortarColor(0.37f);
    t.setRandomizeColors(true);
    // A stored range above the sliders' starting maximum: loading must not
    // let the pairing rule rewrite it half-way.
    t.setMinColor(0.6f);
    t.setMaxColor(0.8f);
    char before[256] = {};
    t.getDescription(before);

    p.wrapper.updateUI();
    EXPECT_EQ(p.control<QComboBox>("pattern")->currentIndex(), 1);
    EXPECT_DOUBLE_EQ(p.control<QDoubleSpinBox>("width")->value(), 1.234);
    EXPECT_DOUBLE_EQ(p.control<QDoubleSpinBox>("height")->value(), 0.257);
    EXPECT_DOUBLE_EQ(p.control<QDoubleSpinBox>("mortarThickness")->value(), 0.025);
    EXPECT_TRUE(p.control<QPushButton>("roundedCornersEnable")->isChecked());
    EXPECT_EQ(p.control<QSlider>("roundedCornersRadius")->value(), 25);
    EXPECT_EQ(p.control<QSlider>("rowOffsetVariabilityAmplitude")->value(), 50);
    EXPECT_EQ(p.control<QSlider>("mortarColor")->value(), 37);
    EXPECT_TRUE(p.control<QPushButton>("randomizeColors")->isChecked());
    EXPECT_EQ(p.control<QSlider>("minColor")->value(), 60);
    EXPECT_EQ(p.control<QSlider>("maxColor")->value(), 80);

    char after[256] = {};
    t.getDescription(after);
    EXPECT_EQ(std::memcmp(before, after, sizeof before), 0);
}

TEST(BrickPanel, InteractiveUpdateFollowsTheRecord) {
    dialogtest::RecordingHost host;
    BrickPage p;
    auto* button = p.control<QPushButton>("newInteractiveUpdate");

    p.texture().setInteractiveUpdate(false);
    p.wrapper.updateUI();
    EXPECT_FALSE(button->isChecked());
    for (const char* name : kBrickSliders) EXPECT_FALSE(p.control<QSlider>(name)->hasTracking()) << name;
    for (const char* name : kBrickSpinBoxes) EXPECT_FALSE(p.control<QDoubleSpinBox>(name)->keyboardTracking()) << name;
    // The common block never saw a toggle and keeps tracking on.
    EXPECT_TRUE(p.control<QSlider>("transX")->hasTracking());

    // The user turns it on: the record's byte, this page's and the common
    // block's tracking all follow.
    hostUpdates().clear();
    button->click();
    EXPECT_TRUE(p.texture().interactiveUpdate());
    for (const char* name : kBrickSliders) EXPECT_TRUE(p.control<QSlider>(name)->hasTracking()) << name;
    for (const char* name : kBrickSpinBoxes) EXPECT_TRUE(p.control<QDoubleSpinBox>(name)->keyboardTracking()) << name;
    ASSERT_FALSE(hostUpdates().empty());
    EXPECT_EQ(hostUpdates().back().record[35], 1);

    p.texture().setInteractiveUpdate(true);
    p.wrapper.updateUI();
    EXPECT_TRUE(button->isChecked());
}

TEST(CheckerboardPanel, ControlsReachTheSetters) {
    dialogtest::RecordingHost host;
    CheckerboardPage p;
    auto* depth = p.control<QSpinBox>("depth");
    auto* randomize = p.control<QPushButton>("randomizeColors");
    auto* variability = p.control<QSlider>("variability");
    for (QWidget* w : {static_cast<QWidget*>(depth), static_cast<QWidget*>(randomize),
                       static_cast<QWidget*>(variability)})
        EXPECT_FALSE(w->toolTip().isEmpty()) << w->objectName().toStdString();
    EXPECT_EQ(variability->minimum(), 0);
    EXPECT_EQ(variability->maximum(), 100);
    EXPECT_TRUE(randomize->isCheckable());

    depth->setValue(3);
    EXPECT_EQ(p.texture().getDepth(), 3);
    randomize->click();
    EXPECT_TRUE(p.texture().getRandomizeColors());
    variability->setValue(75);
    EXPECT_EQ(p.texture().getVariability(), 0.75f);
    EXPECT_EQ(hostUpdates().size(), 3u);
}

TEST(CheckerboardPanel, UpdateUIShowsTheRecord) {
    CheckerboardPage p;
    p.texture().setDepth(4);
    p.texture().setRandomizeColors(true);
    p.texture().setVariability(0.257f);
    p.texture().setInteractiveUpdate(false);
    p.wrapper.updateUI();
    EXPECT_EQ(p.control<QSpinBox>("depth")->value(), 4);
    EXPECT_TRUE(p.control<QPushButton>("randomizeColors")->isChecked());
    EXPECT_EQ(p.control<QSlider>("variability")->value(), 25);
    EXPECT_EQ(p.texture().getVariability(), 0.257f);  // shown, not rewritten
    EXPECT_FALSE(p.control<QSlider>("variability")->hasTracking());
    EXPECT_FALSE(p.control<QSpinBox>("depth")->keyboardTracking());
}
