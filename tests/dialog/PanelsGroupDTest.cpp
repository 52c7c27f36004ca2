// The Weave, Corrugated, Snakeskin, Scales, Houndstooth and Penrose Rhombus
// pages: each control reaches its setter with its conversion and then the
// host, updateUI shows a record without rewriting it, the minimum/maximum
// pairs, the forms' ranges and tool tips, and interactive update.

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include <QAbstractSpinBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QFrame>
#include <QPushButton>
#include <QSlider>
#include <QSpinBox>

#include <gtest/gtest.h>

#include "DialogTestSupport.h"
#include "core/FloatToInt.h"
#include "dialog/GeneratorRegistry.h"
#include "dialog/panels/CorrugatedQtWrapper.h"
#include "dialog/panels/HoundstoothQtWrapper.h"
#include "dialog/panels/PenroseRhombusQtWrapper.h"
#include "dialog/panels/ScalesQtWrapper.h"
#include "dialog/panels/SnakeskinQtWrapper.h"
#include "dialog/panels/WeaveQtWrapper.h"

using namespace gritwell;
using dialogtest::hostUpdates;
using dialogtest::ownControls;

namespace {

template <class T, class W, class U>
using Page = dialogtest::PanelPage<T, W, U>;
using WeavePage = Page<WeaveTexture3D, WeaveQtWrapper, Ui_WeaveWidget>;
using CorrugatedPage = Page<CorrugatedTexture3D, CorrugatedQtWrapper, Ui_CorrugatedWidget>;
using SnakeskinPage = Page<SnakeskinTexture3D, SnakeskinQtWrapper, Ui_SnakeskinWidget>;
using ScalesPage = Page<ScalesTexture3D, ScalesQtWrapper, Ui_ScalesWidget>;
using HoundstoothPage = Page<HoundstoothTexture3D, HoundstoothQtWrapper, Ui_HoundstoothWidget>;
using PenrosePage = Page<PenroseRhombusTexture3D, PenroseRhombusQtWrapper, Ui_PenroseRhombusWidget>;

// The one host update the last change sent, carrying the texture's record.
template <class P>
void expectOneUpdate(P& p, const std::string& what) {
    ASSERT_EQ(hostUpdates().size(), 1u) << what;
    const std::string sent(hostUpdates()[0].record.data(), hostUpdates()[0].record.size());
    EXPECT_EQ(sent, p.record()) << what;
    hostUpdates().clear();
}

template <class T>
struct SliderCase {
    const char* name;
    int value;
    float (T::*get)() const;
    float units = 100.0f;
};

template <class T>
struct ToggleCase {
    const char* name;
    bool (T::*get)() const;
};

// Every listed slider stores value / units through its setter, every
// toggle its state, each with one host update; the lists name every slider
// and button of the page. Sliders of a minimum/maximum pair are listed
// maximum first, so that no partner moves.
template <class P>
void expectSlidersAndTogglesReachTheSetters(P& p, const std::vector<SliderCase<typename P::Texture>>& sliders,
                                            const std::vector<ToggleCase<typename P::Texture>>& toggles) {
    auto& t = p.texture();
    EXPECT_EQ(ownControls<QSlider>(p.form.page).size(), sliders.size());
    EXPECT_EQ(ownControls<QPushButton>(p.form.page).size(), toggles.size());
    for (const auto& s : sliders) {
        p.template control<QSlider>(s.name)->setValue(s.value);
        EXPECT_EQ((t.*s.get)(), static_cast<float>(s.value) / s.units) << s.name;
        expectOneUpdate(p, s.name);
    }
    for (const auto& b : toggles) {
        // Twice, so that both states reach the texture whatever its default.
        auto* button = p.template control<QPushButton>(b.name);
        for (int click = 0; click < 2; ++click) {
            button->click();
            EXPECT_EQ((t.*b.get)(), button->isChecked()) << b.name;
            expectOneUpdate(p, b.name);
        }
    }
}

// Maximum below Minimum pulls Minimum down, Minimum above Maximum pushes
// Maximum up, the texture receiving both values; inside the range the
// partner stays.
template <class P>
void expectPaired(P& p, const char* minName, const char* maxName, float (P::Texture::*getMin)() const,
                  float (P::Texture::*getMax)() const) {
    auto& t = p.texture();
    auto* minSlider = p.template control<QSlider>(minName);
    auto* maxSlider = p.template control<QSlider>(maxName);
    maxSlider->setValue(80);
    minSlider->setValue(40);
    hostUpdates().clear();

    maxSlider->setValue(30);
    EXPECT_EQ(minSlider->value(), 30) << maxName;
    EXPECT_EQ((t.*getMin)(), 0.3f) << minName;
    EXPECT_EQ((t.*getMax)(), 0.3f) << maxName;
    EXPECT_EQ(hostUpdates().size(), 2u) << maxName;

    minSlider->setValue(60);
    EXPECT_EQ(maxSlider->value(), 60) << minName;
    EXPECT_EQ((t.*getMin)(), 0.6f) << minName;
    EXPECT_EQ((t.*getMax)(), 0.6f) << maxName;

    maxSlider->setValue(90);
    EXPECT_EQ(minSlider->value(), 60) << maxName;
    EXPECT_EQ((t.*getMin)(), 0.6f) << minName;
}

// Loaded with the flag off, every slider and spin box of the page stops
// tracking; the user's click stores the flag and tracking returns.
template <class P>
void expectInteractivityFollowsTheRecord(P& p) {
    dialogtest::RecordingHost host;
    auto* button = p.template control<QPushButton>("newInteractiveUpdate");
    const auto sliders = ownControls<QSlider>(p.form.page);
    const auto spins = ownControls<QAbstractSpinBox>(p.form.page);

    p.texture().setInteractiveUpdate(false);
    p.wrapper.updateUI();
    EXPECT_FALSE(button->isChecked());
    for (QSlider* s : sliders) EXPECT_FALSE(s->hasTracking()) << s->objectName().toStdString();
    for (QAbstractSpinBox* s : spins) EXPECT_FALSE(s->keyboardTracking()) << s->objectName().toStdString();

    hostUpdates().clear();
    button->click();
    EXPECT_TRUE(p.texture().interactiveUpdate());
    for (QSlider* s : sliders) EXPECT_TRUE(s->hasTracking()) << s->objectName().toStdString();
    for (QAbstractSpinBox* s : spins) EXPECT_TRUE(s->keyboardTracking()) << s->objectName().toStdString();
    ASSERT_FALSE(hostUpdates().empty());
    EXPECT_EQ(hostUpdates().back().record[35], 1);
}

// The form alone: its title, a tool tip on every control, sliders 0..100
// in outlined frames, checkable buttons.
template <class U>
void expectFormAsDesigned(const char* title) {
    QWidget form;
    U ui;
    ui.setupUi(&form);
    EXPECT_EQ(form.windowTitle(), title);
    std::vector<QWidget*> controls;
    for (auto* c : form.findChildren<QSlider*>()) controls.push_back(c);
    for (auto* c : form.findChildren<QAbstractSpinBox*>()) controls.push_back(c);
    for (auto* c : form.findChildren<QComboBox*>()) controls.push_back(c);
    for (auto* c : form.findChildren<QPushButton*>()) controls.push_back(c);
    for (QWidget* c : controls) EXPECT_FALSE(c->toolTip().isEmpty()) << c->objectName().toStdString();
    for (QSlider* s : form.findChildren<QSlider*>()) {
        const std::string name = s->objectName().toStdString();
        EXPECT_EQ(s->minimum(), 0) << name;
        EXPECT_EQ(s->maximum(), 100) << name;
        auto* frame = qobject_cast<QFrame*>(s->parentWidget());
        ASSERT_NE(frame, nullptr) << name;
        EXPECT_TRUE(frame->property("sliderFrame").toBool()) << name;
    }
    for (QPushButton* b : form.findChildren<QPushButton*>())
        EXPECT_TRUE(b->isCheckable()) << b->objectName().toStdString();
}

QStringList itemsOf(const QComboBox* combo) {
    QStringList items;
    for (int i = 0; i < combo->count(); ++i) items << combo->itemText(i);
    return items;
}

}  // namespace

