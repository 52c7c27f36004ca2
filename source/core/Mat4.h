#pragma once
// Mat4: a 4x4 single-precision matrix of four Vec4 rows. Transforms act on
// column vectors (matrix x vector) with the translation in column 3.

#include <iosfwd>

#include "core/Vec3.h"
#include "core/Vec4.h"

namespace gritwell {

struct Mat4 {
    Vec4 row[4];

    Mat4() = default;  // elements left uninitialised
    Mat4(float m00, float m01, float m02, float m03, float m10, float m11, float m12, float m13,
         float m20, float m21, float m22, float m23, float m30, float m31, float m32, float m33);

    Vec4& operator[](int r) { return row[r]; }
    const Vec4& operator[](int r) const { return row[r]; }

    Mat4& operator+=(const Mat4& m);
    Mat4& operator-=(const Mat4& m);
    Mat4& operator*=(const Mat4& m);
    Mat4& operator*=(float k);
    Mat4& operator/=(float k);

    void MakeZero();
    void MakeDiag(float k);   // k on the diagonal, 0 elsewhere
    void MakeBlock(float k);  // every element k
    void Transpose();         // in place
};

bool operator==(const Mat4& a, const Mat4& b);
bool operator!=(const Mat4& a, const Mat4& b);
Mat4 operator+(const Mat4& a, const Mat4& b);
Mat4 operator-(const Mat4& a, const Mat4& b);
Mat4 operator-(const Mat4& m);
Mat4 operator*(const Mat4& a, const Mat4& b);
Mat4 operator*(const Mat4& m, float k);
Mat4 operator*(float k, const Mat4& m);
Mat4 operator/(const Mat4& m, float k);

Vec4 operator*(const Mat4& m, const Vec4& v);  // column vector
Vec4 operator*(const Vec4& v, const Mat4& m);  // row vector
Vec4& operator*=(Vec4& v, const Mat4& m);

Mat4 trans(const Mat4& m);
float trace(const Mat4& m);
Mat4 oprod(const Vec4& a, const Vec4& b);  // outer product a b^T
// The cofactor matrix: inv(m) = trans(adj(m)) / det(m).
Mat4 adj(const Mat4& m);
float det(const Mat4& m);
// A singular matrix divides by zero without warning.
Mat4 inv(const Mat4& m);

// ---- homogeneous builders ----
Mat4 MakeHTrans(const Vec3& t);
Mat4 MakeHScale(const Vec3& s);
Mat4 MakeHRot(const Vec4& q);  // unit quaternion (x, y, z, w), w the scalar part
Mat4 MakeHRot(const Vec3& axis, float angle);  // the axis is not normalised
void AddShift(Mat4& m, const Vec3& t);

std::ostream& operator<<(std::ostream& os, const Mat4& m);
std::istream& operator>>(std::istream& is, Mat4& m);

}  // namespace gritwell
