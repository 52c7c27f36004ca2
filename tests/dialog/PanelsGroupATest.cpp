// The Perlin Noise, Wood, Simple Marble, Stripes, Spheres, Granite, Gradient
// and Simplex pages: each control reaches its setter with its conversion and
// then the host, updateUI shows a record without rewriting it, the forms'
// ranges, tool tips and interactive update.

#include <cstring>
#include <map>
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
#include "dialog/panels/GradientQtWrapper.h"
#include "dialog/panels/GraniteQtWrapper.h"
#include "dialog/panels/PerlinQtWrapper.h"
#include "dialog/panels/SimpleMarbleQtWrapper.h"
#include "dialog/panels/SimplexQtWrapper.h"
#include "dialog/panels/SpheresQtWrapper.h"
#include "dialog/panels/StripesQtWrapper.h"
#include "dialog/panels/WoodQtWrapper.h"

using namespace gritwell;
using dialogtest::hostUpdates;
using dialogtest::ownControls;

namespace {

template <class T, class W, class U>
using Page = dialogtest::PanelPage<T, W, U>;
using PerlinPage = Page<PerlinTexture3D, PerlinQtWrapper, Ui_PerlinWidget>;
using WoodPage = Page<WoodTexture3D, WoodQtWrapper, Ui_WoodWidget>;
using SimpleMarblePage = Page<SimpleMarbleTexture3D, SimpleMarbleQtWrapper, Ui_SimpleMarbleWidget>;
using StripesPage = Page<StripesTexture3D, StripesQtWrapper, Ui_StripesWidget>;
using SpheresPage = Page<SpheresTexture3D, SpheresQtWrapper, Ui_SpheresWidget>;
using GranitePage = Page<GraniteTexture3D, GraniteQtWrapper, Ui_GraniteWidget>;
using GradientPage = Page<GradientTexture3D, GradientQtWrapper, Ui_GradientWidget>;
using SimplexPage = Page<SimplexTexture3D, SimplexQtWrapper, Ui_SimplexWidget>;

// Every own control's value, keyed by object name.
std::map<std::string, double> controlValues(const QWidget& page) {
    std::map<std::string, double> values;
    for (QSlider* c : ownControls<QSlider>(page)) values[c->objectName().toStdString()] = c->value();
    for (QSpinBox* c : ownControls<QSpinBox>(page)) values[c->objectName().toStdString()] = c->value();
    for (QDoubleSpinBox* c : ownControls<QDoubleSpinBox>(page)) values[c->objectName().toStdString()] = c->value();
    for (QComboBox* c : ownControls<QComboBox>(page)) values[c->objectName().toStdString()] = c->currentIndex();
    for (QPushButton* c : ownControls<QPushButton>(page)) values[c->objectName().toStdString()] = c->isChecked();
    return values;
}

// After one control moved: exactly one update reached the host, carrying
// the texture's record as it now is.
template <class P>
void expectOneUpdate(P& p, const char* what) {
    ASSERT_EQ(hostUpdates().size(), 1u) << what;
    EXPECT_EQ(std::string(hostUpdates()[0].record.data(), hostUpdates()[0].record.size()), p.record()) << what;
    hostUpdates().clear();
}

// What every page shares: its title, a tool tip on every control, sliders in
// hover frames, checkable toggles, the form opening at the generator's
// defaults, and the interactive-update flag reaching all of its own sliders
// and spin boxes.
template <class P>
void expectCommonPageRules(const char* title) {
    SCOPED_TRACE(title);
    dialogtest::RecordingHost host;
    P p;
    const QWidget& page = p.form.page;
    EXPECT_EQ(page.windowTitle(), title);

    std::vector<QWidget*> controls;
    for (QSlider* c : ownControls<QSlider>(page)) controls.push_back(c);
    for (QAbstractSpinBox* c : ownControls<QAbstractSpinBox>(page)) controls.push_back(c);
    for (QComboBox* c : ownControls<QComboBox>(page)) controls.push_back(c);
    for (QPushButton* c : ownControls<QPushButton>(page)) controls.push_back(c);
    ASSERT_FALSE(controls.empty());
    for (QWidget* c : controls) EXPECT_FALSE(c->toolTip().isEmpty()) << c->objectName().toStdString();
    for (QSlider* s : ownControls<QSlider>(page)) {
        const auto* frame = qobject_cast<QFrame*>(s->parentWidget());
        ASSERT_NE(frame, nullptr) << s->objectName().toStdString();
        EXPECT_TRUE(frame->property("sliderFrame").toBool()) << s->objectName().toStdString();
    }
    for (QPushButton* b : ownControls<QPushButton>(page)) EXPECT_TRUE(b->isCheckable()) << b->objectName().toStdString();

    // The form's starting values are the generator's defaults, so none of
    // them lies outside its control's range.
    const auto designed = controlValues(page);
    p.wrapper.updateUI();
    EXPECT_EQ(controlValues(page), designed);

    const auto expectTracking = [&](bool on) {
        for (QSlider* s : ownControls<QSlider>(page)) EXPECT_EQ(s->hasTracking(), on) << s->objectName().toStdString();
        for (QAbstractSpinBox* s : ownControls<QAbstractSpinBox>(page))
            EXPECT_EQ(s->keyboardTracking(), on) << s->objectName().toStdString();
    };
    p.texture().setInteractiveUpdate(false);
    p.wrapper.updateUI();
    auto* button = p.template control<QPushButton>("newInteractiveUpdate");
    EXPECT_FALSE(button->isChecked());
    expectTracking(false);

    hostUpdates().clear();
    button->click();
    EXPECT_TRUE(p.texture().interactiveUpdate());
    expectTracking(true);
    ASSERT_EQ(hostUpdates().size(), 1u);
    EXPECT_EQ(hostUpdates()[0].record[35], 1);
}

}  // namespace

