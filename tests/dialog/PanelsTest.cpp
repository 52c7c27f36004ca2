// The generator panels and the transform block under them, as tables: one
// row per control of every page (what it is set to, the record field it must
// reach and the value stored there), one per combo box (its labels and the
// stored value of each), one per minimum/maximum pair. Every page is built by
// its registry entry, as the dialog builds it.

#include <bit>
#include <cctype>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <limits>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include <QAbstractButton>
#include <QComboBox>
#include <QDialog>
#include <QDoubleSpinBox>
#include <QKeyEvent>
#include <QPushButton>
#include <QRegularExpression>
#include <QSlider>
#include <QSpinBox>
#include <QTest>
#include <QVBoxLayout>

#include <gtest/gtest.h>

#include "DialogTestSupport.h"
#include "core/BaseData.h"
#include "core/GeneratorInfo.h"
#include "dialog/GeneratorRegistry.h"
#include "dialog/QtWrapperBase.h"
#include "dialog/SliderValueBox.h"
#include "dialog/panels/PenroseRhombusQtWrapper.h"
#include "noise/Voronoi.h"
#include "textures/BrickTexture3D.h"
#include "textures/CorrugatedTexture3D.h"
#include "textures/HoundstoothTexture3D.h"
#include "textures/NestedShapesTexture3D.h"
#include "textures/ScalesTexture3D.h"
#include "textures/StripesTexture3D.h"
#include "textures/TextureFactory.h"
#include "textures/WeaveTexture3D.h"

using namespace gritwell;
using dialogtest::hostUpdates;

