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

std::vector<float> paint(ParallelEvaluator& parallel, const Mesh& mesh, ProgressMeter& progress) {
    const std::size_t n = mesh.vertexCount();
    std::vector<float> values(n);
    progress.begin(n);
    progress.update(0);
    const auto batches = static_cast<int>((n + kBatch - 1) / kBatch);
    parallel.run(
        batches,
        [&](int batch, int, const BatchEvaluator& evaluate) {
            const std::size_t start = static_cast<std::size_t>(batch) * kBatch;
            const std::size_t count = std::min(kBatch, n - start);
            evaluate(&mesh.positions[3 * start], static_cast<int>(count), &values[start]);
        },
        [&](int batch, int) { progress.update(std::min(n, (static_cast<std::size_t>(batch) + 1) * kBatch)); });
    progress.finish();
    return values;
}

}  // namespace gritwell::MeshPainter
