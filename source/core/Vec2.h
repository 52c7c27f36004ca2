#pragma once

#include <iosfwd>

namespace gritwell {

struct Vec2 {
    float x, y;

    Vec2() = default;  // components left uninitialised
    constexpr Vec2(float x_, float y_) : x(x_), y(y_) {}

    float& operator[](int i) { return i == 0 ? x : y; }
    const float& operator[](int i) const { return i == 0 ? x : y; }
};

std::ostream& operator<<(std::ostream& os, const Vec2& v);
std::istream& operator>>(std::istream& is, Vec2& v);

}  // namespace gritwell
