#pragma once
// TransformData: the 44-byte record the host keeps beside each state record:
// the generator's flags word and where the texture sits on the model. This
// library carries and edits it; the host applies it.

#include <cstddef>
#include <cstdint>

namespace gritwell {

struct TransformData {
    std::int32_t flags = 2;   // handed to Texture3D::setFlags; bits 4 and 8: planar
    float overallScale = 1.0f;
    float xOffset = 0.0f;
    float yOffset = 0.0f;
    float zOffset = 0.0f;
    float xScale = 1.0f;
    float yScale = 1.0f;
    float zScale = 1.0f;
    float xAngle = 0.0f;  // in turns: 1.0 is 360 degrees
    float yAngle = 0.0f;
    float zAngle = 0.0f;

    // The record exchanged with the host, byte for byte.
    void toBytes(char* out) const;
    static TransformData fromBytes(const char* in);
};
static_assert(sizeof(TransformData) == 44);
static_assert(offsetof(TransformData, overallScale) == 4);
static_assert(offsetof(TransformData, xOffset) == 8);
static_assert(offsetof(TransformData, xScale) == 20);
static_assert(offsetof(TransformData, xAngle) == 32);
static_assert(offsetof(TransformData, zAngle) == 40);

}  // namespace gritwell