namespace {

// ---- The tables ----------------------------------------------------------------

// A slider stores value / units (its row gives the quotient, which its value
// box shows; 0.53f * 100 falls short of 53), a spin box its value as a float,
// a toggle its new state, a combo box its item's value.
struct ControlRow {
    const char* panel;    // the generator's name
    const char* control;  // the control's object name
    double value;         // what the control is set to; never what it shows at the defaults
    const char* field;    // the record field the setter writes
    double stored;        // and the value it writes there
    const char* shownFrom = nullptr;  // the field the control shows, where that is not `field`
};

const ControlRow kControls[] = {
    {"Perlin Noise", "octaves", 9, "octaves", 9},
    {"Perlin Noise", "frequency", 1011, "frequency", 10.11},  // hundredths up to 16
    {"Perlin Noise", "amplitude", 333, "amplitude", 3.33},    // amplitudes above 1 clip
    {"Checkerboard", "depth", 3, "depth", 3},
    {"Checkerboard", "randomizeColors", 1, "randomizeColors", 1},
    {"Checkerboard", "variability", 75, "variability", 0.75},
    {"Wood", "ringScale", 13, "ringScale", 13},
    {"Wood", "octaves", 5, "octaves", 5},
    {"Wood", "frequency", 750, "frequency", 7.5},
    {"Wood", "amplitude", 33, "amplitude", 0.33},
    {"Wood", "darkColor", 95, "darkColor", 0.95},  // rings lighter than the wood: no pairing
    {"Wood", "lightColor", 7, "lightColor", 0.07},
    {"Simple Marble", "octaves", 12, "octaves", 12},
    {"Simple Marble", "textureScale", 0.375, "textureScale", 0.375},
    {"Stripes", "style", 4, "stripeStyle", StripesTexture3D::Ribbon},
    {"Stripes", "stripeWidth", 40, "stripeWidth", 0.4},
    {"Stripes", "amplitude", 150, "amplitude", 1.5},
    {"Stripes", "randomizeColors", 1, "randomizeColors", 1},
    {"Stripes", "minColor", 60, "minColor", 0.6},
    {"Stripes", "maxColor", 30, "maxColor", 0.3},
    {"Spheres", "sphereSize", 60, "sphereSize", 0.6},
    {"Spheres", "staggered", 1, "staggered", 1},
    {"Spheres", "hollowness", 45, "hollowness", 0.45},
    {"Granite", "octaves", 2, "octaves", 2},
    {"Granite", "frequency", 50, "frequency", 0.5},
    {"Gradient", "xDir", 0, "xDir", 0},
    {"Gradient", "yDir", 0, "yDir", 0},
    {"Gradient", "zDir", 0, "zDir", 0},
    {"Simplex", "scale", 12.375, "scale", 12.375},
    {"Voronoi", "scale", 12.345, "scale", 12.345},
    {"Voronoi", "type", 6, "type", Voronoi::Crackle},
    {"Voronoi", "distanceMethod", 6, "distanceMethod", Voronoi::Minkowski5},
    {"Brick", "pattern", 0, "pattern", BrickTexture3D::HERRINGBONE},
    {"Brick", "width", 1.25, "brickWidth", 1.25},
    {"Brick", "height", 0.375, "brickHeight", 0.375},
    {"Brick", "depth", 0.5, "brickDepth", 0.5},
    {"Brick", "mortarThickness", 0.025, "mortarThickness", 0.025},
    {"Brick", "roundedCornersEnable", 1, "roundedCornersEnabled", 1},
    {"Brick", "roundedCornersRadius", 53, "roundedCornersRadius", 0.53},
    {"Brick", "rowOffsetVariabilityEnable", 1, "rowOffsetVariabilityEnabled", 1},
    {"Brick", "rowOffsetVariabilityAmplitude", 99, "rowOffsetVariabilityAmplitude", 0.99},
    {"Brick", "brickColor", 3, "brickColor", 0.03},
    {"Brick", "mortarColor", 100, "mortarColor", 1.0},
    {"Brick", "randomizeColors", 1, "randomizeColors", 1},
    {"Brick", "minColor", 40, "minColor", 0.4},
    {"Brick", "maxColor", 20, "maxColor", 0.2},
    {"Grid", "gridWidth", 7, "stripeWidth", 0.07},
    {"Grid", "randomizeColors", 1, "randomizeColors", 1},
    {"Grid", "minColor", 13, "minColor", 0.13},
    {"Grid", "maxColor", 93, "maxColor", 0.93},
    {"Turbulence", "octaves", 0, "octaves", 0},  // a flat texture is a valid choice
    {"Turbulence", "lacunarity", 2.125, "lacunarity", 2.125},
    {"Turbulence", "gain", 1.25, "gain", 1.25},  // finer octaves weigh more
    {"Turbulence", "scale", 0.375, "scale", 0.375},
    {"FBM", "octaves", 9, "octaves", 9},
    {"FBM", "lacunarity", 1.875, "lacunarity", 1.875},
    {"FBM", "gain", 0.625, "gain", 0.625},
    {"FBM", "scale", 12.5, "scale", 12.5},
    {"Erosion", "scale", 0.625, "scale", 0.625},
    {"Erosion", "magnitude", 0.0125, "magnitude", 0.0125},  // reacts to thousandths
    {"Nested Shapes", "shapeType", 2, "shapeType", NestedShapesTexture3D::Cube},
    {"Nested Shapes", "thickness", 3, "thickness", 0.03},
    {"Dents", "scale", 3.125, "scale", 3.125},
    {"Dents", "magnitude", 250.5, "magnitude", 250.5},
    {"Speckled Stone", "scale", 0.0035, "scale", 0.0035},
    {"Speckled Stone", "nShades", 11, "nShades", 11},
    {"Speckled Stone", "exponent", 5, "exponent", 5},
    {"Speckled Stone", "grainColor", 17, "grainColor", 0.17},
    {"Speckled Stone", "baseColor", 100, "baseColor", 1.0},
    {"HexTile", "tileColor", 37, "tileColor", 0.37},
    {"HexTile", "mortarColor", 12, "mortarColor", 0.12},
    {"HexTile", "tileRadius", 1.25, "tileRadius", 1.25},
    {"HexTile", "mortarThickness", 0.125, "mortarThickness", 0.125},
    {"HexTile", "randomizeColors", 1, "randomizeColors", 1},
    {"HexTile", "minColor", 61, "minColor", 0.61},
    {"HexTile", "maxColor", 63, "maxColor", 0.63},
    {"Spiral", "stripeWidth", 37, "stripeWidth", 0.37},
    {"Spiral", "spiralRate", -1.5, "spiralRate", -1.5},  // winds the other way
    {"Cheetah", "spotSize", 37, "spotSize", 0.37},
    {"Cheetah", "layoutVariability", 100, "layoutVariability", 1.0},
    {"Cheetah", "spotVariability", 12, "spotVariability", 0.12},
    {"Voronoi Tiles", "cellVariability", 0.35, "cellVariability", 0.35},
    {"Voronoi Tiles", "cellRandomizeColors", 1, "cellRandomizeColors", 1},
    {"Voronoi Tiles", "cellMinColor", 37, "cellMinColor", 0.37},
    {"Voronoi Tiles", "cellMaxColor", 63, "cellMaxColor", 0.63},
    {"Voronoi Tiles", "cellAddNoise", 1, "cellAddNoise", 1},
    {"Voronoi Tiles", "cellOctaves", 7, "cellOctaves", 7},
    {"Voronoi Tiles", "cellLacunarity", 2.5, "cellLacunarity", 2.5},
    {"Voronoi Tiles", "cellGain", 0.65, "cellGain", 0.65},
    {"Voronoi Tiles", "cellDetail", 12.5, "cellDetail", 12.5},
    {"Voronoi Tiles", "boundaryThickness", 0.125, "boundaryThickness", 0.125},
    {"Voronoi Tiles", "boundaryAddNoise", 1, "boundaryAddNoise", 1},
    {"Voronoi Tiles", "boundaryOctaves", 2, "boundaryOctaves", 2},
    {"Voronoi Tiles", "boundaryLacunarity", 1.5, "boundaryLacunarity", 1.5},
    {"Voronoi Tiles", "boundaryGain", 0.25, "boundaryGain", 0.25},
    {"Voronoi Tiles", "boundaryDetail", 16.5, "boundaryDetail", 16.5},
    {"Weave", "pattern", 1, "pattern", WeaveTexture3D::WEAVE_HERRINGBONE},
    {"Weave", "backgroundColor", 12, "backgroundColor", 0.12},
    {"Weave", "horizontalColor", 34, "horizontalColor", 0.34},
    {"Weave", "verticalColor", 56, "verticalColor", 0.56},
    {"Weave", "horizontalWidth", 71, "horizontalWidth", 0.71},
    {"Weave", "verticalWidth", 59, "verticalWidth", 0.59},
    {"Weave", "horizontalRandomize", 1, "horizontalRandomize", 1},
    {"Weave", "horizontalMinColor", 3, "horizontalMinColor", 0.03},
    {"Weave", "horizontalMaxColor", 77, "horizontalMaxColor", 0.77},
    {"Weave", "verticalRandomize", 1, "verticalRandomize", 1},
    {"Weave", "verticalMinColor", 41, "verticalMinColor", 0.41},
    // The vertical maximum's setter writes the horizontal maximum, as stored
    // records expect; the slider still shows the vertical field.
    {"Weave", "verticalMaxColor", 88, "horizontalMaxColor", 0.88, "verticalMaxColor"},
    {"Weave", "shadingEnable", 0, "shadingEnable", 0},
    {"Weave", "shadingHorizontalStrength", 100, "shadingHorizontalStrength", 1.0},
    {"Weave", "shadingVerticalStrength", 1, "shadingVerticalStrength", 0.01},
    {"Plaid", "primaryBackground", 37, "primaryBackground", 0.37},
    {"Plaid", "horizontalFrequency", 3.5, "horizontalFrequency", 3.5},
    {"Plaid", "verticalFrequency", 0.75, "verticalFrequency", 0.75},
    {"Plaid", "horizontalPeriod", 7, "horizontalPeriod", 7},
    {"Plaid", "verticalPeriod", 11, "verticalPeriod", 11},
    {"Psychedelic", "frequency", 2.5, "frequency", 2.5},
    {"Psychedelic", "minColor", 37, "minColor", 0.37},
    {"Psychedelic", "maxColor", 63, "maxColor", 0.63},
    {"Camouflage", "frequency", 1.5, "frequency", 1.5},
    {"Camouflage", "threshold", 37, "threshold", 0.37},
    {"Camouflage", "baseColor", 12, "baseColor", 0.12},
    {"Zigzag", "randomizeColors", 1, "randomizeColors", 1},
    {"Zigzag", "variability", 37, "variability", 0.37},
    {"Corrugated", "style", 4, "style", CorrugatedTexture3D::PerlinNoise},
    {"Snakeskin", "gridWidth", 9, "stripeWidth", 0.09},
    {"Snakeskin", "randomizeColors", 1, "randomizeColors", 1},
    {"Snakeskin", "minColor", 17, "minColor", 0.17},
    {"Snakeskin", "maxColor", 93, "maxColor", 0.93},
    {"Snakeskin", "scaleVariabilityEnable", 1, "scaleVariabilityEnabled", 1},
    {"Snakeskin", "scaleVariabilityFrequency", 33, "scaleVariabilityFrequency", 0.33},
    {"Snakeskin", "scaleVariabilityAmplitude", 100, "scaleVariabilityAmplitude", 1.0},
    {"Snakeskin", "scaleNoiseAdd", 1, "scaleNoiseAdd", 1},
    {"Snakeskin", "scaleNoiseOctaves", 6, "scaleNoiseOctaves", 6},
    {"Snakeskin", "scaleNoiseLacunarity", 2.125, "scaleNoiseLacunarity", 2.125},
    {"Snakeskin", "scaleNoiseGain", 0.375, "scaleNoiseGain", 0.375},
    {"Snakeskin", "scaleNoiseDetail", 12.5, "scaleNoiseDetail", 12.5},
    {"Snakeskin", "roundCornersEnable", 0, "roundCornersEnabled", 0},
    {"Snakeskin", "roundCornersLeftRightRadius", 15, "roundCornersLeftRightRadius", 0.15},
    {"Snakeskin", "roundCornersTopBottomRadius", 49, "roundCornersTopBottomRadius", 0.49},
    {"Scales", "scaleShape", 1, "scaleShape", ScalesTexture3D::SCALE_SHAPE_NORMAL},
    {"Scales", "baseDimension", 100, "baseDimension", 0.5},  // 200ths: the slider's end is half a scale
    {"Scales", "edgeDimension", 9, "edgeDimension", 0.09},
    {"Scales", "shadingAlongEnable", 1, "shadingAlongEnabled", 1},
    {"Scales", "shadingAlongStrength", 45, "shadingAlongStrength", 0.45},
    {"Scales", "shadingAcrossEnable", 1, "shadingAcrossEnabled", 1},
    {"Scales", "shadingAcrossStrength", 55, "shadingAcrossStrength", 0.55},
    {"Scales", "scaleVariabilityEnable", 1, "scaleVariabilityEnabled", 1},
    {"Scales", "scaleVariabilityFrequency", 33, "scaleVariabilityFrequency", 0.33},
    {"Scales", "scaleVariabilityAmplitude", 75, "scaleVariabilityAmplitude", 0.75},
    {"Scales", "baseColor", 2, "baseColor", 0.02},
    {"Scales", "baseRandomizeColors", 1, "baseRandomizeColors", 1},
    {"Scales", "baseMinColor", 1, "baseMinColor", 0.01},
    {"Scales", "baseMaxColor", 40, "baseMaxColor", 0.4},
    {"Scales", "bodyColor", 64, "bodyColor", 0.64},
    {"Scales", "bodyRandomizeColors", 1, "bodyRandomizeColors", 1},
    {"Scales", "bodyMinColor", 70, "bodyMinColor", 0.7},
    {"Scales", "bodyMaxColor", 60, "bodyMaxColor", 0.6},
    {"Scales", "edgeColor", 95, "edgeColor", 0.95},
    {"Scales", "edgeRandomizeColors", 1, "edgeRandomizeColors", 1},
    {"Scales", "edgeMinColor", 95, "edgeMinColor", 0.95},
    {"Scales", "edgeMaxColor", 92, "edgeMaxColor", 0.92},
    {"Houndstooth", "pattern", 1, "pattern", HoundstoothTexture3D::PUPPYTOOTH},
    {"Houndstooth", "randomizeColors", 1, "randomizeColors", 1},
    {"Houndstooth", "variability", 75, "variability", 0.75},
    {"Penrose Rhombus", "skinnyColor", 12, "skinnyColor", 0.12},
    {"Penrose Rhombus", "fatColor", 88, "fatColor", 0.88},
    {"Penrose Rhombus", "skinnyRandomize", 1, "skinnyRandomize", 1},
    {"Penrose Rhombus", "skinnyMinColor", 5, "skinnyMinColor", 0.05},
    {"Penrose Rhombus", "skinnyMaxColor", 45, "skinnyMaxColor", 0.45},
    {"Penrose Rhombus", "fatRandomize", 1, "fatRandomize", 1},
    {"Penrose Rhombus", "fatMinColor", 55, "fatMinColor", 0.55},
    {"Penrose Rhombus", "fatMaxColor", 95, "fatMaxColor", 0.95},
    {"Penrose Rhombus", "edgeWidth", 25, "edgeWidth", 0.025},  // thousandths: a tenth of an edge is heavy
    {"Penrose Rhombus", "edgeColor", 30, "edgeColor", 0.3},
};

// Sliders kept in order: minimum <= maximum.
struct PairRow {
    const char* panel;
    const char* minimum;
    const char* maximum;
};

const PairRow kPairs[] = {
    {"Brick", "minColor", "maxColor"},
    {"Stripes", "minColor", "maxColor"},
    {"Grid", "minColor", "maxColor"},
    {"HexTile", "minColor", "maxColor"},
    {"Voronoi Tiles", "cellMinColor", "cellMaxColor"},
    {"Weave", "horizontalMinColor", "horizontalMaxColor"},
    {"Weave", "verticalMinColor", "verticalMaxColor"},
    {"Psychedelic", "minColor", "maxColor"},
    {"Snakeskin", "minColor", "maxColor"},
    {"Scales", "baseMinColor", "baseMaxColor"},
    {"Scales", "bodyMinColor", "bodyMaxColor"},
    {"Scales", "edgeMinColor", "edgeMaxColor"},
    {"Penrose Rhombus", "skinnyMinColor", "skinnyMaxColor"},
    {"Penrose Rhombus", "fatMinColor", "fatMaxColor"},
};

// Controls that stop short of a stored 0, which would divide by zero: they
// show their floor for it, and the record keeps its 0 until the user acts.
struct FloorRow {
    const char* panel;
    const char* control;
    int floor;
};

const FloorRow kFloors[] = {
    {"Granite", "frequency", 1},
    {"Speckled Stone", "nShades", 1},
    {"Plaid", "horizontalPeriod", 1},
    {"Plaid", "verticalPeriod", 1},
};

// Defaults that do not survive passing through their controls: tones given
// as luminances lie finer than the sliders show, and Weave's vertical maximum
// slider writes the horizontal maximum.
const struct {
    std::string_view panel;
    const char* field;
} kChangedByTheRoundTrip[] = {
    {"Brick", "brickColor"}, {"Scales", "bodyColor"}, {"Scales", "edgeColor"}, {"Weave", "horizontalMaxColor"}};

// ---- A page on its own ---------------------------------------------------------

// Every page the dialog offers, and Penrose Rhombus's, which is built the
// same way but has no registry line.
std::vector<std::string> panelNames() {
    std::vector<std::string> names;
    for (const auto& r : GeneratorRegistry::registrations()) names.emplace_back(r.name);
    names.emplace_back(PenroseRhombusTexture3D::kName);
    return names;
}

class Page {
public:
    explicit Page(std::string_view generator) : info_(TextureFactory::find(generator)) {
        ui_.setupUi(&window_);
        for (const auto& r : GeneratorRegistry::registrations())
            if (r.name == generator) entry_.reset(r.create(&ui_, nullptr));
        if (generator == PenroseRhombusTexture3D::kName)
            entry_ = std::make_unique<Info<PenroseRhombusTexture3D, PenroseRhombusQtWrapper, Ui_PenroseRhombusWidget>>(
                &ui_, nullptr);
        if (entry_ == nullptr || info_ == nullptr) throw std::invalid_argument(std::string(generator));
    }

