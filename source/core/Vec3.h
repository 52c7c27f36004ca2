#pragma once

#include <iosfwd>

namespace gritwell {

struct Vec3 {
    float x, y, z;

    Vec3() = default;  // components left uninitialised
    constexpr Vec3(float x_, float y_, float z_) : x(x_), y(y_), z(z_) {}

    float& operator[](int i) { return i == 0 ? x : i == 1 ? y : z; }
    const float& operator[](int i) const { return i == 0 ? x : i == 1 ? y : z; }

    Vec3& operator*=(float k) {
        x *= k;
        y *= k;
        z *= k;
        return *this;
    }
};

constexpr Vec3 operator-(const Vec3& a, const Vec3& b) { return {a.x - b.x, a.y - b.y, a.z - b.z}; }
constexpr Vec3 operator*(const Vec3& v, float k) { return {v.x * k, v.y * k, v.z * k}; }
constexpr Vec3 operator*(float k, const Vec3& v) { return {k * v.x, k * v.y, k * v.z}; }

constexpr float dot(const Vec3& a, const Vec3& b) { return a.x * b.x + a.y * b.y + a.z * b.z; }
constexpr Vec3 cross(const Vec3& a, const Vec3& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
constexpr float sqrlen(const Vec3& v) { return dot(v, v); }
float len(const Vec3& v);

std::ostream& operator<<(std::ostream& os, const Vec3& v);
std::istream& operator>>(std::istream& is, Vec3& v);

}  // namespace gritwell
