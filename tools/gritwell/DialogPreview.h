#pragma once
// DialogPreview: what `gritwell dialog` shows beside the dialog for one host
// update. The update's record and transforms are evaluated through one
// session of the plug-in, as the host evaluates its model: the slice drawn
// as `render` draws it and the mesh as `paint --preview` pictures it, both
// at the same size.

#include <vector>

#include "Mesh.h"
#include "MeshPreview.h"
#include "PluginLibrary.h"
#include "PngWriter.h"
#include "core/TransformData.h"

namespace gritwell {

struct PreviewPictures {
    Picture slice;  // 8-bit grey: render's default slice, z = 0.3 over [0, 4] x [0, 4]
    Picture mesh;   // 8-bit RGB
};

class DialogPreview {
public:
    static constexpr int kDefaultSize = 256;

    // `size` pixels on a side for both pictures.
    DialogPreview(PluginLibrary& plugin, Mesh mesh, int size = kDefaultSize);

    // `record` is the host's 256-byte buffer, read as far as its size byte
    // says. Transforms HostTransform refuses are a CliError.
    PreviewPictures render(const char* record, const TransformData& transforms) const;

    int size() const { return size_; }

private:
    PluginLibrary& plugin_;
    Mesh mesh_;
    int size_;
    MeshPreview::Raster raster_;  // the mesh's picture is the same for every update but its colours
};

}  // namespace gritwell