// ---- forms ----

TEST(GroupDPanels, FormsAsDesigned) {
    expectFormAsDesigned<Ui_WeaveWidget>("Weave");
    expectFormAsDesigned<Ui_CorrugatedWidget>("Corrugated");
    expectFormAsDesigned<Ui_SnakeskinWidget>("Snakeskin");
    expectFormAsDesigned<Ui_ScalesWidget>("Scales");
    expectFormAsDesigned<Ui_HoundstoothWidget>("Houndstooth");
    expectFormAsDesigned<Ui_PenroseRhombusWidget>("Penrose Rhombus");

    WeavePage weave;
    EXPECT_EQ(itemsOf(weave.control<QComboBox>("pattern")), QStringList({"Plain", "Herringbone"}));
    CorrugatedPage corrugated;
    EXPECT_EQ(itemsOf(corrugated.control<QComboBox>("style")),
              QStringList({"Triangle", "Sine", "Ribbon", "Sawtooth", "Perlin Noise"}));
    ScalesPage scales;
    EXPECT_EQ(itemsOf(scales.control<QComboBox>("scaleShape")), QStringList({"Semicircle", "Normal"}));
    HoundstoothPage houndstooth;
    EXPECT_EQ(itemsOf(houndstooth.control<QComboBox>("pattern")), QStringList({"Houndstooth", "Puppytooth"}));

    // The scale noise's counts and factors: room for every useful octave
    // count (0 adds nothing) and for the stored defaults of 2.
    SnakeskinPage snakeskin;
    auto* octaves = snakeskin.control<QSpinBox>("scaleNoiseOctaves");
    EXPECT_EQ(octaves->minimum(), 0);
    EXPECT_GE(octaves->maximum(), 16);
    for (const char* name : {"scaleNoiseLacunarity", "scaleNoiseGain", "scaleNoiseDetail"}) {
        auto* spin = snakeskin.control<QDoubleSpinBox>(name);
        EXPECT_EQ(spin->minimum(), 0.0) << name;
        EXPECT_GE(spin->maximum(), 16.0) << name;
        EXPECT_GE(spin->decimals(), 3) << name;
    }
}

