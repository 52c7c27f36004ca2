#include "core/Vec4.h"

#include <istream>
#include <ostream>

#include "core/VectorText.h"

namespace gritwell {

Vec4& Vec4::operator+=(const Vec4& v) {
    x += v.x;
    y += v.y;
    z += v.z;
    w += v.w;
    return *this;
}
Vec4& Vec4::operator-=(const Vec4& v) {
    x -= v.x;
    y -= v.y;
    z -= v.z;
    w -= v.w;
    return *this;
}
Vec4& Vec4::operator*=(float k) {
    x *= k;
    y *= k;
    z *= k;
    w *= k;
    return *this;
}
Vec4& Vec4::operator/=(float k) {
    x /= k;
    y /= k;
    z /= k;
    w /= k;
    return *this;
}

void Vec4::MakeUnit(int i, float k) {
    if (i < 0 || i > 3) return;
    x = y = z = w = 0.0f;
    (*this)[i] = k;
}

bool operator==(const Vec4& a, const Vec4& b) {
    return a.x == b.x && a.y == b.y && a.z == b.z && a.w == b.w;
}
bool operator!=(const Vec4& a, const Vec4& b) { return !(a == b); }
Vec4 operator+(const Vec4& a, const Vec4& b) { return {a.x + b.x, a.y + b.y, a.z + b.z, a.w + b.w}; }
Vec4 operator-(const Vec4& a, const Vec4& b) { return {a.x - b.x, a.y - b.y, a.z - b.z, a.w - b.w}; }
Vec4 operator-(const Vec4& v) { return {-v.x, -v.y, -v.z, -v.w}; }
Vec4 operator*(const Vec4& v, float k) { return {v.x * k, v.y * k, v.z * k, v.w * k}; }
Vec4 operator*(float k, const Vec4& v) { return {k * v.x, k * v.y, k * v.z, k * v.w}; }
Vec4 operator/(const Vec4& v, float k) { return {v.x / k, v.y / k, v.z / k, v.w / k}; }

float dot(const Vec4& a, const Vec4& b) { return a.x * b.x + a.y * b.y + a.z * b.z + a.w * b.w; }

Vec4 cross(const Vec4& a, const Vec4& b, const Vec4& c) {
    // The 4x4 determinant whose rows are the unit vectors (e0..e3), a, b and c,
    // expanded along its first row.
    const float d1 = b.z * c.w - b.w * c.z;
    const float d2 = b.y * c.w - b.w * c.y;
    const float d3 = b.y * c.z - b.z * c.y;
    const float d4 = b.x * c.w - b.w * c.x;
    const float d5 = b.x * c.z - b.z * c.x;
    const float d6 = b.x * c.y - b.y * c.x;
    return {a.y * d1 - a.z * d2 + a.w * d3, -a.x * d1 + a.z * d4 - a.w * d5,
            a.x * d2 - a.y * d4 + a.w * d6, -a.x * d3 + a.y * d5 - a.z * d6};
}

Vec3 proj(const Vec4& v) { return {v.x / v.w, v.y / v.w, v.z / v.w}; }

std::ostream& operator<<(std::ostream& os, const Vec4& v) {
    const float c[4] = {v.x, v.y, v.z, v.w};
    writeVectorText(os, c, 4);
    return os;
}
std::istream& operator>>(std::istream& is, Vec4& v) {
    float c[4];
    if (readVectorText(is, c, 4)) v = {c[0], c[1], c[2], c[3]};
    return is;
}

}  // namespace gritwell