TEST(PanelsGroupA, EveryPageFollowsTheCommonRules) {
    expectCommonPageRules<PerlinPage>("Perlin Noise");
    expectCommonPageRules<WoodPage>("Wood");
    expectCommonPageRules<SimpleMarblePage>("Simple Marble");
    expectCommonPageRules<StripesPage>("Stripes");
    expectCommonPageRules<SpheresPage>("Spheres");
    expectCommonPageRules<GranitePage>("Granite");
    expectCommonPageRules<GradientPage>("Gradient");
    expectCommonPageRules<SimplexPage>("Simplex");
}

// ---- Perlin Noise -------------------------------------------------------

TEST(PerlinPanel, ControlsReachTheSettersThenTheHost) {
    dialogtest::RecordingHost host;
    PerlinPage p;
    auto* octaves = p.control<QSpinBox>("octaves");
    auto* frequency = p.control<QSlider>("frequency");
    auto* amplitude = p.control<QSlider>("amplitude");
    EXPECT_EQ(octaves->minimum(), 0);
    EXPECT_EQ(octaves->maximum(), 16);
    // Hundredths over 0..16 and 0..4: the default frequency of 4 and the
    // clipping amplitudes above 1 are reachable.
    EXPECT_EQ(frequency->minimum(), 0);
    EXPECT_EQ(frequency->maximum(), 1600);
    EXPECT_EQ(amplitude->minimum(), 0);
    EXPECT_EQ(amplitude->maximum(), 400);

    octaves->setValue(9);
    EXPECT_EQ(p.texture().octaves(), 9);
    expectOneUpdate(p, "octaves");
    frequency->setValue(1234);
    EXPECT_EQ(p.texture().frequency(), 1234.0f / 100.0f);
    expectOneUpdate(p, "frequency");
    amplitude->setValue(333);
    EXPECT_EQ(p.texture().amplitude(), 333.0f / 100.0f);
    expectOneUpdate(p, "amplitude");
}

TEST(PerlinPanel, UpdateUIShowsTheRecordWithoutRewritingIt) {
    PerlinPage p;
    p.texture().setOctaves(11);
    p.texture().setFrequency(7.259f);
    p.texture().setAmplitude(0.257f);
    const std::string before = p.record();
    p.wrapper.updateUI();
    EXPECT_EQ(p.control<QSpinBox>("octaves")->value(), 11);
    EXPECT_EQ(p.control<QSlider>("frequency")->value(), 725);
    EXPECT_EQ(p.control<QSlider>("amplitude")->value(), 25);
    EXPECT_EQ(p.record(), before);
}

