#include "core/Mat4.h"

#include <cmath>
#include <iostream>

#include "core/VectorText.h"

namespace gritwell {

Mat4::Mat4(float m00, float m01, float m02, float m03, float m10, float m11, float m12, float m13,
           float m20, float m21, float m22, float m23, float m30, float m31, float m32, float m33)
    : row{{m00, m01, m02, m03}, {m10, m11, m12, m13}, {m20, m21, m22, m23}, {m30, m31, m32, m33}} {}

Mat4& Mat4::operator+=(const Mat4& m) {
    for (int r = 0; r < 4; ++r) row[r] += m.row[r];
    return *this;
}
Mat4& Mat4::operator-=(const Mat4& m) {
    for (int r = 0; r < 4; ++r) row[r] -= m.row[r];
    return *this;
}
Mat4& Mat4::operator*=(const Mat4& m) { return *this = *this * m; }
Mat4& Mat4::operator*=(float k) {
    for (Vec4& r : row) r *= k;
    return *this;
}
Mat4& Mat4::operator/=(float k) {
    for (Vec4& r : row) r /= k;
    return *this;
}

void Mat4::MakeZero() { MakeBlock(0.0f); }
void Mat4::MakeDiag(float k) {
    for (int r = 0; r < 4; ++r) row[r].MakeUnit(r, k);
}
void Mat4::MakeBlock(float k) {
    for (Vec4& r : row) r = {k, k, k, k};
}
void Mat4::Transpose() { *this = trans(*this); }

bool operator==(const Mat4& a, const Mat4& b) {
    for (int r = 0; r < 4; ++r)
        if (a[r] != b[r]) return false;
    return true;
}
bool operator!=(const Mat4& a, const Mat4& b) { return !(a == b); }
Mat4 operator+(const Mat4& a, const Mat4& b) { return Mat4(a) += b; }
Mat4 operator-(const Mat4& a, const Mat4& b) { return Mat4(a) -= b; }
Mat4 operator-(const Mat4& m) {
    Mat4 result;
    for (int r = 0; r < 4; ++r) result[r] = -m[r];
    return result;
}
Mat4 operator*(const Mat4& m, float k) { return Mat4(m) *= k; }
Mat4 operator*(float k, const Mat4& m) {
    Mat4 result;
    for (int r = 0; r < 4; ++r) result[r] = k * m[r];
    return result;
}
Mat4 operator/(const Mat4& m, float k) { return Mat4(m) /= k; }

Mat4 operator*(const Mat4& a, const Mat4& b) {
    Mat4 result;
    for (int r = 0; r < 4; ++r)
        for (int c = 0; c < 4; ++c)
            result[r][c] = a[r][0] * b[0][c] + a[r][1] * b[1][c] + a[r][2] * b[2][c] + a[r][3] * b[3][c];
    return result;
}

Vec4 operator*(const Mat4& m, const Vec4& v) { return {dot(m[0], v), dot(m[1], v), dot(m[2], v), dot(m[3], v)}; }

Vec4 operator*(const Vec4& v, const Mat4& m) {
    Vec4 result;
    for (int c = 0; c < 4; ++c) result[c] = v.x * m[0][c] + v.y * m[1][c] + v.z * m[2][c] + v.w * m[3][c];
    return result;
}
Vec4& operator*=(Vec4& v, const Mat4& m) { return v = v * m; }

Mat4 trans(const Mat4& m) {
    Mat4 result;
    for (int r = 0; r < 4; ++r)
        for (int c = 0; c < 4; ++c) result[r][c] = m[c][r];
    return result;
}

float trace(const Mat4& m) { return m[0][0] + m[1][1] + m[2][2] + m[3][3]; }

Mat4 oprod(const Vec4& a, const Vec4& b) {
    Mat4 result;
    for (int r = 0; r < 4; ++r) result[r] = a[r] * b;
    return result;
}

Mat4 adj(const Mat4& m) {
    // Row r holds the cofactors of row r: the generalised cross product of the
    // other three rows, signed by the row's position.
    Mat4 result;
    result[0] = cross(m[1], m[2], m[3]);
    result[1] = -cross(m[0], m[2], m[3]);
    result[2] = cross(m[0], m[1], m[3]);
    result[3] = -cross(m[0], m[1], m[2]);
    return result;
}

float det(const Mat4& m) { return dot(adj(m)[0], m[0]); }

Mat4 inv(const Mat4& m) {
    const Mat4 a = adj(m);
    const float d = dot(a[0], m[0]);
    return trans(a) / d;
}

Mat4 MakeHTrans(const Vec3& t) {
    Mat4 result;
    result.MakeDiag(1.0f);
    AddShift(result, t);
    return result;
}

Mat4 MakeHScale(const Vec3& s) {
    Mat4 result;
    result.MakeDiag(1.0f);
    result[0][0] = s.x;
    result[1][1] = s.y;
    result[2][2] = s.z;
    return result;
}

void AddShift(Mat4& m, const Vec3& t) {
    m[0][3] += t.x;
    m[1][3] += t.y;
    m[2][3] += t.z;
}

Mat4 MakeHRot(const Vec4& q) {
    const float xx = q.x * q.x, yy = q.y * q.y, zz = q.z * q.z;
    const float xy = q.x * q.y, xz = q.x * q.z, yz = q.y * q.z;
    const float wx = q.w * q.x, wy = q.w * q.y, wz = q.w * q.z;
    return Mat4(1.0f - 2.0f * (yy + zz), 2.0f * (xy - wz), 2.0f * (xz + wy), 0.0f,
                2.0f * (xy + wz), 1.0f - 2.0f * (xx + zz), 2.0f * (yz - wx), 0.0f,
                2.0f * (xz - wy), 2.0f * (yz + wx), 1.0f - 2.0f * (xx + yy), 0.0f,
                0.0f, 0.0f, 0.0f, 1.0f);
}

Mat4 MakeHRot(const Vec3& axis, float angle) {
    const double half = angle / 2.0;
    const float s = static_cast<float>(std::sin(half));
    const float c = static_cast<float>(std::cos(half));
    return MakeHRot(Vec4(axis.x * s, axis.y * s, axis.z * s, c));
}

// ---- text form ----

std::ostream& operator<<(std::ostream& os, const Mat4& m) {
    const std::streamsize w = os.width();
    os << '[' << m[0] << '\n';
    for (int r = 1; r < 4; ++r) {
        os.width(w);
        os << m[r];
        if (r < 3) os << '\n';
    }
    return os << ']' << std::endl;
}

std::istream& operator>>(std::istream& is, Mat4& m) {
    if (skipSpaceAndPeek(is) != '[') {
        is.setstate(std::ios::failbit);
        std::cerr << "Expected '[' while reading matrix\n";
        return is;
    }
    is.get();
    Mat4 result;
    for (Vec4& r : result.row) {
        is >> r;
        if (is.fail()) break;
    }
    if (is.fail()) {
        std::cerr << "Expected number while reading matrix\n";
        return is;
    }
    if (skipSpaceAndPeek(is) != ']') {
        is.setstate(std::ios::failbit);
        std::cerr << "Expected ']' while reading matrix\n";
        return is;
    }
    is.get();
    m = result;
    return is;
}

}  // namespace gritwell
