// The Voronoi, Grid, Turbulence, FBM, Erosion, Nested Shapes, Dents and
// Speckled Stone pages: each control reaches its setter and then the host,
// updateUI shows a record without rewriting it, the forms' ranges, tool tips
// and interactive update.

#include <cstring>
#include <vector>

#include <QComboBox>
#include <QDoubleSpinBox>
#include <QFrame>
#include <QPushButton>
#include <QSlider>
#include <QSpinBox>
#include <QStringList>

#include <gtest/gtest.h>

#include "DialogTestSupport.h"
#include "dialog/panels/DentedQtWrapper.h"
#include "dialog/panels/ErodedQtWrapper.h"
#include "dialog/panels/FBMQtWrapper.h"
#include "dialog/panels/GridQtWrapper.h"
#include "dialog/panels/NestedShapesQtWrapper.h"
#include "dialog/panels/SpeckledStoneQtWrapper.h"
#include "dialog/panels/TurbulenceQtWrapper.h"
#include "dialog/panels/VoronoiQtWrapper.h"

using namespace gritwell;
using dialogtest::hostUpdates;
using dialogtest::ownControls;

namespace {

template <class T, class W, class U>
using Page = dialogtest::PanelPage<T, W, U>;
using VoronoiPage = Page<VoronoiTexture3D, VoronoiQtWrapper, Ui_VoronoiWidget>;
using GridPage = Page<GridTexture3D, GridQtWrapper, Ui_GridWidget>;
using TurbulencePage = Page<TurbulenceTexture3D, TurbulenceQtWrapper, Ui_TurbulenceWidget>;
using FBMPage = Page<FBMTexture3D, FBMQtWrapper, Ui_FBMWidget>;
using ErodedPage = Page<ErodedTexture3D, ErodedQtWrapper, Ui_ErodedWidget>;
using NestedShapesPage = Page<NestedShapesTexture3D, NestedShapesQtWrapper, Ui_NestedShapesWidget>;
using DentedPage = Page<DentedTexture3D, DentedQtWrapper, Ui_DentedWidget>;
using SpeckledStonePage = Page<SpeckledStoneTexture3D, SpeckledStoneQtWrapper, Ui_SpeckledStoneWidget>;

// Exactly one host update since the last call, carrying the texture's record.
template <class P>
void expectOneUpdate(P& p, const char* what) {
    ASSERT_EQ(hostUpdates().size(), 1u) << what;
    const std::string record = p.record();
    EXPECT_EQ(std::memcmp(hostUpdates()[0].record.data(), record.data(), record.size()), 0) << what;
    hostUpdates().clear();
}

QStringList itemsOf(const QComboBox* combo) {
    QStringList items;
    for (int i = 0; i < combo->count(); ++i) items << combo->itemText(i);
    return items;
}

// ---------------------------------------------------------------------------
// What every page of the group shares

template <class P>
class GroupBPage : public testing::Test {};
using GroupBPages = testing::Types<VoronoiPage, GridPage, TurbulencePage, FBMPage, ErodedPage, NestedShapesPage,
                                   DentedPage, SpeckledStonePage>;
TYPED_TEST_SUITE(GroupBPage, GroupBPages);

TYPED_TEST(GroupBPage, FormIsTitledAndEveryControlExplainsItself) {
    TypeParam p;
    EXPECT_EQ(p.form.page.windowTitle().toStdString(), TypeParam::Texture::kName);
    std::vector<QWidget*> controls;
    for (auto* c : ownControls<QAbstractSpinBox>(p.form.page)) controls.push_back(c);
    for (auto* c : ownControls<QComboBox>(p.form.page)) controls.push_back(c);
    for (auto* c : ownControls<QPushButton>(p.form.page)) {
        EXPECT_TRUE(c->isCheckable()) << c->objectName().toStdString();
        controls.push_back(c);
    }
    for (auto* slider : ownControls<QSlider>(p.form.page)) {
        // Fractions and intensities: 0..1 on 0..100, in a frame the theme
        // outlines on hover.
        EXPECT_EQ(slider->minimum(), 0) << slider->objectName().toStdString();
        EXPECT_EQ(slider->maximum(), 100) << slider->objectName().toStdString();
        auto* frame = qobject_cast<QFrame*>(slider->parentWidget());
        ASSERT_NE(frame, nullptr) << slider->objectName().toStdString();
        EXPECT_TRUE(frame->property("sliderFrame").toBool()) << slider->objectName().toStdString();
        controls.push_back(slider);
    }
    ASSERT_FALSE(controls.empty());
    for (QWidget* c : controls) EXPECT_FALSE(c->toolTip().isEmpty()) << c->objectName().toStdString();
}

TYPED_TEST(GroupBPage, DefaultsSurviveTheRoundTripThroughTheControls) {
    // Loading a fresh texture writes nothing; then every control reports
    // what it shows, as if the user had touched it. The record must not
    // move: the form's ranges, decimals and labels hold every default.
    dialogtest::RecordingHost host;
    TypeParam p;
    const std::string defaults = p.record();
    p.wrapper.updateUI();
    EXPECT_EQ(p.record(), defaults);
    hostUpdates().clear();

    for (auto* c : ownControls<QDoubleSpinBox>(p.form.page)) emit c->valueChanged(c->value());
    for (auto* c : ownControls<QSpinBox>(p.form.page)) emit c->valueChanged(c->value());
    for (auto* c : ownControls<QSlider>(p.form.page)) emit c->valueChanged(c->value());
    for (auto* c : ownControls<QPushButton>(p.form.page)) emit c->toggled(c->isChecked());
    for (auto* c : ownControls<QComboBox>(p.form.page)) {
        emit c->currentIndexChanged(c->currentIndex());
        emit c->currentTextChanged(c->currentText());
    }
    EXPECT_FALSE(hostUpdates().empty());
    EXPECT_EQ(p.record(), defaults);
}

TYPED_TEST(GroupBPage, InteractiveUpdateFollowsTheRecord) {
    dialogtest::RecordingHost host;
    TypeParam p;
    auto* button = p.template control<QPushButton>("newInteractiveUpdate");
    const auto expectTracking = [&](bool on) {
        for (auto* s : ownControls<QSlider>(p.form.page))
            EXPECT_EQ(s->hasTracking(), on) << s->objectName().toStdString();
        for (auto* s : ownControls<QAbstractSpinBox>(p.form.page))
            EXPECT_EQ(s->keyboardTracking(), on) << s->objectName().toStdString();
    };

    p.texture().setInteractiveUpdate(false);
    p.wrapper.updateUI();
    EXPECT_FALSE(button->isChecked());
    expectTracking(false);
    // The common block never saw a toggle and keeps tracking on.
    EXPECT_TRUE(p.template control<QSlider>("transX")->hasTracking());

    button->click();
    EXPECT_TRUE(p.texture().interactiveUpdate());
    expectTracking(true);
    ASSERT_FALSE(hostUpdates().empty());
    EXPECT_EQ(hostUpdates().back().record[35], 1);

    button->click();
    EXPECT_FALSE(p.texture().interactiveUpdate());
    expectTracking(false);
    EXPECT_EQ(hostUpdates().back().record[35], 0);
}

// ---------------------------------------------------------------------------
// Voronoi

TEST(VoronoiPanel, CombosListTheStoredValuesInOrder) {
    VoronoiPage p;
    EXPECT_EQ(itemsOf(p.control<QComboBox>("type")),
              QStringList({"First", "Second", "Third", "Fourth", "Difference (2-1)", "Difference (3-2)", "Tile"}));
    EXPECT_EQ(itemsOf(p.control<QComboBox>("distanceMethod")),
              QStringList({"Length", "Squared Length", "Taxicab", "Chebychev", "Quadratic", "Minkowski(4)",
                           "Minkowski(0.5)"}));
}

TEST(VoronoiPanel, ControlsReachTheSettersThenTheHost) {
    dialogtest::RecordingHost host;
    VoronoiPage p;
    VoronoiTexture3D& t = p.texture();

    p.control<QDoubleSpinBox>("scale")->setValue(12.345);
    EXPECT_EQ(t.scale(), static_cast<float>(12.345));
    expectOneUpdate(p, "scale");
    p.control<QComboBox>("type")->setCurrentIndex(6);
    EXPECT_EQ(t.type(), Voronoi::Crackle);
    expectOneUpdate(p, "type");
    p.control<QComboBox>("type")->setCurrentIndex(4);
    EXPECT_EQ(t.type(), Voronoi::Difference21);
    expectOneUpdate(p, "type");
    p.control<QComboBox>("distanceMethod")->setCurrentIndex(6);
    EXPECT_EQ(t.distanceMethod(), Voronoi::Minkowski5);
    expectOneUpdate(p, "distanceMethod");
    p.control<QComboBox>("distanceMethod")->setCurrentIndex(0);
    EXPECT_EQ(t.distanceMethod(), Voronoi::Length);
    expectOneUpdate(p, "distanceMethod");

    // The page's scale is the texture's, not the common block's.
    TransformData transforms;
    p.wrapper.getTransforms(transforms);
    EXPECT_EQ(transforms.overallScale, TransformData{}.overallScale);
}

TEST(VoronoiPanel, UpdateUIShowsTheRecordWithoutRewritingIt) {
    VoronoiPage p;
    VoronoiTexture3D& t = p.texture();
    t.setScale(2.34567f);
    t.setType(Voronoi::Difference32);
    t.setDistanceMethod(Voronoi::Chebychev);
    const std::string before = p.record();
    p.wrapper.updateUI();
    EXPECT_DOUBLE_EQ(p.control<QDoubleSpinBox>("scale")->value(), 2.346);
    EXPECT_EQ(p.control<QComboBox>("type")->currentText(), "Difference (3-2)");
    EXPECT_EQ(p.control<QComboBox>("distanceMethod")->currentText(), "Chebychev");
    EXPECT_EQ(p.record(), before);

    // Values the lists have no label for leave them blank and stay stored.
    t.setType(static_cast<Voronoi::VoronoiType>(9));
    t.setDistanceMethod(static_cast<Voronoi::DistanceMethod>(-3));
    const std::string invalid = p.record();
    p.wrapper.updateUI();
    EXPECT_EQ(p.control<QComboBox>("type")->currentIndex(), -1);
    EXPECT_EQ(p.control<QComboBox>("distanceMethod")->currentIndex(), -1);
    EXPECT_EQ(p.record(), invalid);
}

// ---------------------------------------------------------------------------
// Grid

TEST(GridPanel, ControlsReachTheSettersThenTheHost) {
    dialogtest::RecordingHost host;
    GridPage p;
    GridTexture3D& t = p.texture();

    p.control<QSlider>("gridWidth")->setValue(100);
    EXPECT_EQ(t.getStripeWidth(), 1.0f);
    expectOneUpdate(p, "gridWidth");
    p.control<QSlider>("gridWidth")->setValue(7);
    EXPECT_EQ(t.getStripeWidth(), 7.0f / 100.0f);
    expectOneUpdate(p, "gridWidth");
    p.control<QPushButton>("randomizeColors")->click();
    EXPECT_TRUE(t.getRandomizeColors());
    expectOneUpdate(p, "randomizeColors");
    p.control<QSlider>("maxColor")->setValue(93);
    EXPECT_EQ(t.getMaxColor(), 93.0f / 100.0f);
    expectOneUpdate(p, "maxColor");
    p.control<QSlider>("minColor")->setValue(13);
    EXPECT_EQ(t.getMinColor(), 13.0f / 100.0f);
    expectOneUpdate(p, "minColor");
}

TEST(GridPanel, MinimumAndMaximumStayOrdered) {
    dialogtest::RecordingHost host;
    GridPage p;
    auto* minColor = p.control<QSlider>("minColor");
    auto* maxColor = p.control<QSlider>("maxColor");
    minColor->setValue(40);
    maxColor->setValue(80);
    hostUpdates().clear();

    maxColor->setValue(30);
    EXPECT_EQ(minColor->value(), 30);
    EXPECT_EQ(p.texture().getMaxColor(), 0.3f);
    EXPECT_EQ(p.texture().getMinColor(), 0.3f);
    EXPECT_EQ(hostUpdates().size(), 2u);  // the partner's slot reports too

    minColor->setValue(60);
    EXPECT_EQ(maxColor->value(), 60);
    EXPECT_EQ(p.texture().getMinColor(), 0.6f);
    EXPECT_EQ(p.texture().getMaxColor(), 0.6f);

    // Within the range the partner stays put.
    maxColor->setValue(90);
    minColor->setValue(10);
    EXPECT_EQ(maxColor->value(), 90);
    EXPECT_EQ(p.texture().getMaxColor(), 0.9f);
}

TEST(GridPanel, UpdateUIShowsTheRecordWithoutRewritingIt) {
    GridPage p;
    GridTexture3D& t = p.texture();
    t.setStripeWidth(0.257f);
    t.setRandomizeColors(true);
    // An inverted range is a valid record (it inverts the tones): loading
    // must not let the pairing rule straighten it out.
    t.setMinColor(0.9f);
    t.setMaxColor(0.2f);
    const std::string before = p.record();
    p.wrapper.updateUI();
    EXPECT_EQ(p.control<QSlider>("gridWidth")->value(), 25);
    EXPECT_TRUE(p.control<QPushButton>("randomizeColors")->isChecked());
    EXPECT_EQ(p.control<QSlider>("minColor")->value(), 90);
    EXPECT_EQ(p.control<QSlider>("maxColor")->value(), 20);
    EXPECT_EQ(p.record(), before);
}

// ---------------------------------------------------------------------------
// Turbulence and FBM: the same controls over two generators

template <class P>
void fractalControlsReachTheSetters() {
    dialogtest::RecordingHost host;
    P p;
    auto& t = p.texture();
    p.template control<QSpinBox>("octaves")->setValue(0);  // a flat texture is a valid choice
    EXPECT_EQ(t.octaves(), 0);
    expectOneUpdate(p, "octaves");
    p.template control<QSpinBox>("octaves")->setValue(9);
    EXPECT_EQ(t.octaves(), 9);
    expectOneUpdate(p, "octaves");
    p.template control<QDoubleSpinBox>("lacunarity")->setValue(2.173);
    EXPECT_EQ(t.lacunarity(), static_cast<float>(2.173));
    expectOneUpdate(p, "lacunarity");
    p.template control<QDoubleSpinBox>("gain")->setValue(1.25);  // finer octaves weigh more
    EXPECT_EQ(t.gain(), 1.25f);
    expectOneUpdate(p, "gain");
    p.template control<QDoubleSpinBox>("scale")->setValue(0.333);
    EXPECT_EQ(t.scale(), static_cast<float>(0.333));
    expectOneUpdate(p, "scale");
}

template <class P>
void fractalUpdateUIShowsTheRecord() {
    P p;
    auto& t = p.texture();
    t.setOctaves(7);
    t.setLacunarity(1.9876f);
    t.setGain(0.61234f);
    t.setScale(12.5f);
    const std::string before = p.record();
    p.wrapper.updateUI();
    EXPECT_EQ(p.template control<QSpinBox>("octaves")->value(), 7);
    EXPECT_DOUBLE_EQ(p.template control<QDoubleSpinBox>("lacunarity")->value(), 1.988);
    EXPECT_DOUBLE_EQ(p.template control<QDoubleSpinBox>("gain")->value(), 0.612);
    EXPECT_DOUBLE_EQ(p.template control<QDoubleSpinBox>("scale")->value(), 12.5);
    EXPECT_EQ(p.record(), before);
}

TEST(TurbulencePanel, ControlsReachTheSettersThenTheHost) { fractalControlsReachTheSetters<TurbulencePage>(); }
TEST(FBMPanel, ControlsReachTheSettersThenTheHost) { fractalControlsReachTheSetters<FBMPage>(); }
TEST(TurbulencePanel, UpdateUIShowsTheRecordWithoutRewritingIt) { fractalUpdateUIShowsTheRecord<TurbulencePage>(); }
TEST(FBMPanel, UpdateUIShowsTheRecordWithoutRewritingIt) { fractalUpdateUIShowsTheRecord<FBMPage>(); }

// ---------------------------------------------------------------------------
// Erosion and Dents: scale and magnitude over two generators

template <class P>
void noiseControlsReachTheSetters() {
    dialogtest::RecordingHost host;
    P p;
    auto& t = p.texture();
    p.template control<QDoubleSpinBox>("scale")->setValue(0.7);
    EXPECT_EQ(t.getScale(), static_cast<float>(0.7));
    expectOneUpdate(p, "scale");
    p.template control<QDoubleSpinBox>("magnitude")->setValue(0);  // no noise at all
    EXPECT_EQ(t.getMagnitude(), 0.0f);
    expectOneUpdate(p, "magnitude");
    p.template control<QDoubleSpinBox>("magnitude")->setValue(250.5);
    EXPECT_EQ(t.getMagnitude(), 250.5f);
    expectOneUpdate(p, "magnitude");
    // The page's scale is the texture's, not the common block's.
    TransformData transforms;
    p.wrapper.getTransforms(transforms);
    EXPECT_EQ(transforms.overallScale, TransformData{}.overallScale);
}

template <class P>
void noiseUpdateUIShowsTheRecord(float magnitude, double shown) {
    P p;
    auto& t = p.texture();
    t.setScale(3.14159f);
    t.setMagnitude(magnitude);
    const std::string before = p.record();
    p.wrapper.updateUI();
    EXPECT_DOUBLE_EQ(p.template control<QDoubleSpinBox>("scale")->value(), 3.142);
    EXPECT_DOUBLE_EQ(p.template control<QDoubleSpinBox>("magnitude")->value(), shown);
    EXPECT_EQ(p.record(), before);
}

TEST(ErodedPanel, ControlsReachTheSettersThenTheHost) { noiseControlsReachTheSetters<ErodedPage>(); }
TEST(DentedPanel, ControlsReachTheSettersThenTheHost) { noiseControlsReachTheSetters<DentedPage>(); }
// Erosion reacts to magnitudes in the thousandths: its box shows a fourth
// decimal.
TEST(ErodedPanel, UpdateUIShowsTheRecordWithoutRewritingIt) {
    noiseUpdateUIShowsTheRecord<ErodedPage>(0.01234f, 0.0123);
}
TEST(DentedPanel, UpdateUIShowsTheRecordWithoutRewritingIt) { noiseUpdateUIShowsTheRecord<DentedPage>(7.8912f, 7.891); }

// ---------------------------------------------------------------------------
// Nested Shapes: labels in the list's order, stored as the texture's numbers

TEST(NestedShapesPanel, EachLabelStoresItsShape) {
    dialogtest::RecordingHost host;
    NestedShapesPage p;
    auto* shape = p.control<QComboBox>("shapeType");
    ASSERT_EQ(itemsOf(shape), QStringList({"Sphere", "Cylinder", "Cube", "Square Tube"}));
    const NestedShapesTexture3D::ShapeType stored[] = {NestedShapesTexture3D::Sphere, NestedShapesTexture3D::Cylinder,
                                                       NestedShapesTexture3D::Cube, NestedShapesTexture3D::SquareTube};
    for (int item : {3, 2, 1, 0}) {
        shape->setCurrentIndex(item);
        EXPECT_EQ(p.texture().getShapeType(), stored[item]) << shape->itemText(item).toStdString();
        expectOneUpdate(p, "shapeType");
    }
    // A label the list does not hold stands for the square tube.
    p.wrapper.shapeTypeChanged("Torus");
    EXPECT_EQ(p.texture().getShapeType(), NestedShapesTexture3D::SquareTube);
    expectOneUpdate(p, "shapeType");

    p.control<QSlider>("thickness")->setValue(100);  // shells fill the space
    EXPECT_EQ(p.texture().getThickness(), 1.0f);
    expectOneUpdate(p, "thickness");
    p.control<QSlider>("thickness")->setValue(3);
    EXPECT_EQ(p.texture().getThickness(), 3.0f / 100.0f);
    expectOneUpdate(p, "thickness");
}

TEST(NestedShapesPanel, UpdateUIShowsEachShapesLabel) {
    NestedShapesPage p;
    const struct {
        NestedShapesTexture3D::ShapeType shape;
        const char* label;
    } shapes[] = {{NestedShapesTexture3D::Cube, "Cube"},
                  {NestedShapesTexture3D::Cylinder, "Cylinder"},
                  {NestedShapesTexture3D::SquareTube, "Square Tube"},
                  {NestedShapesTexture3D::Sphere, "Sphere"}};
    p.texture().setThickness(0.257f);
    for (const auto& s : shapes) {
        p.texture().setShapeType(s.shape);
        const std::string before = p.record();
        p.wrapper.updateUI();
        EXPECT_EQ(p.control<QComboBox>("shapeType")->currentText(), s.label);
        EXPECT_EQ(p.control<QSlider>("thickness")->value(), 25);
        EXPECT_EQ(p.record(), before) << s.label;
    }

    // A stored number no label stands for: the list goes blank and the
    // record keeps it until the user picks a shape.
    p.texture().setShapeType(static_cast<NestedShapesTexture3D::ShapeType>(7));
    const std::string invalid = p.record();
    p.wrapper.updateUI();
    EXPECT_EQ(p.control<QComboBox>("shapeType")->currentIndex(), -1);
    EXPECT_EQ(p.record(), invalid);
    p.control<QComboBox>("shapeType")->setCurrentIndex(0);
    EXPECT_EQ(p.texture().getShapeType(), NestedShapesTexture3D::Sphere);
}

// ---------------------------------------------------------------------------
// Speckled Stone

TEST(SpeckledStonePanel, ControlsReachTheSettersThenTheHost) {
    dialogtest::RecordingHost host;
    SpeckledStonePage p;
    SpeckledStoneTexture3D& t = p.texture();

    p.control<QDoubleSpinBox>("scale")->setValue(0.0035);
    EXPECT_EQ(t.scale(), static_cast<float>(0.0035));
    expectOneUpdate(p, "scale");
    p.control<QSpinBox>("nShades")->setValue(11);
    EXPECT_EQ(t.nShades(), 11.0f);
    expectOneUpdate(p, "nShades");
    p.control<QSpinBox>("exponent")->setValue(0);
    EXPECT_EQ(t.exponent(), 0.0f);
    expectOneUpdate(p, "exponent");
    p.control<QSpinBox>("exponent")->setValue(5);
    EXPECT_EQ(t.exponent(), 5.0f);
    expectOneUpdate(p, "exponent");
    p.control<QSlider>("grainColor")->setValue(17);
    EXPECT_EQ(t.grainColor(), 17.0f / 100.0f);
    expectOneUpdate(p, "grainColor");
    p.control<QSlider>("baseColor")->setValue(100);
    EXPECT_EQ(t.baseColor(), 1.0f);
    expectOneUpdate(p, "baseColor");

    // No shade count of zero: the steps would divide by it.
    auto* shades = p.control<QSpinBox>("nShades");
    shades->setValue(0);
    EXPECT_EQ(shades->value(), 1);
    EXPECT_EQ(t.nShades(), 1.0f);
}

TEST(SpeckledStonePanel, UpdateUIShowsTheRecordWithoutRewritingIt) {
    SpeckledStonePage p;
    SpeckledStoneTexture3D& t = p.texture();
    t.setScale(0.01234f);
    t.setNShades(9);
    t.setExponent(3);
    t.setGrainColor(0.257f);
    t.setBaseColor(0.999f);
    const std::string before = p.record();
    p.wrapper.updateUI();
    EXPECT_DOUBLE_EQ(p.control<QDoubleSpinBox>("scale")->value(), 0.0123);
    EXPECT_EQ(p.control<QSpinBox>("nShades")->value(), 9);
    EXPECT_EQ(p.control<QSpinBox>("exponent")->value(), 3);
    EXPECT_EQ(p.control<QSlider>("grainColor")->value(), 25);
    EXPECT_EQ(p.control<QSlider>("baseColor")->value(), 99);
    EXPECT_EQ(p.record(), before);
}

}  // namespace