// ---- Wood ---------------------------------------------------------------

TEST(WoodPanel, ControlsReachTheSettersThenTheHost) {
    dialogtest::RecordingHost host;
    WoodPage p;
    auto* ringScale = p.control<QDoubleSpinBox>("ringScale");
    EXPECT_EQ(ringScale->decimals(), 0);  // the texture reports whole rings
    EXPECT_DOUBLE_EQ(ringScale->minimum(), 0.0);
    EXPECT_DOUBLE_EQ(ringScale->maximum(), 100.0);
    EXPECT_EQ(p.control<QSpinBox>("octaves")->maximum(), 16);
    EXPECT_EQ(p.control<QSlider>("frequency")->maximum(), 1000);
    for (const char* name : {"amplitude", "darkColor", "lightColor"})
        EXPECT_EQ(p.control<QSlider>(name)->maximum(), 100) << name;

    ringScale->setValue(13.0);
    EXPECT_EQ(p.texture().ringScale(), 13);
    expectOneUpdate(p, "ringScale");
    p.control<QSpinBox>("octaves")->setValue(5);
    EXPECT_EQ(p.texture().octaves(), 5);
    expectOneUpdate(p, "octaves");

    const struct {
        const char* slider;
        int value;
        float (WoodTexture3D::*get)() const;
    } sliders[] = {
        {"frequency", 750, &WoodTexture3D::frequency},
        {"amplitude", 33, &WoodTexture3D::amplitude},
        {"lightColor", 7, &WoodTexture3D::lightColor},
        // Rings lighter than the wood around them are allowed: no pairing.
        {"darkColor", 95, &WoodTexture3D::darkColor},
    };
    for (const auto& s : sliders) {
        p.control<QSlider>(s.slider)->setValue(s.value);
        EXPECT_EQ((p.texture().*s.get)(), static_cast<float>(s.value) / 100.0f) << s.slider;
        expectOneUpdate(p, s.slider);
    }
    EXPECT_EQ(p.control<QSlider>("lightColor")->value(), 7);
}

TEST(WoodPanel, UpdateUIShowsTheWholeRingScaleAndKeepsTheStoredOne) {
    WoodPage p;
    p.texture().setRingScale(6.7f);
    p.texture().setOctaves(3);
    p.texture().setFrequency(2.5f);
    p.texture().setAmplitude(0.257f);
    p.texture().setDarkColor(0.8f);
    p.texture().setLightColor(0.2f);
    const std::string before = p.record();
    p.wrapper.updateUI();
    EXPECT_DOUBLE_EQ(p.control<QDoubleSpinBox>("ringScale")->value(), 6.0);
    EXPECT_EQ(p.control<QSpinBox>("octaves")->value(), 3);
    EXPECT_EQ(p.control<QSlider>("frequency")->value(), 250);
    EXPECT_EQ(p.control<QSlider>("amplitude")->value(), 25);
    EXPECT_EQ(p.control<QSlider>("darkColor")->value(), 80);
    EXPECT_EQ(p.control<QSlider>("lightColor")->value(), 20);
    EXPECT_EQ(p.record(), before);  // still 6.7, which evaluation uses
}

// ---- Simple Marble --------------------------------------------------------

TEST(SimpleMarblePanel, ControlsReachTheSettersThenTheHost) {
    dialogtest::RecordingHost host;
    SimpleMarblePage p;
    auto* octaves = p.control<QSpinBox>("octaves");
    auto* scale = p.control<QDoubleSpinBox>("textureScale");
    EXPECT_EQ(octaves->minimum(), 0);
    EXPECT_EQ(octaves->maximum(), 16);
    EXPECT_EQ(scale->decimals(), 3);
    EXPECT_DOUBLE_EQ(scale->minimum(), 0.001);
    EXPECT_DOUBLE_EQ(scale->maximum(), 99.99);

    octaves->setValue(12);
    EXPECT_EQ(p.texture().getOctaves(), 12);
    expectOneUpdate(p, "octaves");
    scale->setValue(0.333);
    EXPECT_EQ(p.texture().getTextureScale(), static_cast<float>(0.333));
    expectOneUpdate(p, "textureScale");
}