    QWidget& widget() const { return *entry_->getStackWidget(); }
    QtWrapperBase& wrapper() const { return *entry_->getWrapper(); }
    const GeneratorInfo& info() const { return *info_; }
    const FieldInfo& field(const char* name) const {
        const FieldInfo* f = info_->field(name);
        if (f == nullptr) throw std::invalid_argument(name);
        return *f;
    }
    template <class C = QWidget>
    C* control(const char* name) const {
        C* c = widget().findChild<C*>(name);
        if (c == nullptr) throw std::invalid_argument(name);
        return c;
    }
    std::string record() const {
        std::string bytes(256, '\0');
        entry_->getT3D()->getDescription(bytes.data());
        return bytes;
    }
    // Adopts `record` and shows it.
    void load(const std::string& record) const {
        entry_->getT3D()->setStateFromDescription(record.data());
        wrapper().updateUI();
    }
    TransformData transforms() const {
        TransformData t;
        wrapper().getTransforms(t);
        return t;
    }
    // The page's own controls, without the transform block or value boxes.
    std::vector<QWidget*> ownControls() const {
        const auto* common = widget().findChild<QWidget*>("CommonWidget");
        std::vector<QWidget*> own;
        for (QWidget* c : widget().findChildren<QWidget*>())
            if ((qobject_cast<QAbstractSlider*>(c) || qobject_cast<QAbstractSpinBox*>(c) ||
                 qobject_cast<QComboBox*>(c) || qobject_cast<QPushButton*>(c)) &&
                !common->isAncestorOf(c) && qobject_cast<SliderValueBox*>(c) == nullptr)
                own.push_back(c);
        return own;
    }

private:
    const GeneratorInfo* info_;
    QDialog window_;
    Ui::MainWindow ui_;
    std::unique_ptr<InfoBase> entry_;
};

// A page loaded at its generator's defaults, the host's log emptied.
struct LoadedPage : dialogtest::RecordingHost, Page {
    explicit LoadedPage(std::string_view generator) : Page(generator) {
        wrapper().updateUI();
        hostUpdates().clear();
    }
};

double readField(const std::string& record, const FieldInfo& f) {
    switch (f.type) {
        case FieldType::Int32: return readIntField(record.data(), f);
        case FieldType::Float: return readFloatField(record.data(), f);
        case FieldType::Bool: return readBoolField(record.data(), f);
    }
    return 0;
}

void writeField(std::string& record, const FieldInfo& f, double v) {
    switch (f.type) {
        case FieldType::Int32: writeIntField(record.data(), f, static_cast<std::int32_t>(v)); break;
        case FieldType::Float: writeFloatField(record.data(), f, static_cast<float>(v)); break;
        case FieldType::Bool: writeBoolField(record.data(), f, v != 0); break;
    }
}

// Field by field, naming the one that differs, then every byte.
void expectSameRecord(const Page& p, const std::string& actual, const std::string& expected) {
    for (const FieldInfo& f : p.info().fields) EXPECT_EQ(readField(actual, f), readField(expected, f)) << f.name;
    EXPECT_TRUE(actual == expected) << "the header or padding differs";
}

double shown(const QWidget* c) {
    if (auto* s = qobject_cast<const QAbstractSlider*>(c)) return s->value();
    if (auto* s = qobject_cast<const QSpinBox*>(c)) return s->value();
    if (auto* s = qobject_cast<const QDoubleSpinBox*>(c)) return s->value();
    if (auto* s = qobject_cast<const QComboBox*>(c)) return s->currentIndex();
    if (auto* s = qobject_cast<const QAbstractButton*>(c)) return s->isChecked();
    return std::nan("");
}

// Typed over the spin box's number, then Return.
void typeIn(QAbstractSpinBox* s, const QString& text) {
    s->selectAll();
    QTest::keyClicks(s, text);
    QTest::keyClick(s, Qt::Key_Return);
}

// As the user would: a toggle is clicked if it is not in the state asked
// for, a slider's value typed into its value box (which moves the slider, and
// the slider's own slot reports).
void setControl(QWidget* c, double v) {
    if (auto* s = qobject_cast<QSlider*>(c)) {
        SliderValueBox* box = SliderValueBox::beside(s);
        typeIn(box, box->textFromValue(box->scale().shown(static_cast<int>(v))));
    }
    if (auto* s = qobject_cast<QSpinBox*>(c)) s->setValue(static_cast<int>(v));
    if (auto* s = qobject_cast<QDoubleSpinBox*>(c)) s->setValue(v);
    if (auto* s = qobject_cast<QComboBox*>(c)) s->setCurrentIndex(static_cast<int>(v));
    if (auto* s = qobject_cast<QAbstractButton*>(c); s != nullptr && s->isChecked() != (v != 0)) s->click();
}

// A stored value that shows as the row's value but lies off the control's
// grid, so that a load which wrote the control back would change it.
double offTheGrid(const ControlRow& r, const QWidget* c) {
    if (qobject_cast<const QAbstractSlider*>(c)) return (r.value + 0.5) / (r.value / r.stored);
    if (auto* s = qobject_cast<const QDoubleSpinBox*>(c)) return r.value + 0.4 * std::pow(10.0, -s->decimals());
    return r.stored;
}

const ControlRow& rowOf(std::string_view panel, std::string_view control) {
    for (const ControlRow& r : kControls)
        if (r.panel == panel && r.control == control) return r;
    throw std::invalid_argument(std::string(control));
}

std::string testName(std::string name) {
    for (char& c : name)
        if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
    return name;
}

template <class Row>
std::string rowName(const testing::TestParamInfo<Row>& info) {
    return testName(std::string(info.param.panel) + "_" + info.param.control);
}

// A slider's value box reads its field's value, in the field's units.
void expectBoxReads(QWidget* control, double field) {
    if (auto* s = qobject_cast<QSlider*>(control)) {
        EXPECT_NEAR(SliderValueBox::beside(s)->value(), field, 1e-9) << s->objectName().toStdString();
    }
}

void expectOneUpdateCarrying(const Page& p) {
    ASSERT_EQ(hostUpdates().size(), 1u);
    EXPECT_TRUE(std::string(hostUpdates()[0].record.data(), 256) == p.record());
    hostUpdates().clear();
}

}  // namespace

