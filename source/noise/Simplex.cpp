// Stefan Gustavson, "Simplex noise demystified" (2005) and his Java code
// SimplexNoise.java (2012 version, with the rank-ordered 4-D simplex).
#include "noise/Simplex.h"

#include <array>
#include <cmath>

#include "core/FloatToInt.h"
#include "noise/PerlinPermutation.h"

namespace gritwell::Simplex {

namespace {

// The permutation doubled to 512 so that sums of two wrapped indices need no
// further wrap, and its entries modulo 12 for the 12 edge gradients.
constexpr std::array<int, 512> kPerm = doubledPerlinPermutation<int>();
constexpr std::array<int, 512> kPermMod12 = [] {
    std::array<int, 512> p{};
    for (int i = 0; i < 512; ++i) p[i] = kPerm[i] % 12;
    return p;
}();

struct Grad3 {
    double x, y, z;
};
struct Grad4 {
    double x, y, z, w;
};

// Gustavson's gradients: the 12 cube-edge midpoints (the 2-D noise uses
// their x and y) and the 32 edge midpoints of the 4-D hypercube.
constexpr std::array<Grad3, 12> kGrad3 = {{{1, 1, 0},
                                           {-1, 1, 0},
                                           {1, -1, 0},
                                           {-1, -1, 0},
                                           {1, 0, 1},
                                           {-1, 0, 1},
                                           {1, 0, -1},
                                           {-1, 0, -1},
                                           {0, 1, 1},
                                           {0, -1, 1},
                                           {0, 1, -1},
                                           {0, -1, -1}}};
constexpr std::array<Grad4, 32> kGrad4 = {{
    {0, 1, 1, 1},   {0, 1, 1, -1},   {0, 1, -1, 1},   {0, 1, -1, -1},   {0, -1, 1, 1},   {0, -1, 1, -1},
    {0, -1, -1, 1}, {0, -1, -1, -1}, {1, 0, 1, 1},    {1, 0, 1, -1},    {1, 0, -1, 1},   {1, 0, -1, -1},
    {-1, 0, 1, 1},  {-1, 0, 1, -1},  {-1, 0, -1, 1},  {-1, 0, -1, -1},  {1, 1, 0, 1},    {1, 1, 0, -1},
    {1, -1, 0, 1},  {1, -1, 0, -1},  {-1, 1, 0, 1},   {-1, 1, 0, -1},   {-1, -1, 0, 1},  {-1, -1, 0, -1},
    {1, 1, 1, 0},   {1, 1, -1, 0},   {1, -1, 1, 0},   {1, -1, -1, 0},   {-1, 1, 1, 0},   {-1, 1, -1, 0},
    {-1, -1, 1, 0}, {-1, -1, -1, 0},
}};

// Skewing and unskewing factors F = (sqrt(n + 1) - 1) / n and
// G = (1 - 1 / sqrt(n + 1)) / n, written as the doubles Gustavson's
// expressions evaluate to (0.5 * (sqrt(3) - 1), (3 - sqrt(3)) / 6,
// (sqrt(5) - 1) / 4, (5 - sqrt(5)) / 20), so they are compile-time constants.
constexpr double kF2 = 0.3660254037844386;
constexpr double kG2 = 0.21132486540518713;
constexpr double kF3 = 1.0 / 3.0;
constexpr double kG3 = 1.0 / 6.0;
constexpr double kF4 = 0.30901699437494745;
constexpr double kG4 = 0.1381966011250105;

// The simplex cell of a skewed coordinate: the true floor.
int cellOf(double v) { return truncToInt(std::floor(v)); }

// A corner's contribution: (t^2)^2 times the gradient's dot product, or 0
// once the corner is out of reach (t < 0).
double falloff(double t, double gradientDot) {
    if (t < 0) return 0.0;
    t *= t;
    return t * t * gradientDot;
}

double dot(const Grad3& g, double x, double y) { return g.x * x + g.y * y; }
double dot(const Grad3& g, double x, double y, double z) { return g.x * x + g.y * y + g.z * z; }
double dot(const Grad4& g, double x, double y, double z, double w) {
    return g.x * x + g.y * y + g.z * z + g.w * w;
}

}  // namespace

double noise(double xin, double yin) {
    // Skew the input space to find the simplex cell.
    const double s = (xin + yin) * kF2;
    const int i = cellOf(xin + s);
    const int j = cellOf(yin + s);
    const double t = static_cast<double>(wrapAdd(i, j)) * kG2;
    const double X0 = i - t;
    const double Y0 = j - t;
    const double x0 = xin - X0;
    const double y0 = yin - Y0;
    // Lower triangle: step (1, 0) first; upper triangle: (0, 1).
    const int i1 = x0 > y0 ? 1 : 0;
    const int j1 = 1 - i1;
    const double x1 = x0 - i1 + kG2;
    const double y1 = y0 - j1 + kG2;
    const double x2 = x0 - 1.0 + 2.0 * kG2;
    const double y2 = y0 - 1.0 + 2.0 * kG2;
    const int ii = i & 255;
    const int jj = j & 255;
    const int gi0 = kPermMod12[ii + kPerm[jj]];
    const int gi1 = kPermMod12[ii + i1 + kPerm[jj + j1]];
    const int gi2 = kPermMod12[ii + 1 + kPerm[jj + 1]];
    const double n0 = falloff(0.5 - x0 * x0 - y0 * y0, dot(kGrad3[gi0], x0, y0));
    const double n1 = falloff(0.5 - x1 * x1 - y1 * y1, dot(kGrad3[gi1], x1, y1));
    const double n2 = falloff(0.5 - x2 * x2 - y2 * y2, dot(kGrad3[gi2], x2, y2));
    return 70.0 * (n0 + n1 + n2);
}

double noise(double xin, double yin, double zin) {
    const double s = (xin + yin + zin) * kF3;
    const int i = cellOf(xin + s);
    const int j = cellOf(yin + s);
    const int k = cellOf(zin + s);
    const double t = static_cast<double>(wrapAdd(wrapAdd(i, j), k)) * kG3;
    const double X0 = i - t;
    const double Y0 = j - t;
    const double Z0 = k - t;
    const double x0 = xin - X0;
    const double y0 = yin - Y0;
    const double z0 = zin - Z0;
    // Which of the six tetrahedra: the order of x0, y0, z0.
    int i1, j1, k1, i2, j2, k2;
    if (x0 >= y0) {
        if (y0 >= z0) {  // X Y Z
            i1 = 1, j1 = 0, k1 = 0, i2 = 1, j2 = 1, k2 = 0;
        } else if (x0 >= z0) {  // X Z Y
            i1 = 1, j1 = 0, k1 = 0, i2 = 1, j2 = 0, k2 = 1;
        } else {  // Z X Y
            i1 = 0, j1 = 0, k1 = 1, i2 = 1, j2 = 0, k2 = 1;
        }
    } else {
        if (y0 < z0) {  // Z Y X
            i1 = 0, j1 = 0, k1 = 1, i2 = 0, j2 = 1, k2 = 1;
        } else if (x0 < z0) {  // Y Z X
            i1 = 0, j1 = 1, k1 = 0, i2 = 0, j2 = 1, k2 = 1;
        } else {  // Y X Z
            i1 = 0, j1 = 1, k1 = 0, i2 = 1, j2 = 1, k2 = 0;
        }
    }
    const double x1 = x0 - i1 + kG3;
    const double y1 = y0 - j1 + kG3;
    const double z1 = z0 - k1 + kG3;
    const double x2 = x0 - i2 + 2.0 * kG3;
    const double y2 = y0 - j2 + 2.0 * kG3;
    const double z2 = z0 - k2 + 2.0 * kG3;
    const double x3 = x0 - 1.0 + 3.0 * kG3;
    const double y3 = y0 - 1.0 + 3.0 * kG3;
    const double z3 = z0 - 1.0 + 3.0 * kG3;
    const int ii = i & 255;
    const int jj = j & 255;
    const int kk = k & 255;
    const int gi0 = kPermMod12[ii + kPerm[jj + kPerm[kk]]];
    const int gi1 = kPermMod12[ii + i1 + kPerm[jj + j1 + kPerm[kk + k1]]];
    const int gi2 = kPermMod12[ii + i2 + kPerm[jj + j2 + kPerm[kk + k2]]];
    const int gi3 = kPermMod12[ii + 1 + kPerm[jj + 1 + kPerm[kk + 1]]];
    const double n0 = falloff(0.6 - x0 * x0 - y0 * y0 - z0 * z0, dot(kGrad3[gi0], x0, y0, z0));
    const double n1 = falloff(0.6 - x1 * x1 - y1 * y1 - z1 * z1, dot(kGrad3[gi1], x1, y1, z1));
    const double n2 = falloff(0.6 - x2 * x2 - y2 * y2 - z2 * z2, dot(kGrad3[gi2], x2, y2, z2));
    const double n3 = falloff(0.6 - x3 * x3 - y3 * y3 - z3 * z3, dot(kGrad3[gi3], x3, y3, z3));
    return 32.0 * (n0 + n1 + n2 + n3);
}

double noise(double x, double y, double z, double w) {
    const double s = (x + y + z + w) * kF4;
    const int i = cellOf(x + s);
    const int j = cellOf(y + s);
    const int k = cellOf(z + s);
    const int l = cellOf(w + s);
    const double t = static_cast<double>(wrapAdd(wrapAdd(wrapAdd(i, j), k), l)) * kG4;
    const double X0 = i - t;
    const double Y0 = j - t;
    const double Z0 = k - t;
    const double W0 = l - t;
    const double x0 = x - X0;
    const double y0 = y - Y0;
    const double z0 = z - Z0;
    const double w0 = w - W0;
    // Rank the four offsets by six pairwise comparisons; corner n of the
    // simplex steps along every axis whose rank is at least 4 - n.
    int rankx = 0, ranky = 0, rankz = 0, rankw = 0;
    if (x0 > y0) ++rankx; else ++ranky;
    if (x0 > z0) ++rankx; else ++rankz;
    if (x0 > w0) ++rankx; else ++rankw;
    if (y0 > z0) ++ranky; else ++rankz;
    if (y0 > w0) ++ranky; else ++rankw;
    if (z0 > w0) ++rankz; else ++rankw;
    const int i1 = rankx >= 3 ? 1 : 0, j1 = ranky >= 3 ? 1 : 0, k1 = rankz >= 3 ? 1 : 0, l1 = rankw >= 3 ? 1 : 0;
    const int i2 = rankx >= 2 ? 1 : 0, j2 = ranky >= 2 ? 1 : 0, k2 = rankz >= 2 ? 1 : 0, l2 = rankw >= 2 ? 1 : 0;
    const int i3 = rankx >= 1 ? 1 : 0, j3 = ranky >= 1 ? 1 : 0, k3 = rankz >= 1 ? 1 : 0, l3 = rankw >= 1 ? 1 : 0;
    const double x1 = x0 - i1 + kG4;
    const double y1 = y0 - j1 + kG4;
    const double z1 = z0 - k1 + kG4;
    const double w1 = w0 - l1 + kG4;
    const double x2 = x0 - i2 + 2.0 * kG4;
    const double y2 = y0 - j2 + 2.0 * kG4;
    const double z2 = z0 - k2 + 2.0 * kG4;
    const double w2 = w0 - l2 + 2.0 * kG4;
    const double x3 = x0 - i3 + 3.0 * kG4;
    const double y3 = y0 - j3 + 3.0 * kG4;
    const double z3 = z0 - k3 + 3.0 * kG4;
    const double w3 = w0 - l3 + 3.0 * kG4;
    const double x4 = x0 - 1.0 + 4.0 * kG4;
    const double y4 = y0 - 1.0 + 4.0 * kG4;
    const double z4 = z0 - 1.0 + 4.0 * kG4;
    const double w4 = w0 - 1.0 + 4.0 * kG4;
    const int ii = i & 255;
    const int jj = j & 255;
    const int kk = k & 255;
    const int ll = l & 255;
    const int gi0 = kPerm[ii + kPerm[jj + kPerm[kk + kPerm[ll]]]] % 32;
    const int gi1 = kPerm[ii + i1 + kPerm[jj + j1 + kPerm[kk + k1 + kPerm[ll + l1]]]] % 32;
    const int gi2 = kPerm[ii + i2 + kPerm[jj + j2 + kPerm[kk + k2 + kPerm[ll + l2]]]] % 32;
    const int gi3 = kPerm[ii + i3 + kPerm[jj + j3 + kPerm[kk + k3 + kPerm[ll + l3]]]] % 32;
    const int gi4 = kPerm[ii + 1 + kPerm[jj + 1 + kPerm[kk + 1 + kPerm[ll + 1]]]] % 32;
    const double n0 = falloff(0.6 - x0 * x0 - y0 * y0 - z0 * z0 - w0 * w0, dot(kGrad4[gi0], x0, y0, z0, w0));
    const double n1 = falloff(0.6 - x1 * x1 - y1 * y1 - z1 * z1 - w1 * w1, dot(kGrad4[gi1], x1, y1, z1, w1));
    const double n2 = falloff(0.6 - x2 * x2 - y2 * y2 - z2 * z2 - w2 * w2, dot(kGrad4[gi2], x2, y2, z2, w2));
    const double n3 = falloff(0.6 - x3 * x3 - y3 * y3 - z3 * z3 - w3 * w3, dot(kGrad4[gi3], x3, y3, z3, w3));
    const double n4 = falloff(0.6 - x4 * x4 - y4 * y4 - z4 * z4 - w4 * w4, dot(kGrad4[gi4], x4, y4, z4, w4));
    return 27.0 * (n0 + n1 + n2 + n3 + n4);
}

}  // namespace gritwell::Simplex
