// The HexTile, Spiral, Cheetah, Voronoi Tiles, Plaid, Psychedelic, Camouflage
// and Zigzag pages: one table of controls per page drives the checks every
// page shares (form, setters, loading, interactive update); the paired
// colour sliders and Plaid's whole-number periods have their own cases.

#include <algorithm>
#include <cmath>
#include <cstring>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include <QAbstractButton>
#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QFrame>
#include <QPushButton>
#include <QSlider>
#include <QSpinBox>

#include <gtest/gtest.h>

#include "DialogTestSupport.h"
#include "dialog/GeneratorRegistry.h"
#include "dialog/panels/CamouflageQtWrapper.h"
#include "dialog/panels/CheetahQtWrapper.h"
#include "dialog/panels/HexTileQtWrapper.h"
#include "dialog/panels/PlaidQtWrapper.h"
#include "dialog/panels/PsychedelicQtWrapper.h"
#include "dialog/panels/SpiralQtWrapper.h"
#include "dialog/panels/VoronoiTileQtWrapper.h"
#include "dialog/panels/ZigzagQtWrapper.h"

using namespace gritwell;
using dialogtest::hostUpdates;

namespace {

template <class T, class W, class U>
using Page = dialogtest::PanelPage<T, W, U>;

using HexTilePage = Page<HexTileTexture3D, HexTileQtWrapper, Ui_HexTileWidget>;
using SpiralPage = Page<SpiralTexture3D, SpiralQtWrapper, Ui_SpiralWidget>;
using CheetahPage = Page<CheetahTexture3D, CheetahQtWrapper, Ui_CheetahWidget>;
using VoronoiTilePage = Page<VoronoiTileTexture3D, VoronoiTileQtWrapper, Ui_VoronoiTileWidget>;
using PlaidPage = Page<PlaidTexture3D, PlaidQtWrapper, Ui_PlaidWidget>;
using PsychedelicPage = Page<PsychedelicTexture3D, PsychedelicQtWrapper, Ui_PsychedelicWidget>;
using CamouflagePage = Page<CamouflageTexture3D, CamouflageQtWrapper, Ui_CamouflageWidget>;
using ZigzagPage = Page<ZigzagTexture3D, ZigzagQtWrapper, Ui_ZigzagWidget>;

// ---- The controls of each page ---------------------------------------------

enum class Kind {
    Slider,  // QSlider, 0..100 for 0..1
    Spin,    // QDoubleSpinBox, the value narrowed to float
    Count,   // QSpinBox, a whole number
    Toggle,  // checkable QPushButton
};

template <class T>
struct Control {
    Kind kind;
    const char* name;
    std::function<double(const T&)> get;
    std::function<void(T&, double)> set;
    double moveTo;        // where the test moves the control (ignored for a toggle: it is clicked)
    double stored;        // a record value for updateUI to show...
    double shown;         // ...and what the control shows for it
    double low, high;     // the values an artist needs: the control's range must hold them
};

template <class T, class G, class Arg>
Control<T> row(Kind kind, const char* name, G (T::*get)() const, void (T::*set)(Arg), double moveTo, double stored,
               double shown, double low = 0.0, double high = 1.0) {
    return {kind,
            name,
            [get](const T& t) { return static_cast<double>((t.*get)()); },
            [set](T& t, double v) { (t.*set)(static_cast<Arg>(v)); },
            moveTo,
            stored,
            shown,
            low,
            high};
}

constexpr Kind S = Kind::Slider, D = Kind::Spin, N = Kind::Count, B = Kind::Toggle;

// Stored colours such as 0.615 are not on the sliders' 1/100 grid: a load
// that wrote a slider's value back would store 0.61 instead. Each table is in
// the panel's connection order.
template <class T>
std::vector<Control<T>> controlsOf();

template <>
std::vector<Control<HexTileTexture3D>> controlsOf() {
    using T = HexTileTexture3D;
    return {
        row(S, "tileColor", &T::getTileColor, &T::setTileColor, 37, 0.257, 25),
        row(S, "mortarColor", &T::getMortarColor, &T::setMortarColor, 12, 0.999, 99),
        row(D, "tileRadius", &T::getTileRadius, &T::setTileRadius, 1.25, 2.345, 2.345, 0.001, 10.0),
        row(D, "mortarThickness", &T::getMortarThickness, &T::setMortarThickness, 0.125, 0.075, 0.075, 0.0, 1.0),
        row(B, "randomizeColors", &T::getRandomizeColors, &T::setRandomizeColors, 0, 1, 1),
        row(S, "minColor", &T::getMinColor, &T::setMinColor, 37, 0.615, 61),
        row(S, "maxColor", &T::getMaxColor, &T::setMaxColor, 63, 0.837, 83),
    };
}

template <>
std::vector<Control<SpiralTexture3D>> controlsOf() {
    using T = SpiralTexture3D;
    return {
        row(S, "stripeWidth", &T::getStripeWidth, &T::setStripeWidth, 37, 0.257, 25),
        // A negative rate winds the other way.
        row(D, "spiralRate", &T::getSpiralRate, &T::setSpiralRate, -1.5, 3.125, 3.125, -10.0, 10.0),
    };
}

template <>
std::vector<Control<CheetahTexture3D>> controlsOf() {
    using T = CheetahTexture3D;
    return {
        row(S, "spotSize", &T::getSpotSize, &T::setSpotSize, 37, 0.257, 25),
        row(S, "layoutVariability", &T::getLayoutVariability, &T::setLayoutVariability, 100, 0.999, 99),
        row(S, "spotVariability", &T::getSpotVariability, &T::setSpotVariability, 0, 0.613, 61),
    };
}

template <>
std::vector<Control<VoronoiTileTexture3D>> controlsOf() {
    using T = VoronoiTileTexture3D;
    return {
        row(D, "cellVariability", &T::getCellVariability, &T::setCellVariability, 0.35, 0.65, 0.65, 0.0, 1.0),
        row(B, "cellRandomizeColors", &T::getCellRandomizeColors, &T::setCellRandomizeColors, 0, 1, 1),
        row(S, "cellMinColor", &T::getCellMinColor, &T::setCellMinColor, 37, 0.615, 61),
        row(S, "cellMaxColor", &T::getCellMaxColor, &T::setCellMaxColor, 63, 0.837, 83),
        row(B, "cellAddNoise", &T::getCellAddNoise, &T::setCellAddNoise, 0, 1, 1),
        row(N, "cellOctaves", &T::getCellOctaves, &T::setCellOctaves, 7, 9, 9, 1, 10),
        row(D, "cellLacunarity", &T::getCellLacunarity, &T::setCellLacunarity, 2.5, 3.125, 3.125, 1.0, 4.0),
        row(D, "cellGain", &T::getCellGain, &T::setCellGain, 0.65, 0.375, 0.375, 0.0, 1.0),
        row(D, "cellDetail", &T::getCellDetail, &T::setCellDetail, 12.5, 6.25, 6.25, 0.5, 32.0),
        row(D, "boundaryThickness", &T::getBoundaryThickness, &T::setBoundaryThickness, 0.125, 0.02, 0.02, 0.0, 0.5),
        row(B, "boundaryAddNoise", &T::getBoundaryAddNoise, &T::setBoundaryAddNoise, 0, 1, 1),
        row(N, "boundaryOctaves", &T::getBoundaryOctaves, &T::setBoundaryOctaves, 2, 6, 6, 1, 10),
        row(D, "boundaryLacunarity", &T::getBoundaryLacunarity, &T::setBoundaryLacunarity, 1.5, 2.25, 2.25, 1.0, 4.0),
        row(D, "boundaryGain", &T::getBoundaryGain, &T::setBoundaryGain, 0.25, 0.75, 0.75, 0.0, 1.0),
        row(D, "boundaryDetail", &T::getBoundaryDetail, &T::setBoundaryDetail, 16.5, 3.5, 3.5, 0.5, 32.0),
    };
}

template <>
std::vector<Control<PlaidTexture3D>> controlsOf() {
    using T = PlaidTexture3D;
    return {
        row(S, "primaryBackground", &T::getPrimaryBackground, &T::setPrimaryBackground, 37, 0.257, 25),
        row(D, "horizontalFrequency", &T::getHorizontalFrequency, &T::setHorizontalFrequency, 3.5, 7.125, 7.125,
            0.1, 20.0),
        row(D, "verticalFrequency", &T::getVerticalFrequency, &T::setVerticalFrequency, 0.75, 1.375, 1.375, 0.1,
            20.0),
        row(N, "horizontalPeriod", &T::getHorizontalPeriod, &T::setHorizontalPeriod, 7, 9, 9, 1, 32),
        row(N, "verticalPeriod", &T::getVerticalPeriod, &T::setVerticalPeriod, 11, 2, 2, 1, 32),
    };
}

template <>
std::vector<Control<PsychedelicTexture3D>> controlsOf() {
    using T = PsychedelicTexture3D;
    return {
        row(D, "frequency", &T::getFrequency, &T::setFrequency, 2.5, 0.375, 0.375, 0.0, 10.0),
        row(S, "minColor", &T::getMinColor, &T::setMinColor, 37, 0.615, 61),
        row(S, "maxColor", &T::getMaxColor, &T::setMaxColor, 63, 0.837, 83),
    };
}

template <>
std::vector<Control<CamouflageTexture3D>> controlsOf() {
    using T = CamouflageTexture3D;
    return {
        row(D, "frequency", &T::getFrequency, &T::setFrequency, 1.5, 0.875, 0.875, 0.0, 5.0),
        row(S, "threshold", &T::getThreshold, &T::setThreshold, 37, 0.257, 25),
        row(S, "baseColor", &T::getBaseColor, &T::setBaseColor, 12, 0.999, 99),
    };
}

template <>
std::vector<Control<ZigzagTexture3D>> controlsOf() {
    using T = ZigzagTexture3D;
    return {
        row(B, "randomizeColors", &T::getRandomizeColors, &T::setRandomizeColors, 0, 1, 1),
        row(S, "variability", &T::getVariability, &T::setVariability, 37, 0.257, 25),
    };
}

// The form's own controls, without the common block the panel appends.
std::vector<QWidget*> formControls(QWidget* form) {
    std::vector<QWidget*> out;
    for (QWidget* w : form->findChildren<QWidget*>())
        if (qobject_cast<QAbstractSlider*>(w) || qobject_cast<QAbstractSpinBox*>(w) ||
            qobject_cast<QAbstractButton*>(w) || qobject_cast<QComboBox*>(w))
            out.push_back(w);
    return out;
}

template <class T>
void expectOneUpdateOfTheRecord(T& texture, const char* what) {
    ASSERT_EQ(hostUpdates().size(), 1u) << what;
    char record[256] = {};
    texture.getDescription(record);
    EXPECT_EQ(std::memcmp(hostUpdates()[0].record.data(), record, sizeof record), 0) << what;
    hostUpdates().clear();
}

template <class P>
class GroupCPanel : public testing::Test {};

struct PageName {
    template <class P>
    static std::string GetName(int) {
        std::string name(P::Texture::kName);
        name.erase(std::remove(name.begin(), name.end(), ' '), name.end());
        return name;
    }
};

using Pages = testing::Types<HexTilePage, SpiralPage, CheetahPage, VoronoiTilePage, PlaidPage, PsychedelicPage,
                             CamouflagePage, ZigzagPage>;
TYPED_TEST_SUITE(GroupCPanel, Pages, PageName);

}  // namespace

