#include "noise/ARMan.h"

#include <algorithm>
#include <cmath>

#include "core/FloatToInt.h"
#include "noise/CellNoise.h"

namespace gritwell::ARMan {

namespace {

constexpr float kFarAway = 3.4028235e38f;  // the largest float

// The centre of v's cell: cell index plus one half, summed in double.
float cellCentre(float v) { return static_cast<float>(static_cast<double>(cellIndex(v)) + 0.5); }

// A feature coordinate: the cell centre t moved by jitter * (r - 0.5), in double.
float place(float t, float jitter, float r) {
    return static_cast<float>(static_cast<double>(t) +
                              static_cast<double>(jitter) * (static_cast<double>(r) - 0.5));
}

// The nearest two candidates so far, as squared distances. Strict
// comparisons: the earlier of equal candidates stays ahead.
template <int N>
struct TwoNearest {
    float d1 = kFarAway;
    float d2 = kFarAway;
    float p1[N] = {};
    float p2[N] = {};

    void offer(float d, const float* q) {
        if (d < d1) {
            d2 = d1;
            std::copy_n(p1, N, p2);
            d1 = d;
            std::copy_n(q, N, p1);
        } else if (d < d2) {
            d2 = d;
            std::copy_n(q, N, p2);
        }
    }

    void write(float& f1, float* pos1, float& f2, float* pos2) const {
        f1 = static_cast<float>(std::sqrt(static_cast<double>(d1)));
        f2 = static_cast<float>(std::sqrt(static_cast<double>(d2)));
        std::copy_n(p1, N, pos1);
        std::copy_n(p2, N, pos2);
    }
};

}  // namespace

void voronoi_f1f2_2d(const float* P, float jitter, float& f1, float* pos1, float& f2, float* pos2) {
    const float cx = cellCentre(P[0]);
    const float cy = cellCentre(P[1]);
    TwoNearest<2> best;
    for (int i = -1; i <= 1; ++i) {
        const float tx = cx + static_cast<float>(i);
        for (int j = -1; j <= 1; ++j) {
            const float ty = cy + static_cast<float>(j);
            const float rx = CellNoise::cellNoise(tx, ty, 0.0f);
            const float ry = CellNoise::cellNoise(tx + 23.0f, ty - 87.0f, 0.0f);
            const float q[2] = {place(tx, jitter, rx), place(ty, jitter, ry)};
            const float dx = P[0] - q[0];
            const float dy = P[1] - q[1];
            best.offer(dx * dx + dy * dy, q);
        }
    }
    best.write(f1, pos1, f2, pos2);
}

void voronoi_f1f2_3d(const float* P, float jitter, float& f1, float* pos1, float& f2, float* pos2) {
    const float cx = cellCentre(P[0]);
    const float cy = cellCentre(P[1]);
    const float cz = cellCentre(P[2]);
    TwoNearest<3> best;
    for (int i = -1; i <= 1; ++i) {
        const float tx = cx + static_cast<float>(i);
        for (int j = -1; j <= 1; ++j) {
            const float ty = cy + static_cast<float>(j);
            for (int k = -1; k <= 1; ++k) {
                const float tz = cz + static_cast<float>(k);
                const float rx = CellNoise::cellNoise(tx, ty, tz);
                const float ry = CellNoise::cellNoise(ty, tz, tx);
                // z reuses the y value (a third value, cellNoise(tz, tx, ty),
                // never reached the feature): every feature sits equally far
                // off its centre in y and z, and stored looks depend on it.
                const float q[3] = {place(tx, jitter, rx), place(ty, jitter, ry),
                                    place(tz, jitter, ry)};
                const float dx = P[0] - q[0];
                const float dy = P[1] - q[1];
                const float dz = P[2] - q[2];
                best.offer(dx * dx + dy * dy + dz * dz, q);
            }
        }
    }
    best.write(f1, pos1, f2, pos2);
}

}  // namespace gritwell::ARMan