TEST(GroupDPanels, OnlyPenroseRhombusStaysOutOfTheDialog) {
    std::vector<std::string_view> registered;
    for (const auto& r : GeneratorRegistry::registrations()) registered.push_back(r.name);
    for (const char* name : {"Weave", "Corrugated", "Snakeskin", "Scales", "Houndstooth"})
        EXPECT_NE(std::find(registered.begin(), registered.end(), name), registered.end()) << name;
    EXPECT_EQ(std::find(registered.begin(), registered.end(), "Penrose Rhombus"), registered.end());
}

TEST(GroupDPanels, InteractiveUpdateFollowsTheRecord) {
    {
        WeavePage p;
        expectInteractivityFollowsTheRecord(p);
    }
    {
        CorrugatedPage p;
        expectInteractivityFollowsTheRecord(p);
    }
    {
        SnakeskinPage p;
        expectInteractivityFollowsTheRecord(p);
    }
    {
        ScalesPage p;
        expectInteractivityFollowsTheRecord(p);
    }
    {
        HoundstoothPage p;
        expectInteractivityFollowsTheRecord(p);
    }
    {
        PenrosePage p;
        expectInteractivityFollowsTheRecord(p);
    }
}

// ---- Weave ----

TEST(WeavePanel, EveryControlReachesItsSetterThenTheHost) {
    dialogtest::RecordingHost host;
    WeavePage p;
    using T = WeaveTexture3D;
    p.control<QComboBox>("pattern")->setCurrentIndex(1);
    EXPECT_EQ(p.texture().getPattern(), T::WEAVE_HERRINGBONE);
    expectOneUpdate(p, "pattern");
    expectSlidersAndTogglesReachTheSetters(
        p,
        {{"backgroundColor", 12, &T::getBackgroundColor},
         {"horizontalColor", 34, &T::getHorizontalColor},
         {"verticalColor", 56, &T::getVerticalColor},
         {"horizontalWidth", 71, &T::getHorizontalWidth},
         {"verticalWidth", 29, &T::getVerticalWidth},
         {"horizontalMaxColor", 77, &T::getHorizontalMaxColor},
         {"horizontalMinColor", 3, &T::getHorizontalMinColor},
         // The vertical maximum's setter writes the horizontal maximum.
         {"verticalMaxColor", 88, &T::getHorizontalMaxColor},
         {"verticalMinColor", 41, &T::getVerticalMinColor},
         {"shadingHorizontalStrength", 100, &T::getShadingHorizontalStrength},
         {"shadingVerticalStrength", 1, &T::getShadingVerticalStrength}},
        {{"horizontalRandomize", &T::getHorizontalRandomize},
         {"verticalRandomize", &T::getVerticalRandomize},
         {"shadingEnable", &T::getShadingEnable}});
    EXPECT_EQ(p.texture().getVerticalMaxColor(), 1.0f);  // only a whole record changes it
}

