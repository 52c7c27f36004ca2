#pragma once

#include <iosfwd>

#include "core/Vec3.h"

namespace gritwell {

struct Vec4 {
    float x, y, z, w;

    Vec4() = default;  // components left uninitialised
    constexpr Vec4(float x_, float y_, float z_, float w_) : x(x_), y(y_), z(z_), w(w_) {}

    float& operator[](int i) { return i == 0 ? x : i == 1 ? y : i == 2 ? z : w; }
    const float& operator[](int i) const { return i == 0 ? x : i == 1 ? y : i == 2 ? z : w; }

    Vec4& operator+=(const Vec4& v);
    Vec4& operator-=(const Vec4& v);
    Vec4& operator*=(float k);
    Vec4& operator/=(float k);

    // Component i becomes k and the others 0; an i outside 0..3 changes nothing.
    void MakeUnit(int i, float k);
};

bool operator==(const Vec4& a, const Vec4& b);
bool operator!=(const Vec4& a, const Vec4& b);
Vec4 operator+(const Vec4& a, const Vec4& b);
Vec4 operator-(const Vec4& a, const Vec4& b);
Vec4 operator-(const Vec4& v);
Vec4 operator*(const Vec4& v, float k);
Vec4 operator*(float k, const Vec4& v);
Vec4 operator/(const Vec4& v, float k);

float dot(const Vec4& a, const Vec4& b);
// The 4-D generalised cross product: orthogonal to all three arguments.
Vec4 cross(const Vec4& a, const Vec4& b, const Vec4& c);
// The point (x/w, y/w, z/w) of a homogeneous vector.
Vec3 proj(const Vec4& v);

std::ostream& operator<<(std::ostream& os, const Vec4& v);
std::istream& operator>>(std::istream& is, Vec4& v);

}  // namespace gritwell