TEST(SimpleMarblePanel, UpdateUIShowsTheRecordWithoutRewritingIt) {
    SimpleMarblePage p;
    p.texture().setOctaves(0);
    p.texture().setTextureScale(1.2345f);
    const std::string before = p.record();
    p.wrapper.updateUI();
    EXPECT_EQ(p.control<QSpinBox>("octaves")->value(), 0);
    EXPECT_DOUBLE_EQ(p.control<QDoubleSpinBox>("textureScale")->value(), 1.235);
    EXPECT_EQ(p.record(), before);
}

// ---- Stripes ------------------------------------------------------------

TEST(StripesPanel, TheListedStylesMapToTheStoredOnes) {
    dialogtest::RecordingHost host;
    StripesPage p;
    auto* style = p.control<QComboBox>("style");
    const struct {
        const char* label;
        StripesTexture3D::Style stored;
    } listed[] = {
        {"Triangle", StripesTexture3D::Triangle}, {"Straight", StripesTexture3D::Straight},
        {"Sine", StripesTexture3D::Sine},         {"Sawtooth", StripesTexture3D::Sawtooth},
        {"Ribbon", StripesTexture3D::Ribbon},     {"Perlin Noise", StripesTexture3D::PerlinNoise},
    };
    ASSERT_EQ(style->count(), 6);
    // Last to first, so that every step changes the selection.
    for (int i = 5; i >= 0; --i) {
        EXPECT_EQ(style->itemText(i).toStdString(), listed[i].label);
        style->setCurrentIndex(i);
        EXPECT_EQ(p.texture().getStripeStyle(), listed[i].stored) << listed[i].label;
        expectOneUpdate(p, listed[i].label);
    }
    for (int i = 0; i < 6; ++i) {
        p.texture().setStripeStyle(listed[i].stored);
        p.wrapper.updateUI();
        EXPECT_EQ(style->currentIndex(), i) << listed[i].label;
    }
    // A style beyond the enumeration draws straight lines; it shows as such
    // and stays stored as it was.
    p.texture().setStripeStyle(static_cast<StripesTexture3D::Style>(9));
    p.wrapper.updateUI();
    EXPECT_EQ(style->currentText(), "Straight");
    EXPECT_EQ(p.texture().getStripeStyle(), 9);
}

TEST(StripesPanel, ControlsReachTheSettersThenTheHost) {
    dialogtest::RecordingHost host;
    StripesPage p;
    EXPECT_EQ(p.control<QSlider>("stripeWidth")->maximum(), 100);
    EXPECT_EQ(p.control<QSlider>("amplitude")->maximum(), 200);
    for (const char* name : {"stripeWidth", "amplitude", "minColor", "maxColor"})
        EXPECT_EQ(p.control<QSlider>(name)->minimum(), 0) << name;

    p.control<QSlider>("stripeWidth")->setValue(40);
    EXPECT_EQ(p.texture().getStripeWidth(), 0.4f);
    expectOneUpdate(p, "stripeWidth");
    p.control<QSlider>("amplitude")->setValue(150);
    EXPECT_EQ(p.texture().getAmplitude(), 1.5f);
    expectOneUpdate(p, "amplitude");
    p.control<QPushButton>("randomizeColors")->click();
    EXPECT_TRUE(p.texture().getRandomizeColors());
    expectOneUpdate(p, "randomizeColors");
    p.control<QSlider>("maxColor")->setValue(90);
    EXPECT_EQ(p.texture().getMaxColor(), 0.9f);
    expectOneUpdate(p, "maxColor");
}