TEST(WeavePanel, MinimumMaximumPairs) {
    dialogtest::RecordingHost host;
    WeavePage p;
    expectPaired(p, "horizontalMinColor", "horizontalMaxColor", &WeaveTexture3D::getHorizontalMinColor,
                 &WeaveTexture3D::getHorizontalMaxColor);
    // The vertical pair keeps its sliders in order; its maximum is stored
    // where the setter puts it.
    WeavePage q;
    expectPaired(q, "verticalMinColor", "verticalMaxColor", &WeaveTexture3D::getVerticalMinColor,
                 &WeaveTexture3D::getHorizontalMaxColor);
    EXPECT_EQ(q.texture().getVerticalMaxColor(), 1.0f);
}

TEST(WeavePanel, UpdateUIShowsTheRecordWithoutRewritingIt) {
    dialogtest::RecordingHost host;
    WeavePage p;
    WeaveTexture3D& t = p.texture();
    t.setPattern(static_cast<WeaveTexture3D::Pattern>(-3));  // weaves the herringbone
    t.setBackgroundColor(0.257f);
    t.setHorizontalWidth(0.999f);
    t.setHorizontalRandomize(true);
    // A stored range upside down: loading shows it as it is.
    t.setHorizontalMinColor(0.9f);
    t.setHorizontalMaxColor(0.2f);
    t.setVerticalMinColor(0.6f);
    t.setShadingEnable(false);
    t.setShadingVerticalStrength(0.37f);
    const std::string before = p.record();

    p.wrapper.updateUI();
    EXPECT_EQ(p.control<QComboBox>("pattern")->currentIndex(), 1);
    EXPECT_EQ(p.control<QSlider>("backgroundColor")->value(), 25);
    EXPECT_EQ(p.control<QSlider>("horizontalColor")->value(), 100);
    EXPECT_EQ(p.control<QSlider>("horizontalWidth")->value(), 99);
    EXPECT_EQ(p.control<QSlider>("verticalWidth")->value(), 85);
    EXPECT_TRUE(p.control<QPushButton>("horizontalRandomize")->isChecked());
    EXPECT_EQ(p.control<QSlider>("horizontalMinColor")->value(), 90);
    EXPECT_EQ(p.control<QSlider>("horizontalMaxColor")->value(), 20);
    EXPECT_FALSE(p.control<QPushButton>("verticalRandomize")->isChecked());
    EXPECT_EQ(p.control<QSlider>("verticalMinColor")->value(), 60);
    EXPECT_EQ(p.control<QSlider>("verticalMaxColor")->value(), 100);  // the vertical field itself
    EXPECT_FALSE(p.control<QPushButton>("shadingEnable")->isChecked());
    EXPECT_EQ(p.control<QSlider>("shadingHorizontalStrength")->value(), 85);
    EXPECT_EQ(p.control<QSlider>("shadingVerticalStrength")->value(), 37);
    EXPECT_EQ(p.record(), before);
}

