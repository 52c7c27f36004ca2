#include "MeshPainter.h"

#include <algorithm>

namespace gritwell::MeshPainter {

std::vector<float> paint(const BatchEvaluator& evaluate, const Mesh& mesh, const HostTransform& transform,
                         ProgressMeter& progress) {
    const std::size_t n = mesh.vertexCount();
    std::vector<float> values(n);
    std::vector<float> points(3 * std::min(n, kBatch));
    progress.begin(n);
    progress.update(0);
    for (std::size_t start = 0; start < n; start += kBatch) {
        const std::size_t count = std::min(kBatch, n - start);
        transform.apply(&mesh.positions[3 * start], points.data(), count);
        evaluate(points.data(), static_cast<int>(count), &values[start]);
        progress.update(start + count);
    }
    progress.finish();
    return values;
}

}  // namespace gritwell::MeshPainter