TEST(StripesPanel, MinimumAndMaximumStayOrdered) {
    dialogtest::RecordingHost host;
    StripesPage p;
    auto* minColor = p.control<QSlider>("minColor");
    auto* maxColor = p.control<QSlider>("maxColor");
    minColor->setValue(40);
    maxColor->setValue(80);
    hostUpdates().clear();

    maxColor->setValue(30);
    EXPECT_EQ(minColor->value(), 30);
    EXPECT_EQ(p.texture().getMaxColor(), 0.3f);
    EXPECT_EQ(p.texture().getMinColor(), 0.3f);
    EXPECT_EQ(hostUpdates().size(), 2u);  // the partner's slot reported too

    minColor->setValue(60);
    EXPECT_EQ(maxColor->value(), 60);
    EXPECT_EQ(p.texture().getMinColor(), 0.6f);
    EXPECT_EQ(p.texture().getMaxColor(), 0.6f);

    maxColor->setValue(90);
    EXPECT_EQ(minColor->value(), 60);
}

TEST(StripesPanel, UpdateUIShowsTheRecordWithoutRewritingIt) {
    StripesPage p;
    p.texture().setStripeStyle(StripesTexture3D::Sine);
    p.texture().setStripeWidth(0.257f);
    p.texture().setAmplitude(1.75f);
    p.texture().setRandomizeColors(true);
    // A reversed stored range is shown as it is, not reordered by loading.
    p.texture().setMinColor(0.5f);
    p.texture().setMaxColor(0.2f);
    const std::string before = p.record();
    p.wrapper.updateUI();
    EXPECT_EQ(p.control<QComboBox>("style")->currentText(), "Sine");
    EXPECT_EQ(p.control<QSlider>("stripeWidth")->value(), 25);
    EXPECT_EQ(p.control<QSlider>("amplitude")->value(), 175);
    EXPECT_TRUE(p.control<QPushButton>("randomizeColors")->isChecked());
    EXPECT_EQ(p.control<QSlider>("minColor")->value(), 50);
    EXPECT_EQ(p.control<QSlider>("maxColor")->value(), 20);
    EXPECT_EQ(p.record(), before);
}

// ---- Spheres ------------------------------------------------------------

TEST(SpheresPanel, ControlsReachTheSettersThenTheHost) {
    dialogtest::RecordingHost host;
    SpheresPage p;
    for (const char* name : {"sphereSize", "hollowness"}) {
        EXPECT_EQ(p.control<QSlider>(name)->minimum(), 0) << name;
        EXPECT_EQ(p.control<QSlider>(name)->maximum(), 100) << name;
    }

    p.control<QSlider>("sphereSize")->setValue(60);
    EXPECT_EQ(p.texture().getSphereSize(), 0.6f);
    expectOneUpdate(p, "sphereSize");
    p.control<QPushButton>("staggered")->click();
    EXPECT_TRUE(p.texture().getStaggered());
    expectOneUpdate(p, "staggered");
    p.control<QSlider>("hollowness")->setValue(45);
    EXPECT_EQ(p.texture().getHollowness(), 0.45f);
    expectOneUpdate(p, "hollowness");
}

TEST(SpheresPanel, UpdateUIShowsTheRecordWithoutRewritingIt) {
    SpheresPage p;
    p.texture().setSphereSize(0.257f);
    p.texture().setStaggered(true);
    p.texture().setHollowness(0.999f);
    const std::string before = p.record();
    p.wrapper.updateUI();
    EXPECT_EQ(p.control<QSlider>("sphereSize")->value(), 25);
    EXPECT_TRUE(p.control<QPushButton>("staggered")->isChecked());
    EXPECT_EQ(p.control<QSlider>("hollowness")->value(), 99);
    EXPECT_EQ(p.record(), before);
}

// ---- Granite ------------------------------------------------------------

TEST(GranitePanel, ControlsReachTheSettersThenTheHost) {
    dialogtest::RecordingHost host;
    GranitePage p;
    auto* octaves = p.control<QSpinBox>("octaves");
    auto* frequency = p.control<QSlider>("frequency");
    EXPECT_EQ(octaves->minimum(), 0);
    EXPECT_EQ(octaves->maximum(), 16);
    // A frequency of 0 weighs every speckle 0 / 0: the slider stops at 0.01.
    EXPECT_EQ(frequency->minimum(), 1);
    EXPECT_EQ(frequency->maximum(), 800);

    octaves->setValue(2);
    EXPECT_EQ(p.texture().getOctaves(), 2);
    expectOneUpdate(p, "octaves");
    frequency->setValue(50);
    EXPECT_EQ(p.texture().getFrequency(), 0.5f);
    expectOneUpdate(p, "frequency");
}

