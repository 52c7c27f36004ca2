#pragma once
// BakedPreview: a picture of a mesh wearing a map baked on its UV layout, as
// an engine would show it: paint's preview rasteriser (MeshPreview) finds
// each sample's face and the point on it; the texture coordinates there,
// interpolated from the face's corners, read the map bilinearly, wrapping at
// its edges; the value is coloured by the view's map and lit.

#include <vector>

#include "MeshPreview.h"
#include "UvMesh.h"

namespace gritwell::BakedPreview {

// `map` holds size x size values, row 0 at v = 1.
Picture render(const UvMesh& mesh, const std::vector<float>& map, int size, const MeshPreview::View& view);

}  // namespace gritwell::BakedPreview