// ---- What every page shares ------------------------------------------------

TYPED_TEST(GroupCPanel, FormHoldsTheTabledControlsWithToolTipsAndRangesCoveringTheDomain) {
    using T = typename TypeParam::Texture;
    typename TypeParam::Ui ui;
    QWidget form;
    ui.setupUi(&form);
    EXPECT_EQ(form.windowTitle().toStdString(), T::kName);

    const auto controls = controlsOf<T>();
    std::set<std::string> tabled;
    for (const auto& c : controls) tabled.insert(c.name);
    for (QWidget* w : formControls(&form)) {
        const std::string name = w->objectName().toStdString();
        EXPECT_EQ(tabled.count(name), 1u) << name << " is on the form but not tested";
        EXPECT_FALSE(w->toolTip().isEmpty()) << name;
    }

    const T defaults;
    for (const auto& c : controls) {
        const double atDefault = c.get(defaults);
        switch (c.kind) {
            case Kind::Slider: {
                auto* slider = form.findChild<QSlider*>(c.name);
                ASSERT_NE(slider, nullptr) << c.name;
                EXPECT_EQ(slider->minimum(), 0) << c.name;
                EXPECT_EQ(slider->maximum(), 100) << c.name;
                EXPECT_GE(atDefault, 0.0) << c.name;
                EXPECT_LE(atDefault, 1.0) << c.name;
                // The theme outlines each slider's frame on hover.
                auto* frame = qobject_cast<QFrame*>(slider->parentWidget());
                ASSERT_NE(frame, nullptr) << c.name;
                EXPECT_TRUE(frame->property("sliderFrame").toBool()) << c.name;
                break;
            }
            case Kind::Spin: {
                auto* spin = form.findChild<QDoubleSpinBox*>(c.name);
                ASSERT_NE(spin, nullptr) << c.name;
                EXPECT_LE(spin->minimum(), std::min(c.low, atDefault)) << c.name;
                EXPECT_GE(spin->maximum(), std::max(c.high, atDefault)) << c.name;
                EXPECT_GT(spin->singleStep(), 0.0) << c.name;
                break;
            }
            case Kind::Count: {
                auto* spin = form.findChild<QSpinBox*>(c.name);
                ASSERT_NE(spin, nullptr) << c.name;
                EXPECT_LE(spin->minimum(), std::min(c.low, atDefault)) << c.name;
                EXPECT_GE(spin->maximum(), std::max(c.high, atDefault)) << c.name;
                break;
            }
            case Kind::Toggle: {
                auto* button = form.findChild<QPushButton*>(c.name);
                ASSERT_NE(button, nullptr) << c.name;
                EXPECT_TRUE(button->isCheckable()) << c.name;
                EXPECT_FALSE(button->text().isEmpty()) << c.name;
                break;
            }
        }
    }
}

