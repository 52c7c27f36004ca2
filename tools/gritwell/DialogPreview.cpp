#include "DialogPreview.h"

#include "Colormap.h"
#include "HostTransform.h"
#include "MeshPainter.h"
#include "ProgressMeter.h"
#include "SliceRenderer.h"

namespace gritwell {

DialogPreview::DialogPreview(PluginLibrary& plugin, Mesh mesh, int size)
    : plugin_(plugin), mesh_(std::move(mesh)), size_(size), raster_(mesh_, MeshPreview::View{.size = size}) {}

PreviewPictures DialogPreview::render(const char* record, const TransformData& transforms) const {
    const HostTransform transform(transforms);
    const auto* bytes = reinterpret_cast<const unsigned char*>(record);
    PluginSession session(plugin_, std::vector<unsigned char>(bytes, bytes + bytes[0]), transforms);

    SliceView view;
    view.size = size_;
    const std::vector<float> slice = sliceValues(transformedEvaluator(session, transform), view);

    ProgressMeter silent = ProgressMeter::neverShown();
    const std::vector<float> values = MeshPainter::paint(
        [&session](const float* points, int n, float* out) { session.evaluate(points, n, out); }, mesh_, transform,
        silent);
    return {Colormap::picture(slice, size_, size_, Colormap::Map::Grey, 8), raster_.colour(values)};
}

}  // namespace gritwell