// ---- Each control --------------------------------------------------------------

class PanelControl : public testing::TestWithParam<ControlRow> {};
INSTANTIATE_TEST_SUITE_P(Table, PanelControl, testing::ValuesIn(kControls), rowName<ControlRow>);

TEST_P(PanelControl, ReachesItsFieldAloneThenTheHost) {
    const ControlRow& r = GetParam();
    LoadedPage p(r.panel);
    std::string expected = p.record();
    writeField(expected, p.field(r.field), r.stored);

    setControl(p.control(r.control), r.value);
    EXPECT_EQ(shown(p.control(r.control)), r.value);
    expectBoxReads(p.control(r.control), r.stored);
    expectSameRecord(p, p.record(), expected);
    expectOneUpdateCarrying(p);
    // A page's own scale is the generator's, never the transform block's.
    const TransformData t = p.transforms(), unmoved;
    EXPECT_EQ(std::memcmp(&t, &unmoved, sizeof t), 0);
}

TEST_P(PanelControl, ShowsItsFieldWithoutRewritingIt) {
    const ControlRow& r = GetParam();
    LoadedPage p(r.panel);
    std::vector<double> atDefaults;
    for (QWidget* c : p.ownControls()) atDefaults.push_back(shown(c));
    QWidget* control = p.control(r.control);
    const FieldInfo& f = p.field(r.shownFrom != nullptr ? r.shownFrom : r.field);
    // Off the control's grid, and exactly what the control itself stores.
    for (const double value : {offTheGrid(r, control), r.stored}) {
        std::string stored = p.record();
        writeField(stored, f, value);
        p.load(stored);
        EXPECT_NEAR(shown(control), r.value, 1e-9) << value;
        expectBoxReads(control, r.stored);
        expectSameRecord(p, p.record(), stored);
    }
    EXPECT_TRUE(hostUpdates().empty());
    const auto own = p.ownControls();
    for (std::size_t i = 0; i < own.size(); ++i)
        if (own[i] != control) {
            EXPECT_EQ(shown(own[i]), atDefaults[i]) << own[i]->objectName().toStdString();
        }
}

