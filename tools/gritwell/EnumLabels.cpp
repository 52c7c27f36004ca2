#include "EnumLabels.h"

#include "noise/Voronoi.h"
#include "textures/BrickTexture3D.h"
#include "textures/CorrugatedTexture3D.h"
#include "textures/HoundstoothTexture3D.h"
#include "textures/NestedShapesTexture3D.h"
#include "textures/ScalesTexture3D.h"
#include "textures/StripesTexture3D.h"
#include "textures/WeaveTexture3D.h"

namespace gritwell::EnumLabels {

namespace {

// The brick panel stores its combo index as is, so its labels are crossed
// with the patterns the values draw: "Running Bond" stores the herringbone's 0.
constexpr Item kBrickPattern[] = {
    {BrickTexture3D::HERRINGBONE, "Running Bond"},
    {BrickTexture3D::RUNNING_BOND, "Herringbone"},
};

constexpr Item kCorrugatedStyle[] = {
    {CorrugatedTexture3D::Triangle, "Triangle"}, {CorrugatedTexture3D::Sine, "Sine"},
    {CorrugatedTexture3D::Ribbon, "Ribbon"},     {CorrugatedTexture3D::Sawtooth, "Sawtooth"},
    {CorrugatedTexture3D::PerlinNoise, "Perlin Noise"},
};

constexpr Item kHoundstoothPattern[] = {
    {HoundstoothTexture3D::HOUNDSTOOTH, "Houndstooth"},
    {HoundstoothTexture3D::PUPPYTOOTH, "Puppytooth"},
};

constexpr Item kNestedShapesShape[] = {
    {NestedShapesTexture3D::Sphere, "Sphere"},
    {NestedShapesTexture3D::Cylinder, "Cylinder"},
    {NestedShapesTexture3D::Cube, "Cube"},
    {NestedShapesTexture3D::SquareTube, "Square Tube"},
};

constexpr Item kScalesShape[] = {
    {ScalesTexture3D::SCALE_SHAPE_SEMICIRCLE, "Semicircle"},
    {ScalesTexture3D::SCALE_SHAPE_NORMAL, "Normal"},
};

constexpr Item kStripesStyle[] = {
    {StripesTexture3D::Triangle, "Triangle"}, {StripesTexture3D::Straight, "Straight"},
    {StripesTexture3D::Sine, "Sine"},         {StripesTexture3D::Sawtooth, "Sawtooth"},
    {StripesTexture3D::Ribbon, "Ribbon"},     {StripesTexture3D::PerlinNoise, "Perlin Noise"},
};

constexpr Item kVoronoiType[] = {
    {Voronoi::First, "First"},
    {Voronoi::Second, "Second"},
    {Voronoi::Third, "Third"},
    {Voronoi::Fourth, "Fourth"},
    {Voronoi::Difference21, "Difference (2-1)"},
    {Voronoi::Difference32, "Difference (3-2)"},
    {Voronoi::Crackle, "Tile"},
};

constexpr Item kVoronoiDistance[] = {
    {Voronoi::Length, "Length"},
    {Voronoi::LengthSquared, "Squared Length"},
    {Voronoi::Manhattan, "Taxicab"},
    {Voronoi::Chebychev, "Chebychev"},
    {Voronoi::Quadratic, "Quadratic"},
    {Voronoi::Minkowski4, "Minkowski(4)"},
    {Voronoi::Minkowski5, "Minkowski(0.5)"},
};

constexpr Item kWeavePattern[] = {
    {WeaveTexture3D::WEAVE_SIMPLE, "Plain"},
    {WeaveTexture3D::WEAVE_HERRINGBONE, "Herringbone"},
};

// Where a panel tests "is it the first value" rather than looking the value
// up, every other value shows the second item; elsewhere it shows none.
constexpr Field kFields[] = {
    {"Brick", "pattern", kBrickPattern, ""},
    {"Corrugated", "style", kCorrugatedStyle, ""},
    {"Houndstooth", "pattern", kHoundstoothPattern, "Puppytooth"},
    {"Nested Shapes", "shapeType", kNestedShapesShape, ""},
    {"Scales", "scaleShape", kScalesShape, "Normal"},
    {"Stripes", "stripeStyle", kStripesStyle, "Straight"},  // every other style draws straight lines
    {"Voronoi", "type", kVoronoiType, ""},
    {"Voronoi", "distanceMethod", kVoronoiDistance, ""},
    {"Weave", "pattern", kWeavePattern, "Herringbone"},
};

}  // namespace

std::span<const Field> all() { return kFields; }

const Field* find(std::string_view generator, std::string_view field) {
    for (const Field& f : kFields)
        if (f.generator == generator && f.field == field) return &f;
    return nullptr;
}

std::string_view label(const Field& field, std::int32_t value) {
    for (const Item& item : field.items)
        if (item.value == value) return item.label;
    return field.otherValues;
}

}  // namespace gritwell::EnumLabels
