#include "SliceRenderer.h"

#include <algorithm>
#include "core/SliceGrid.h"

namespace gritwell {

std::vector<float> sliceValues(const BatchEvaluator& evaluate, const SliceView& view) {
    const int n = view.size;
    const std::vector<float> points = sliceGrid(n, view.z, view.extent);
    std::vector<float> values(static_cast<std::size_t>(n) * n);
    evaluate(points.data(), n * n, values.data());
    return values;
}

namespace {

// Where a tileable slice's coordinate `at` (0..extent) draws from besides
// itself: the weight of the other sample and how far away it lies.
struct Fade {
    double weight = 0.0;
    double shift = 0.0;
};

Fade fadeAt(double at, double extent, double pixel) {
    const double margin = kTileMargin * extent, seam = kTileSeam * extent;
    // Both edge pixels read the same place, seam - pixel/2: the step across
    // the seam is then only what their own small weights leave.
    if (at < margin) return {1.0 - at / margin, seam - pixel};
    if (at > extent - margin) return {1.0 - (extent - at) / margin, seam - extent};
    return {};
}

}  // namespace

void sliceRows(const BatchEvaluator& evaluate, const SliceView& view, int first, int count, float* out) {
    const int n = view.size;
    const double e = view.extent;
    std::vector<float> points;
    std::vector<float> values;
    std::vector<Fade> columns(static_cast<std::size_t>(n));
    if (view.tileable)
        for (int col = 0; col < n; ++col) columns[col] = fadeAt((col + 0.5) * e / n, e, e / n);
    for (int row = first; row < first + count; ++row) {
        const double yAt = (n - 1 - row + 0.5) * e / n;
        const auto y = static_cast<float>(yAt);
        const Fade fy = view.tileable ? fadeAt(yAt, e, e / n) : Fade{};
        points.resize(3 * static_cast<std::size_t>(n));
        sliceRow(n, row, view.z, view.extent, points.data());
        if (view.tileable) {
            // The samples the margins fade into, after the row's own points,
            // in the order they are summed below.
            const auto yFar = static_cast<float>(yAt + fy.shift);
            for (int col = 0; col < n; ++col) {
                const double xAt = (col + 0.5) * e / n;
                const Fade& fx = columns[col];
                const auto x = static_cast<float>(xAt), xFar = static_cast<float>(xAt + fx.shift);
                if (fx.weight > 0.0) points.insert(points.end(), {xFar, y, view.z});
                if (fy.weight > 0.0) points.insert(points.end(), {x, yFar, view.z});
                if (fx.weight > 0.0 && fy.weight > 0.0) points.insert(points.end(), {xFar, yFar, view.z});
            }
        }
        const int total = static_cast<int>(points.size() / 3);
        values.resize(static_cast<std::size_t>(total));
        evaluate(points.data(), total, values.data());
        float* line = out + static_cast<std::size_t>(row - first) * n;
        if (!view.tileable) {
            std::copy(values.begin(), values.begin() + n, line);
            continue;
        }
        std::size_t extra = static_cast<std::size_t>(n);
        for (int col = 0; col < n; ++col) {
            const double wx = columns[col].weight, wy = fy.weight;
            double v = values[col];
            if (wx > 0.0 || wy > 0.0) {
                const double far = wx > 0.0 ? values[extra++] : 0.0;
                const double up = wy > 0.0 ? values[extra++] : 0.0;
                const double both = wx > 0.0 && wy > 0.0 ? values[extra++] : 0.0;
                v = (1.0 - wy) * ((1.0 - wx) * v + (wx > 0.0 ? wx * far : 0.0));
                if (wy > 0.0) v += wy * ((1.0 - wx) * up + (wx > 0.0 ? wx * both : 0.0));
            }
            line[col] = static_cast<float>(v);
        }
    }
}

GreyImage renderSlice(const BatchEvaluator& evaluate, const SliceView& view) {
    const std::vector<float> values = sliceValues(evaluate, view);
    GreyImage image(view.size, view.size);
    for (std::size_t i = 0; i < values.size(); ++i) image.pixels[i] = toGrey(values[i]);
    return image;
}

GreyImage renderSlice(PluginLibrary& plugin, const std::vector<unsigned char>& record,
                      const SliceView& view) {
    PluginSession session(plugin, record, view.planar ? 2 | 4 : 2);
    return renderSlice([&session](const float* points, int n, float* out) { session.evaluate(points, n, out); },
                       view);
}

}  // namespace gritwell