// ---- Each page -----------------------------------------------------------------

class PanelPage : public testing::TestWithParam<std::string> {};
INSTANTIATE_TEST_SUITE_P(Registry, PanelPage, testing::ValuesIn(panelNames()),
                         [](const auto& info) { return testName(info.param); });

TEST_P(PanelPage, FormIsTitledAndEveryControlTabledAndExplained) {
    const Page p(GetParam());
    EXPECT_EQ(p.widget().windowTitle().toStdString(), GetParam());
    std::set<std::string> tabled, onThePage;
    for (const ControlRow& r : kControls)
        if (r.panel == GetParam()) tabled.insert(r.control);
    for (QWidget* c : p.ownControls()) {
        const std::string name = c->objectName().toStdString();
        onThePage.insert(name);
        EXPECT_FALSE(c->toolTip().isEmpty()) << name;
        if (auto* b = qobject_cast<QPushButton*>(c)) {
            EXPECT_TRUE(b->isCheckable()) << name;
        }
        if (qobject_cast<QSlider*>(c)) {  // the theme outlines a slider's frame on hover
            EXPECT_TRUE(c->parentWidget()->property("sliderFrame").toBool()) << name;
        }
    }
    EXPECT_EQ(onThePage, tabled);
}

TEST_P(PanelPage, DefaultsSurviveTheRoundTripThroughTheControls) {
    // Every control reports what it shows, as if the user had touched it.
    LoadedPage p(GetParam());
    std::string defaults = p.record();
    for (QWidget* c : p.ownControls()) {
        if (auto* s = qobject_cast<QSlider*>(c)) emit s->valueChanged(s->value());
        if (auto* s = qobject_cast<QSpinBox*>(c)) emit s->valueChanged(s->value());
        if (auto* s = qobject_cast<QDoubleSpinBox*>(c)) emit s->valueChanged(s->value());
        if (auto* s = qobject_cast<QPushButton*>(c)) emit s->toggled(s->isChecked());
        if (auto* s = qobject_cast<QComboBox*>(c)) {
            emit s->currentIndexChanged(s->currentIndex());
            emit s->currentTextChanged(s->currentText());
        }
    }
    EXPECT_FALSE(hostUpdates().empty());
    const std::string after = p.record();
    for (const auto& changed : kChangedByTheRoundTrip)
        if (changed.panel == GetParam()) writeField(defaults, p.field(changed.field), readField(after, p.field(changed.field)));
    expectSameRecord(p, after, defaults);
}