// ---- Corrugated ----

TEST(CorrugatedPanel, ListPositionsMapToTheStoredStyles) {
    dialogtest::RecordingHost host;
    CorrugatedPage p;
    auto* style = p.control<QComboBox>("style");
    const CorrugatedTexture3D::Style stored[] = {CorrugatedTexture3D::Triangle, CorrugatedTexture3D::Sine,
                                                 CorrugatedTexture3D::Ribbon, CorrugatedTexture3D::Sawtooth,
                                                 CorrugatedTexture3D::PerlinNoise};
    // The form opens on item 0, so start from the far end.
    for (int item = 4; item >= 0; --item) {
        style->setCurrentIndex(item);
        EXPECT_EQ(p.texture().getStyle(), stored[item]) << style->itemText(item).toStdString();
        expectOneUpdate(p, style->itemText(item).toStdString());
    }

    // And back: each stored style shows its own item.
    for (int item = 0; item < 5; ++item) {
        p.texture().setStyle(stored[item]);
        p.wrapper.updateUI();
        EXPECT_EQ(style->currentIndex(), item) << stored[item];
    }
}

TEST(CorrugatedPanel, AStyleTheListLacksShowsNoItemAndStays) {
    dialogtest::RecordingHost host;
    CorrugatedPage p;
    p.texture().setStyle(static_cast<CorrugatedTexture3D::Style>(7));
    const std::string before = p.record();
    p.wrapper.updateUI();
    EXPECT_EQ(p.control<QComboBox>("style")->currentIndex(), -1);
    EXPECT_EQ(p.record(), before);
}

// ---- Snakeskin ----

TEST(SnakeskinPanel, EveryControlReachesItsSetterThenTheHost) {
    dialogtest::RecordingHost host;
    SnakeskinPage p;
    using T = SnakeskinTexture3D;
    expectSlidersAndTogglesReachTheSetters(
        p,
        {{"gridWidth", 7, &T::getStripeWidth},
         {"maxColor", 93, &T::getMaxColor},
         {"minColor", 17, &T::getMinColor},
         {"scaleVariabilityFrequency", 33, &T::getScaleVariabilityFrequency},
         {"scaleVariabilityAmplitude", 100, &T::getScaleVariabilityAmplitude},
         {"roundCornersLeftRightRadius", 5, &T::getRoundCornersLeftRightRadius},
         {"roundCornersTopBottomRadius", 49, &T::getRoundCornersTopBottomRadius}},
        {{"randomizeColors", &T::getRandomizeColors},
         {"scaleVariabilityEnable", &T::getScaleVariabilityEnabled},
         {"scaleNoiseAdd", &T::getScaleNoiseAdd},
         {"roundCornersEnable", &T::getRoundCornersEnabled}});

    p.control<QSpinBox>("scaleNoiseOctaves")->setValue(6);
    EXPECT_EQ(p.texture().getScaleNoiseOctaves(), 6);
    expectOneUpdate(p, "scaleNoiseOctaves");
    const struct {
        const char* name;
        double value;
        float (T::*get)() const;
    } spins[] = {{"scaleNoiseLacunarity", 2.125, &T::getScaleNoiseLacunarity},
                 {"scaleNoiseGain", 0.333, &T::getScaleNoiseGain},
                 {"scaleNoiseDetail", 12.5, &T::getScaleNoiseDetail}};
    for (const auto& s : spins) {
        p.control<QDoubleSpinBox>(s.name)->setValue(s.value);
        EXPECT_EQ((p.texture().*s.get)(), static_cast<float>(s.value)) << s.name;
        expectOneUpdate(p, s.name);
    }
}

TEST(SnakeskinPanel, MinimumMaximumPair) {
    dialogtest::RecordingHost host;
    SnakeskinPage p;
    expectPaired(p, "minColor", "maxColor", &SnakeskinTexture3D::getMinColor, &SnakeskinTexture3D::getMaxColor);
}