TEST(GranitePanel, UpdateUIShowsTheRecordWithoutRewritingIt) {
    GranitePage p;
    p.texture().setOctaves(10);
    p.texture().setFrequency(3.337f);
    std::string before = p.record();
    p.wrapper.updateUI();
    EXPECT_EQ(p.control<QSpinBox>("octaves")->value(), 10);
    EXPECT_EQ(p.control<QSlider>("frequency")->value(), 333);
    EXPECT_EQ(p.record(), before);

    // A stored zero frequency shows at the slider's floor and stays zero.
    p.texture().setFrequency(0.0f);
    before = p.record();
    p.wrapper.updateUI();
    EXPECT_EQ(p.control<QSlider>("frequency")->value(), 1);
    EXPECT_EQ(p.record(), before);
}

// ---- Gradient -----------------------------------------------------------

TEST(GradientPanel, EachAxisReachesItsFlagThenTheHost) {
    dialogtest::RecordingHost host;
    GradientPage p;
    const struct {
        const char* button;
        bool (GradientTexture3D::*get)() const;
    } axes[] = {
        {"xDir", &GradientTexture3D::getXDir},
        {"yDir", &GradientTexture3D::getYDir},
        {"zDir", &GradientTexture3D::getZDir},
    };
    for (const auto& axis : axes) {
        auto* button = p.control<QPushButton>(axis.button);
        ASSERT_TRUE(button->isChecked()) << axis.button;  // all three ramps by default
        button->click();
        EXPECT_FALSE((p.texture().*axis.get)()) << axis.button;
        expectOneUpdate(p, axis.button);
    }
    // Turning one back on touches that flag alone.
    p.control<QPushButton>("yDir")->click();
    EXPECT_FALSE(p.texture().getXDir());
    EXPECT_TRUE(p.texture().getYDir());
    EXPECT_FALSE(p.texture().getZDir());
    expectOneUpdate(p, "yDir again");
}

TEST(GradientPanel, UpdateUIShowsTheFlags) {
    GradientPage p;
    p.texture().setXDir(false);
    p.texture().setYDir(true);
    p.texture().setZDir(false);
    const std::string before = p.record();
    p.wrapper.updateUI();
    EXPECT_FALSE(p.control<QPushButton>("xDir")->isChecked());
    EXPECT_TRUE(p.control<QPushButton>("yDir")->isChecked());
    EXPECT_FALSE(p.control<QPushButton>("zDir")->isChecked());
    EXPECT_EQ(p.record(), before);
}

// ---- Simplex ------------------------------------------------------------

TEST(SimplexPanel, ScaleReachesTheTextureAndOverallScaleTheTransforms) {
    dialogtest::RecordingHost host;
    SimplexPage p;
    auto* scale = p.control<QDoubleSpinBox>("scale");
    EXPECT_EQ(scale->decimals(), 3);
    EXPECT_DOUBLE_EQ(scale->minimum(), 0.001);
    EXPECT_DOUBLE_EQ(scale->maximum(), 99.99);

    scale->setValue(12.375);
    EXPECT_EQ(p.texture().getScale(), 12.375f);
    expectOneUpdate(p, "scale");

    // The panel's scaleChanged hides the base's slot of the same name; the
    // common block's overall scale must still go to the transforms alone.
    p.control<QDoubleSpinBox>("overallScale")->setValue(2.5);
    TransformData t;
    p.wrapper.getTransforms(t);
    EXPECT_EQ(t.overallScale, 2.5f);
    EXPECT_EQ(p.texture().getScale(), 12.375f);
    expectOneUpdate(p, "overallScale");
}

TEST(SimplexPanel, UpdateUIShowsTheRecordWithoutRewritingIt) {
    SimplexPage p;
    p.texture().setScale(1.2345f);
    const std::string before = p.record();
    p.wrapper.updateUI();
    EXPECT_DOUBLE_EQ(p.control<QDoubleSpinBox>("scale")->value(), 1.235);
    EXPECT_EQ(p.record(), before);
}