// Every spin box of the page: its own, the sliders' value boxes and the
// transform block's. Return that a spin box passes on reaches the dialog and
// presses its default button, OK.
TEST_P(PanelPage, SlidersShowTheirValueSpinBoxesTheirRangeAndDefaultAndReturnStaysInThem) {
    struct ReturnCounter : QObject {
        int presses = 0;
        bool eventFilter(QObject*, QEvent* e) override {
            presses += e->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(e)->key() == Qt::Key_Return;
            return false;
        }
    } reachingTheDialog;
    LoadedPage p(GetParam());  // the transforms at their defaults too
    const auto spinBoxes = p.widget().findChildren<QAbstractSpinBox*>();
    for (QAbstractSpinBox* s : spinBoxes)
        EXPECT_TRUE(s->toolTip().contains(
            QRegularExpression("Range .+ to .+, default " + QRegularExpression::escape(s->text()) + "\\.$")))
            << s->toolTip().toStdString();
    for (QSlider* slider : p.widget().findChildren<QSlider*>()) {
        SliderValueBox* box = SliderValueBox::beside(slider);
        ASSERT_NE(box, nullptr) << slider->objectName().toStdString();
        EXPECT_EQ(box->toolTip(), slider->toolTip());
        for (const int end : {slider->minimum(), slider->maximum()}) {
            slider->setValue(end);
            EXPECT_EQ(box->value(), end == slider->minimum() ? box->minimum() : box->maximum())
                << box->toolTip().toStdString();
        }
    }
    p.widget().window()->installEventFilter(&reachingTheDialog);
    for (QAbstractSpinBox* s : spinBoxes) {
        const double top = s->property("maximum").toDouble();
        const double target = shown(s) == top ? s->property("minimum").toDouble() : top;
        auto* d = qobject_cast<QDoubleSpinBox*>(s);
        typeIn(s, d != nullptr ? d->textFromValue(target) : QString::number(target));
        EXPECT_EQ(shown(s), target) << s->objectName().toStdString();
        EXPECT_EQ(reachingTheDialog.presses, 0) << s->objectName().toStdString();
    }
}

TEST_P(PanelPage, InteractiveUpdateFollowsTheRecord) {
    dialogtest::RecordingHost host;
    const Page p(GetParam());
    auto* button = p.control<QPushButton>("newInteractiveUpdate");
    const auto expectTracking = [&](bool on) {
        for (QWidget* c : p.ownControls()) {
            if (auto* s = qobject_cast<QAbstractSlider*>(c)) {
                EXPECT_EQ(s->hasTracking(), on) << s->objectName().toStdString();
            }
            if (auto* s = qobject_cast<QAbstractSpinBox*>(c)) {
                EXPECT_EQ(s->keyboardTracking(), on) << s->objectName().toStdString();
            }
        }
    };
    std::string off = p.record();
    off[offsetof(BaseData, interactiveUpdate)] = 0;
    p.load(off);
    EXPECT_FALSE(button->isChecked());
    expectTracking(false);
    // The transform block follows the button's toggles only; it saw none.
    EXPECT_TRUE(p.control<QSlider>("transX")->hasTracking());

    for (const bool on : {true, false}) {
        hostUpdates().clear();
        button->click();
        expectTracking(on);
        ASSERT_EQ(hostUpdates().size(), 1u);
        EXPECT_EQ(hostUpdates()[0].record[offsetof(BaseData, interactiveUpdate)], on ? 1 : 0);
        EXPECT_EQ(p.record()[offsetof(BaseData, interactiveUpdate)], on ? 1 : 0);
    }
}

// ---- Pairs and floors --------------------------------------------

class PanelPair : public testing::TestWithParam<PairRow> {};
INSTANTIATE_TEST_SUITE_P(Table, PanelPair, testing::ValuesIn(kPairs), [](const auto& info) {
    return testName(std::string(info.param.panel) + "_" + info.param.minimum);
});