TEST(SnakeskinPanel, UpdateUIShowsTheRecordWithoutRewritingIt) {
    dialogtest::RecordingHost host;
    SnakeskinPage p;
    SnakeskinTexture3D& t = p.texture();
    t.setStripeWidth(0.257f);
    t.setRandomizeColors(true);
    t.setMinColor(0.6f);
    t.setMaxColor(0.8f);
    t.setScaleVariabilityEnabled(true);
    t.setScaleNoiseOctaves(9);
    t.setScaleNoiseLacunarity(2.3456f);  // more digits than the spin box shows
    t.setScaleNoiseGain(0.5f);
    t.setRoundCornersEnabled(false);
    const std::string before = p.record();

    p.wrapper.updateUI();
    EXPECT_EQ(p.control<QSlider>("gridWidth")->value(), 25);
    EXPECT_TRUE(p.control<QPushButton>("randomizeColors")->isChecked());
    EXPECT_EQ(p.control<QSlider>("minColor")->value(), 60);
    EXPECT_EQ(p.control<QSlider>("maxColor")->value(), 80);
    EXPECT_TRUE(p.control<QPushButton>("scaleVariabilityEnable")->isChecked());
    EXPECT_EQ(p.control<QSlider>("scaleVariabilityFrequency")->value(), 10);
    EXPECT_EQ(p.control<QSlider>("scaleVariabilityAmplitude")->value(), 25);
    EXPECT_FALSE(p.control<QPushButton>("scaleNoiseAdd")->isChecked());
    EXPECT_EQ(p.control<QSpinBox>("scaleNoiseOctaves")->value(), 9);
    EXPECT_DOUBLE_EQ(p.control<QDoubleSpinBox>("scaleNoiseLacunarity")->value(), 2.346);
    EXPECT_DOUBLE_EQ(p.control<QDoubleSpinBox>("scaleNoiseGain")->value(), 0.5);
    EXPECT_DOUBLE_EQ(p.control<QDoubleSpinBox>("scaleNoiseDetail")->value(), 4.0);
    EXPECT_FALSE(p.control<QPushButton>("roundCornersEnable")->isChecked());
    EXPECT_EQ(p.control<QSlider>("roundCornersLeftRightRadius")->value(), 5);
    EXPECT_EQ(p.control<QSlider>("roundCornersTopBottomRadius")->value(), 20);
    EXPECT_EQ(p.record(), before);
}

// ---- Scales ----

TEST(ScalesPanel, EveryControlReachesItsSetterThenTheHost) {
    dialogtest::RecordingHost host;
    ScalesPage p;
    using T = ScalesTexture3D;
    p.control<QComboBox>("scaleShape")->setCurrentIndex(1);
    EXPECT_EQ(p.texture().getScaleShape(), T::SCALE_SHAPE_NORMAL);
    expectOneUpdate(p, "scaleShape");
    expectSlidersAndTogglesReachTheSetters(
        p,
        {// The base band's slider holds 200 times the value: 100 is half a scale.
         {"baseDimension", 100, &T::getBaseDimension, 200.0f},
         {"edgeDimension", 7, &T::getEdgeDimension},
         {"shadingAlongStrength", 45, &T::getShadingAlongStrength},
         {"shadingAcrossStrength", 55, &T::getShadingAcrossStrength},
         {"scaleVariabilityFrequency", 10, &T::getScaleVariabilityFrequency},
         {"scaleVariabilityAmplitude", 25, &T::getScaleVariabilityAmplitude},
         {"baseColor", 2, &T::getBaseColor},
         {"baseMaxColor", 20, &T::getBaseMaxColor},
         {"baseMinColor", 1, &T::getBaseMinColor},
         {"bodyColor", 64, &T::getBodyColor},
         {"bodyMaxColor", 80, &T::getBodyMaxColor},
         {"bodyMinColor", 50, &T::getBodyMinColor},
         {"edgeColor", 97, &T::getEdgeColor},
         {"edgeMaxColor", 100, &T::getEdgeMaxColor},
         {"edgeMinColor", 90, &T::getEdgeMinColor}},
        {{"shadingAlongEnable", &T::getShadingAlongEnabled},
         {"shadingAcrossEnable", &T::getShadingAcrossEnabled},
         {"scaleVariabilityEnable", &T::getScaleVariabilityEnabled},
         {"baseRandomizeColors", &T::getBaseRandomizeColors},
         {"bodyRandomizeColors", &T::getBodyRandomizeColors},
         {"edgeRandomizeColors", &T::getEdgeRandomizeColors}});
    p.control<QSlider>("baseDimension")->setValue(33);
    EXPECT_EQ(p.texture().getBaseDimension(), 0.165f);
}