TYPED_TEST(GroupCPanel, EveryControlReachesItsSetterThenTheHost) {
    using T = typename TypeParam::Texture;
    dialogtest::RecordingHost host;
    TypeParam p;
    T& t = p.texture();
    // From the defaults, so that each move below is a change and no move
    // crosses a paired slider.
    p.wrapper.updateUI();
    hostUpdates().clear();

    for (const auto& c : controlsOf<T>()) {
        switch (c.kind) {
            case Kind::Slider:
                p.template control<QSlider>(c.name)->setValue(static_cast<int>(c.moveTo));
                EXPECT_EQ(c.get(t), static_cast<double>(static_cast<float>(c.moveTo) / 100.0f)) << c.name;
                break;
            case Kind::Spin:
                p.template control<QDoubleSpinBox>(c.name)->setValue(c.moveTo);
                EXPECT_EQ(c.get(t), static_cast<double>(static_cast<float>(c.moveTo))) << c.name;
                break;
            case Kind::Count:
                p.template control<QSpinBox>(c.name)->setValue(static_cast<int>(c.moveTo));
                EXPECT_EQ(c.get(t), c.moveTo) << c.name;
                break;
            case Kind::Toggle: {
                const double before = c.get(t);
                p.template control<QPushButton>(c.name)->click();
                EXPECT_EQ(c.get(t), 1.0 - before) << c.name;
                break;
            }
        }
        expectOneUpdateOfTheRecord(t, c.name);
    }
}