TEST_P(PanelPair, EachSliderPushesItsPartnerAndLoadingLeavesAReversedRange) {
    const PairRow& r = GetParam();
    LoadedPage p(r.panel);
    auto* minimum = p.control<QSlider>(r.minimum);
    auto* maximum = p.control<QSlider>(r.maximum);
    const FieldInfo& minField = p.field(rowOf(r.panel, r.minimum).field);
    const FieldInfo& maxField = p.field(rowOf(r.panel, r.maximum).field);
    const auto expectStored = [&](double low, double high) {
        EXPECT_EQ(readField(p.record(), minField), static_cast<float>(low));
        EXPECT_EQ(readField(p.record(), maxField), static_cast<float>(high));
    };
    maximum->setValue(80);
    minimum->setValue(40);
    hostUpdates().clear();

    maximum->setValue(30);  // pulls the minimum down; its slot reports too
    EXPECT_EQ(minimum->value(), 30);
    expectStored(0.3, 0.3);
    EXPECT_EQ(hostUpdates().size(), 2u);
    minimum->setValue(60);  // pushes the maximum up
    EXPECT_EQ(maximum->value(), 60);
    expectStored(0.6, 0.6);
    maximum->setValue(90);  // inside the range the partner stays
    minimum->setValue(10);
    EXPECT_EQ(maximum->value(), 90);
    expectStored(0.1, 0.9);

    // A stored range upside down is a valid record (it inverts the tones).
    std::string reversed = p.record();
    writeField(reversed, minField, 0.8);
    const ControlRow& maxRow = rowOf(r.panel, r.maximum);
    writeField(reversed, p.field(maxRow.shownFrom != nullptr ? maxRow.shownFrom : maxRow.field), 0.3);
    p.load(reversed);
    EXPECT_EQ(minimum->value(), 80);
    EXPECT_EQ(maximum->value(), 30);
    expectSameRecord(p, p.record(), reversed);
}

class PanelFloor : public testing::TestWithParam<FloorRow> {};
INSTANTIATE_TEST_SUITE_P(Table, PanelFloor, testing::ValuesIn(kFloors), rowName<FloorRow>);

TEST_P(PanelFloor, AStoredZeroShowsTheFloorAndStays) {
    const FloorRow& r = GetParam();
    LoadedPage p(r.panel);
    QWidget* control = p.control(r.control);
    std::string zero = p.record();
    writeField(zero, p.field(rowOf(r.panel, r.control).field), 0);
    p.load(zero);
    EXPECT_EQ(shown(control), r.floor);
    expectSameRecord(p, p.record(), zero);
    setControl(control, 0);  // the control cannot go lower
    EXPECT_EQ(shown(control), r.floor);
}

// The one control whose slot takes a label: any text but the other three
// stands for the square tube.
TEST(NestedShapesPanel, AnUnknownLabelStandsForTheSquareTube) {
    LoadedPage p("Nested Shapes");
    emit p.control<QComboBox>("shapeType")->currentTextChanged("Torus");
    EXPECT_EQ(readField(p.record(), p.field("shapeType")), static_cast<double>(NestedShapesTexture3D::SquareTube));
}

// ---- The transform block under every page ------------------------------------

namespace {

struct TransformRow {
    const char* control;
    int value;
    float TransformData::*word;
    float stored;
    double shown;  // what its value box reads: texture units, or degrees
};

// Offsets and angles divide in double precision, the per-axis scales in
// single precision: the host has always received exactly these words.
const TransformRow kTransformControls[] = {
    {"transX", 37, &TransformData::xOffset, static_cast<float>(37 / 100.0), 0.37},
    {"transY", -3, &TransformData::yOffset, static_cast<float>(-3 / 100.0), -0.03},
    {"transZ", 100, &TransformData::zOffset, 1.0f, 1.0},
    {"rotX", 90, &TransformData::xAngle, 0.25f, 90},
    {"rotY", -45, &TransformData::yAngle, static_cast<float>(-45 / 360.0), -45},
    {"rotZ", 7, &TransformData::zAngle, static_cast<float>(7 / 360.0), 7},
    {"scaleX", 33, &TransformData::xScale, 33.0f / 100.0f, 0.33},
    {"scaleY", 1, &TransformData::yScale, 1.0f / 100.0f, 0.01},
    {"scaleZ", 70, &TransformData::zScale, 70.0f / 100.0f, 0.7},
};

// The least a panel can be.
struct BarePanel final : QtWrapperBase {
    BarePanel(Texture3D* texture, QWidget* page) : QtWrapperBase(texture, nullptr, page, nullptr) {}
    void updateUI() override {}
};

}  // namespace

TEST(TransformBlock, SitsUnderTheFormAfterAStretchOrMakesTheLayout) {
    const Page p("Checkerboard");
    auto* layout = qobject_cast<QVBoxLayout*>(p.widget().layout());
    ASSERT_NE(layout, nullptr);
    EXPECT_EQ(layout->stretch(layout->count() - 2), 10);
    EXPECT_EQ(layout->itemAt(layout->count() - 1)->widget()->objectName(), "CommonWidget");

    std::unique_ptr<Texture3D, void (*)(Texture3D*)> texture(TextureFactory::find("Checkerboard")->create(),
                                                             &Texture3D::release);
    QWidget bare;
    BarePanel panel(texture.get(), &bare);
    layout = qobject_cast<QVBoxLayout*>(bare.layout());
    ASSERT_NE(layout, nullptr);
    ASSERT_EQ(layout->count(), 2);
    EXPECT_EQ(layout->itemAt(1)->widget()->objectName(), "CommonWidget");
}

