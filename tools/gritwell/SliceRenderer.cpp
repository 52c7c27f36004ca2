#include "SliceRenderer.h"

#include "core/SliceGrid.h"

namespace gritwell {

std::vector<float> sliceValues(const BatchEvaluator& evaluate, const SliceView& view) {
    const int n = view.size;
    const std::vector<float> points = sliceGrid(n, view.z, view.extent);
    std::vector<float> values(static_cast<std::size_t>(n) * n);
    evaluate(points.data(), n * n, values.data());
    return values;
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
