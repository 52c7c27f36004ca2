#pragma once
// The gallery: every generator the host can open, at its defaults, as a
// labelled tile on one sheet, then a row of the generators the host never
// opens, rendered through the library and labelled as such.

#include <vector>

#include "PluginLibrary.h"
#include "PngWriter.h"

namespace gritwell {

// Where the tiles lie on the sheet: the host's generators in their order,
// then the library's; each kTile pixels on a side, labelled below.
struct GalleryLayout {
    static constexpr int kTile = 192;
    struct Corner {
        int left, top;
    };
    int width = 0, height = 0;
    std::vector<Corner> tiles;
};
GalleryLayout galleryLayout();

GreyImage renderGallery(PluginLibrary& plugin);

}  // namespace gritwell