TEST(TransformBlock, EachControlStoresItsWordAndUpdatesTheHost) {
    LoadedPage p("Checkerboard");
    for (const TransformRow& r : kTransformControls) {
        hostUpdates().clear();
        p.control<QSlider>(r.control)->setValue(r.value);
        EXPECT_EQ(p.transforms().*r.word, r.stored) << r.control;
        ASSERT_EQ(hostUpdates().size(), 1u) << r.control;
        EXPECT_EQ(TransformData::fromBytes(hostUpdates()[0].transforms.data()).*r.word, r.stored) << r.control;
    }
    hostUpdates().clear();
    p.control<QDoubleSpinBox>("overallScale")->setValue(2.1234);
    EXPECT_EQ(p.transforms().overallScale, static_cast<float>(2.1234));
    EXPECT_EQ(hostUpdates().size(), 1u);
}

TEST(TransformBlock, TheHostReceivesTheTagWordsTheNewRecordAndTheTransforms) {
    LoadedPage p("Checkerboard");
    p.control<QSlider>("transY")->setValue(40);
    hostUpdates().clear();
    QTest::keyClick(p.control<QSlider>("variability"), Qt::Key_Right);
    ASSERT_EQ(hostUpdates().size(), 1u);
    const dialogtest::HostUpdate& u = hostUpdates()[0];
    EXPECT_EQ(u.words, (std::array<std::uint32_t, 4>{std::bit_cast<std::uint32_t>(4.0f), 8, 0, 0}));
    // The setter ran before the host was called.
    EXPECT_EQ(readField(p.record(), p.field("variability")), 0.51f);
    EXPECT_TRUE(std::string(u.record.data(), 256) == p.record());
    EXPECT_EQ(TransformData::fromBytes(u.transforms.data()).yOffset, 0.4f);
}

// Every position of every slider, carried to another page as a switch of
// generator carries it and back again: both pages show that position, the
// words stay bit for bit, and nothing else reaches the host meanwhile.
TEST(TransformBlock, EverySliderPositionSurvivesBeingLoadedTwice) {
    LoadedPage p("Checkerboard");
    const Page other("Brick");
    for (const TransformRow& r : kTransformControls) {
        auto* slider = p.control<QSlider>(r.control);
        for (int position = slider->minimum(); position <= slider->maximum(); ++position) {
            slider->setValue(position);
            const TransformData made = p.transforms();
            hostUpdates().clear();
            other.wrapper().setTransforms(made);
            p.wrapper().setTransforms(other.transforms());
            for (const Page* page : {static_cast<const Page*>(&p), &other}) {
                const TransformData loaded = page->transforms();
                ASSERT_EQ(page->control<QSlider>(r.control)->value(), position) << r.control;
                ASSERT_EQ(std::memcmp(&loaded, &made, sizeof made), 0) << r.control << " " << position;
                expectBoxReads(page->control(r.control), position * (r.shown / r.value));
            }
            for (const dialogtest::HostUpdate& u : hostUpdates())
                ASSERT_EQ(std::memcmp(u.transforms.data(), &made, sizeof made), 0) << r.control;
        }
    }
}

TEST(TransformBlock, LoadingQuantisesToWhatTheControlsShowAndClampsDamagedWords) {
    LoadedPage p("Checkerboard");
    TransformData in;
    in.flags = 12345;        // carried untouched
    in.xOffset = 0.123f;     // slider 12, read back as 0.12
    in.yOffset = 0.001f;     // slider 0, which it already shows: no report, kept
    in.zOffset = -0.257f;    // truncated toward zero: -25
    in.xAngle = 0.75f;       // 270 degrees, clamped by the slider to 180
    in.yAngle = 0.1f;        // 36 degrees
    in.zAngle = std::numeric_limits<float>::infinity();  // saturates, then clamps to -180
    in.overallScale = 0.0f;  // clamped by the spin box to 0.0001
    in.xScale = -1e30f;      // clamped to the slider's 1
    in.yScale = std::numeric_limits<float>::quiet_NaN();  // INT_MIN, clamped to 1
    in.zScale = 0.257f;      // 25, read back in single precision
    p.wrapper().setTransforms(in);

    const TransformData out = p.transforms();
    EXPECT_EQ(out.flags, 12345);
    EXPECT_EQ(out.xOffset, static_cast<float>(12 / 100.0));
    EXPECT_EQ(out.yOffset, 0.001f);
    EXPECT_EQ(out.zOffset, static_cast<float>(-25 / 100.0));
    EXPECT_EQ(out.xAngle, 0.5f);
    EXPECT_EQ(out.yAngle, static_cast<float>(36 / 360.0));
    EXPECT_EQ(out.zAngle, -0.5f);
    EXPECT_EQ(out.overallScale, static_cast<float>(0.0001));
    EXPECT_EQ(out.xScale, 0.01f);
    EXPECT_EQ(out.yScale, 0.01f);
    EXPECT_EQ(out.zScale, 0.25f);
    // One update per control that moved: all but transY.
    EXPECT_EQ(hostUpdates().size(), 9u);
}

TEST(TransformBlock, InteractiveUpdateSwitchesItsTracking) {
    const Page p("Checkerboard");
    auto* button = p.control<QPushButton>("newInteractiveUpdate");
    for (const bool on : {true, false, true}) {
        button->setChecked(on);
        for (const TransformRow& r : kTransformControls)
            EXPECT_EQ(p.control<QSlider>(r.control)->hasTracking(), on) << r.control;
        EXPECT_EQ(p.control<QDoubleSpinBox>("overallScale")->keyboardTracking(), on);
    }
}

// Simplex's own scale slot hides the block's slot of the same name; the
// block's overall scale must still reach the transforms alone.
TEST(TransformBlock, SimplexsOverallScaleIsTheTransformsNotTheTextures) {
    LoadedPage p("Simplex");
    const std::string before = p.record();
    p.control<QDoubleSpinBox>("overallScale")->setValue(2.5);
    EXPECT_EQ(p.transforms().overallScale, 2.5f);
    expectSameRecord(p, p.record(), before);
    EXPECT_EQ(hostUpdates().size(), 1u);
}