TEST(ScalesPanel, ThreeMinimumMaximumPairs) {
    dialogtest::RecordingHost host;
    ScalesPage p;
    using T = ScalesTexture3D;
    expectPaired(p, "baseMinColor", "baseMaxColor", &T::getBaseMinColor, &T::getBaseMaxColor);
    expectPaired(p, "bodyMinColor", "bodyMaxColor", &T::getBodyMinColor, &T::getBodyMaxColor);
    expectPaired(p, "edgeMinColor", "edgeMaxColor", &T::getEdgeMinColor, &T::getEdgeMaxColor);
    // Each pair minds only its own partner.
    p.control<QSlider>("edgeMaxColor")->setValue(10);
    EXPECT_EQ(p.control<QSlider>("edgeMinColor")->value(), 10);
    EXPECT_EQ(p.control<QSlider>("baseMinColor")->value(), 60);
    EXPECT_EQ(p.control<QSlider>("bodyMinColor")->value(), 60);
}

TEST(ScalesPanel, UpdateUIShowsTheRecordWithoutRewritingIt) {
    dialogtest::RecordingHost host;
    ScalesPage p;
    ScalesTexture3D& t = p.texture();
    t.setScaleShape(static_cast<ScalesTexture3D::ScaleShape>(2));  // draws circular arcs
    t.setBaseDimension(0.257f);
    t.setShadingAcrossEnabled(true);
    t.setShadingAcrossStrength(0.75f);
    t.setBodyRandomizeColors(true);
    t.setBodyMinColor(0.7f);
    t.setBodyMaxColor(0.3f);
    const std::string before = p.record();

    p.wrapper.updateUI();
    EXPECT_EQ(p.control<QComboBox>("scaleShape")->currentIndex(), 1);
    EXPECT_EQ(p.control<QSlider>("baseDimension")->value(), 51);  // 0.257 x 200, truncated
    EXPECT_EQ(p.control<QSlider>("edgeDimension")->value(), 7);
    EXPECT_FALSE(p.control<QPushButton>("shadingAlongEnable")->isChecked());
    EXPECT_EQ(p.control<QSlider>("shadingAlongStrength")->value(), 25);
    EXPECT_TRUE(p.control<QPushButton>("shadingAcrossEnable")->isChecked());
    EXPECT_EQ(p.control<QSlider>("shadingAcrossStrength")->value(), 75);
    EXPECT_EQ(p.control<QSlider>("baseColor")->value(), 0);
    EXPECT_EQ(p.control<QSlider>("baseMaxColor")->value(), 20);
    EXPECT_EQ(p.control<QSlider>("bodyColor")->value(),
              truncToInt(static_cast<double>(t.getBodyColor() * 100.0f)));
    EXPECT_TRUE(p.control<QPushButton>("bodyRandomizeColors")->isChecked());
    EXPECT_EQ(p.control<QSlider>("bodyMinColor")->value(), 70);
    EXPECT_EQ(p.control<QSlider>("bodyMaxColor")->value(), 30);
    EXPECT_EQ(p.control<QSlider>("edgeMinColor")->value(), 90);
    EXPECT_EQ(p.control<QSlider>("edgeMaxColor")->value(), 100);
    EXPECT_EQ(p.record(), before);
}

