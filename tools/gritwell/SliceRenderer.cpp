#include "SliceRenderer.h"

namespace gritwell {

std::vector<float> sliceValues(const BatchEvaluator& evaluate, const SliceView& view) {
    const int n = view.size;
    std::vector<float> points(3 * static_cast<std::size_t>(n) * n);
    float* p = points.data();
    for (int row = 0; row < n; ++row) {
        const float y = static_cast<float>((n - 1 - row + 0.5) * view.extent / n);
        for (int col = 0; col < n; ++col) {
            *p++ = static_cast<float>((col + 0.5) * view.extent / n);
            *p++ = y;
            *p++ = view.z;
        }
    }
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