TYPED_TEST(GroupCPanel, UpdateUIShowsTheRecordWithoutRewritingIt) {
    using T = typename TypeParam::Texture;
    dialogtest::RecordingHost host;
    TypeParam p;
    T& t = p.texture();
    const auto controls = controlsOf<T>();
    for (const auto& c : controls) c.set(t, c.stored);
    t.setInteractiveUpdate(false);
    char before[256] = {};
    t.getDescription(before);

    p.wrapper.updateUI();
    for (const auto& c : controls) {
        switch (c.kind) {
            case Kind::Slider:
                EXPECT_EQ(p.template control<QSlider>(c.name)->value(), static_cast<int>(c.shown)) << c.name;
                EXPECT_FALSE(p.template control<QSlider>(c.name)->hasTracking()) << c.name;
                break;
            case Kind::Spin:
                EXPECT_NEAR(p.template control<QDoubleSpinBox>(c.name)->value(), c.shown, 1e-9) << c.name;
                EXPECT_FALSE(p.template control<QDoubleSpinBox>(c.name)->keyboardTracking()) << c.name;
                break;
            case Kind::Count:
                EXPECT_EQ(p.template control<QSpinBox>(c.name)->value(), static_cast<int>(c.shown)) << c.name;
                EXPECT_FALSE(p.template control<QSpinBox>(c.name)->keyboardTracking()) << c.name;
                break;
            case Kind::Toggle:
                EXPECT_EQ(p.template control<QPushButton>(c.name)->isChecked(), c.shown != 0.0) << c.name;
                break;
        }
    }
    EXPECT_FALSE(p.template control<QPushButton>("newInteractiveUpdate")->isChecked());

    char after[256] = {};
    t.getDescription(after);
    EXPECT_EQ(std::memcmp(before, after, sizeof before), 0);
}

TYPED_TEST(GroupCPanel, TheInteractiveUpdateButtonStoresTheFlagAndTracksThePage) {
    using T = typename TypeParam::Texture;
    dialogtest::RecordingHost host;
    TypeParam p;
    p.texture().setInteractiveUpdate(false);
    p.wrapper.updateUI();
    hostUpdates().clear();

    p.template control<QPushButton>("newInteractiveUpdate")->click();
    EXPECT_TRUE(p.texture().interactiveUpdate());
    ASSERT_FALSE(hostUpdates().empty());
    EXPECT_EQ(hostUpdates().back().record[35], 1);
    for (const auto& c : controlsOf<T>()) {
        if (c.kind == Kind::Slider) {
            EXPECT_TRUE(p.template control<QSlider>(c.name)->hasTracking()) << c.name;
        } else if (c.kind == Kind::Spin || c.kind == Kind::Count) {
            EXPECT_TRUE(p.template control<QAbstractSpinBox>(c.name)->keyboardTracking()) << c.name;
        }
    }
}