// ---- Houndstooth ----

TEST(HoundstoothPanel, ControlsReachTheSettersAndUpdateUIShowsTheRecord) {
    dialogtest::RecordingHost host;
    HoundstoothPage p;
    using T = HoundstoothTexture3D;
    p.control<QComboBox>("pattern")->setCurrentIndex(1);
    EXPECT_EQ(p.texture().getPattern(), T::PUPPYTOOTH);
    expectOneUpdate(p, "pattern");
    expectSlidersAndTogglesReachTheSetters(p, {{"variability", 75, &T::getVariability}},
                                           {{"randomizeColors", &T::getRandomizeColors}});

    HoundstoothPage q;
    q.texture().setPattern(static_cast<T::Pattern>(5));  // weaves puppytooth
    q.texture().setRandomizeColors(true);
    q.texture().setVariability(0.257f);
    const std::string before = q.record();
    q.wrapper.updateUI();
    EXPECT_EQ(q.control<QComboBox>("pattern")->currentIndex(), 1);
    EXPECT_TRUE(q.control<QPushButton>("randomizeColors")->isChecked());
    EXPECT_EQ(q.control<QSlider>("variability")->value(), 25);
    EXPECT_EQ(q.record(), before);
}

// ---- Penrose Rhombus ----

TEST(PenroseRhombusPanel, ControlsReachTheSettersAndTheHost) {
    dialogtest::RecordingHost host;
    PenrosePage p;
    using T = PenroseRhombusTexture3D;
    expectSlidersAndTogglesReachTheSetters(p,
                                           {{"skinnyColor", 12, &T::getSkinnyColor},
                                            {"fatColor", 88, &T::getFatColor},
                                            {"skinnyMaxColor", 45, &T::getSkinnyMaxColor},
                                            {"skinnyMinColor", 5, &T::getSkinnyMinColor},
                                            {"fatMaxColor", 95, &T::getFatMaxColor},
                                            {"fatMinColor", 55, &T::getFatMinColor},
                                            {"edgeWidth", 25, &T::getEdgeWidth, 1000.0f},
                                            {"edgeColor", 30, &T::getEdgeColor}},
                                           {{"skinnyRandomize", &T::getSkinnyRandomize},
                                            {"fatRandomize", &T::getFatRandomize}});

    PenrosePage q;
    expectPaired(q, "skinnyMinColor", "skinnyMaxColor", &T::getSkinnyMinColor, &T::getSkinnyMaxColor);
    expectPaired(q, "fatMinColor", "fatMaxColor", &T::getFatMinColor, &T::getFatMaxColor);
}

TEST(PenroseRhombusPanel, UpdateUIShowsTheRecordWithoutRewritingIt) {
    dialogtest::RecordingHost host;
    PenrosePage p;
    PenroseRhombusTexture3D& t = p.texture();
    t.setSkinnyColor(0.257f);
    t.setFatRandomize(true);
    t.setFatMinColor(0.6f);
    t.setFatMaxColor(0.9f);
    const std::string before = p.record();

    p.wrapper.updateUI();
    EXPECT_EQ(p.control<QSlider>("skinnyColor")->value(), 25);
    EXPECT_EQ(p.control<QSlider>("fatColor")->value(), 75);
    EXPECT_FALSE(p.control<QPushButton>("skinnyRandomize")->isChecked());
    EXPECT_EQ(p.control<QSlider>("skinnyMinColor")->value(), 0);
    EXPECT_EQ(p.control<QSlider>("skinnyMaxColor")->value(), 50);
    EXPECT_TRUE(p.control<QPushButton>("fatRandomize")->isChecked());
    EXPECT_EQ(p.control<QSlider>("fatMinColor")->value(), 60);
    EXPECT_EQ(p.control<QSlider>("fatMaxColor")->value(), 90);
    EXPECT_EQ(p.control<QSlider>("edgeWidth")->value(), 40);  // 0.04 in thousandths
    EXPECT_EQ(p.record(), before);
}
