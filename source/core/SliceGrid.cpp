#include "core/SliceGrid.h"

#include <cstddef>

namespace gritwell {

std::vector<float> sliceGrid(int size, float z, float extent) {
    const int n = size;
    std::vector<float> points(3 * static_cast<std::size_t>(n) * n);
    float* p = points.data();
    for (int row = 0; row < n; ++row) {
        // In double, then rounded: pictures drawn before keep their samples.
        const float y = static_cast<float>((n - 1 - row + 0.5) * extent / n);
        for (int col = 0; col < n; ++col) {
            *p++ = static_cast<float>((col + 0.5) * extent / n);
            *p++ = y;
            *p++ = z;
        }
    }
    return points;
}

}  // namespace gritwell
