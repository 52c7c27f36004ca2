#include "core/SliceGrid.h"

#include <cstddef>

namespace gritwell {

void sliceRow(int size, int row, float z, float extent, float* xyz) {
    const int n = size;
    // In double, then rounded: pictures drawn before keep their samples.
    const float y = static_cast<float>((n - 1 - row + 0.5) * extent / n);
    for (int col = 0; col < n; ++col) {
        *xyz++ = static_cast<float>((col + 0.5) * extent / n);
        *xyz++ = y;
        *xyz++ = z;
    }
}

std::vector<float> sliceGrid(int size, float z, float extent) {
    std::vector<float> points(3 * static_cast<std::size_t>(size) * size);
    for (int row = 0; row < size; ++row)
        sliceRow(size, row, z, extent, points.data() + 3 * static_cast<std::size_t>(size) * row);
    return points;
}

}  // namespace gritwell
