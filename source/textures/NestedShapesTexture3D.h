#pragma once
// "Nested Shapes": dark shells one distance unit apart around the origin, on
// a white ground — cylinders about z, spheres, square tubes along z or cubes.
// The flags word is ignored.

#include <cstdint>
#include <string_view>

#include "core/BaseData.h"
#include "core/RecordTexture3D.h"

namespace gritwell {

class NestedShapesTexture3D final : public RecordTexture3D<NestedShapesTexture3D> {
public:
    static constexpr std::string_view kName = "Nested Shapes";
    static constexpr std::string_view kSummary = "Dark shells one unit apart around the origin: cylinders, spheres, tubes or cubes";
    static constexpr int kMajorVersion = 2;
    static constexpr int kMinorVersion = 0;
    static constexpr int kRecordSize = 44;

    // Stored values; the dialog lists them in another order.
    enum ShapeType : std::int32_t {
        Cylinder = 0,    // distance from the z axis
        Sphere = 1,      // distance from the origin
        SquareTube = 2,  // max(|x|, |y|)
        Cube = 3,        // max(|x|, |y|, |z|)
    };

    struct Record {
        BaseData header = makeHeader(kRecordSize, kName, kMajorVersion, kMinorVersion);
        std::int32_t shapeType = Cylinder;
        float thickness = 0.25f;  // full width of a shell, in distance units
    };
    static constexpr FieldInfo kFields[] = {
        {"shapeType", offsetof(Record, shapeType), FieldType::Int32},
        {"thickness", offsetof(Record, thickness), FieldType::Float},
    };
    // Text stream operators that write and read nothing, as this pattern's
    // always have.
    static constexpr bool kFieldsAsText = false;

    // 0 on a shell (within thickness / 2 of a whole distance, bounds
    // included), else 1; an invalid shape type draws no shells: always 1.
    static float evaluate(const Record& r, int flags, float x, float y, float z);

    ShapeType getShapeType() const { return static_cast<ShapeType>(record_.shapeType); }
    void setShapeType(ShapeType type) { record_.shapeType = type; }
    float getThickness() const { return record_.thickness; }
    void setThickness(float thickness) { record_.thickness = thickness; }

private:
    friend class RecordTexture3D<NestedShapesTexture3D>;
    Record record_;
};

static_assert(offsetof(NestedShapesTexture3D::Record, shapeType) == 36);
static_assert(offsetof(NestedShapesTexture3D::Record, thickness) == 40);

extern template class RecordTexture3D<NestedShapesTexture3D>;

}  // namespace gritwell