// ---- Paired minimum and maximum --------------------------------------------

namespace {

template <class P, class T = typename P::Texture>
void expectPairing(const char* minName, const char* maxName, float (T::*getMin)() const,
                   float (T::*getMax)() const) {
    dialogtest::RecordingHost host;
    P p;
    auto* minimum = p.template control<QSlider>(minName);
    auto* maximum = p.template control<QSlider>(maxName);
    maximum->setValue(80);
    minimum->setValue(40);
    hostUpdates().clear();

    maximum->setValue(30);
    EXPECT_EQ(minimum->value(), 30);
    EXPECT_EQ((p.texture().*getMax)(), 0.3f);
    EXPECT_EQ((p.texture().*getMin)(), 0.3f);
    // The partner's slot ran inside the first one's: both report.
    EXPECT_EQ(hostUpdates().size(), 2u);

    minimum->setValue(60);
    EXPECT_EQ(maximum->value(), 60);
    EXPECT_EQ((p.texture().*getMin)(), 0.6f);
    EXPECT_EQ((p.texture().*getMax)(), 0.6f);

    // Within the range the partner stays where it is.
    maximum->setValue(90);
    minimum->setValue(10);
    EXPECT_EQ((p.texture().*getMin)(), 0.1f);
    EXPECT_EQ((p.texture().*getMax)(), 0.9f);
}

}  // namespace

TEST(GroupCPairs, HexTileColours) {
    expectPairing<HexTilePage>("minColor", "maxColor", &HexTileTexture3D::getMinColor, &HexTileTexture3D::getMaxColor);
}

TEST(GroupCPairs, VoronoiTileColours) {
    expectPairing<VoronoiTilePage>("cellMinColor", "cellMaxColor", &VoronoiTileTexture3D::getCellMinColor,
                                   &VoronoiTileTexture3D::getCellMaxColor);
}

TEST(GroupCPairs, PsychedelicColours) {
    expectPairing<PsychedelicPage>("minColor", "maxColor", &PsychedelicTexture3D::getMinColor,
                                   &PsychedelicTexture3D::getMaxColor);
}

TEST(GroupCPairs, AnInvertedStoredRangeIsShownAsStored) {
    // Psychedelic reads a minimum above the maximum as an inverted mapping;
    // opening such a record must not quietly repair it.
    PsychedelicPage p;
    p.texture().setMinColor(0.8f);
    p.texture().setMaxColor(0.3f);
    p.wrapper.updateUI();
    EXPECT_EQ(p.control<QSlider>("minColor")->value(), 80);
    EXPECT_EQ(p.control<QSlider>("maxColor")->value(), 30);
    EXPECT_EQ(p.texture().getMinColor(), 0.8f);
    EXPECT_EQ(p.texture().getMaxColor(), 0.3f);
}

// ---- Plaid's periods -------------------------------------------------------

TEST(PlaidPanel, ADamagedPeriodIsShownNotRepaired) {
    dialogtest::RecordingHost host;
    PlaidPage p;
    auto* vertical = p.control<QSpinBox>("verticalPeriod");
    // A period of 0 makes the stripes NaN; the box starts at 1, the
    // smallest period that repeats. It shows its minimum; the record keeps 0
    // until the user picks a period.
    p.texture().setVerticalPeriod(0.0f);
    p.wrapper.updateUI();
    EXPECT_EQ(vertical->minimum(), 1);
    EXPECT_EQ(vertical->value(), 1);
    EXPECT_EQ(p.texture().getVerticalPeriod(), 0);
    hostUpdates().clear();

    vertical->stepUp();
    EXPECT_EQ(p.texture().getVerticalPeriod(), 2);
    EXPECT_EQ(hostUpdates().size(), 1u);
}

// ---- The dialog offers them ------------------------------------------------

TEST(GroupCPanels, EveryPageIsRegistered) {
    std::set<std::string> registered;
    for (const auto& r : GeneratorRegistry::registrations()) registered.insert(std::string(r.name));
    for (std::string_view name : {HexTileTexture3D::kName, SpiralTexture3D::kName, CheetahTexture3D::kName,
                                  VoronoiTileTexture3D::kName, PlaidTexture3D::kName, PsychedelicTexture3D::kName,
                                  CamouflageTexture3D::kName, ZigzagTexture3D::kName})
        EXPECT_EQ(registered.count(std::string(name)), 1u) << name;
}
