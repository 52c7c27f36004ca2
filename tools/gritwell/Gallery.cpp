#include "Gallery.h"

#include <algorithm>
#include <string>

#include "LabelFont.h"
#include "RecordFile.h"
#include "SliceRenderer.h"
#include "textures/TextureFactory.h"

namespace gritwell {

namespace {

constexpr int kTile = GalleryLayout::kTile;
constexpr int kLabel = 28;
constexpr int kGap = 8;
constexpr int kHeading = 30;
constexpr int kColumns = 6;
constexpr int kRowHeight = kTile + kLabel + kGap;
constexpr std::uint8_t kBackground = 40;
constexpr std::uint8_t kInk = 235;
constexpr std::uint8_t kDimInk = 160;

int rowsFor(std::size_t count) { return static_cast<int>((count + kColumns - 1) / kColumns); }

// The top of the library's heading; the sheet ends there when it has none.
int headingTop() { return kGap + rowsFor(TextureFactory::hostGenerators().size()) * kRowHeight; }

void placeTile(GreyImage& sheet, const LabelFont& font, const GreyImage& tile, GalleryLayout::Corner at,
               const std::string& label) {
    for (int y = 0; y < kTile; ++y)
        std::copy_n(&tile.pixels[std::size_t(y) * kTile], kTile, &sheet.at(at.left, at.top + y));
    const int textLeft = at.left + std::max(0, (kTile - font.textWidth(label)) / 2);
    font.draw(sheet, textLeft, at.top + kTile + 5, label, kInk);
}

}  // namespace

GalleryLayout galleryLayout() {
    const std::size_t host = TextureFactory::hostGenerators().size();
    const std::size_t libraryOnly = TextureFactory::libraryOnlyGenerators().size();
    GalleryLayout layout;
    layout.width = kGap + kColumns * (kTile + kGap);
    layout.height = headingTop() + (libraryOnly > 0 ? kHeading + rowsFor(libraryOnly) * kRowHeight : 0);
    auto place = [&layout](std::size_t count, int top0) {
        for (std::size_t i = 0; i < count; ++i)
            layout.tiles.push_back({kGap + static_cast<int>(i % kColumns) * (kTile + kGap),
                                    top0 + static_cast<int>(i / kColumns) * kRowHeight});
    };
    place(host, kGap);
    place(libraryOnly, headingTop() + kHeading);
    return layout;
}

GreyImage renderGallery(PluginLibrary& plugin) {
    const auto host = TextureFactory::hostGenerators();
    const auto libraryOnly = TextureFactory::libraryOnlyGenerators();
    const GalleryLayout layout = galleryLayout();
    GreyImage sheet(layout.width, layout.height, kBackground);
    const LabelFont font(16.0f);

    SliceView view;  // render's default slice
    view.size = kTile;
    for (std::size_t i = 0; i < host.size(); ++i)
        placeTile(sheet, font, renderSlice(plugin, defaultRecord(*host[i]), view), layout.tiles[i],
                  std::string(host[i]->name));

    if (libraryOnly.empty()) return sheet;
    font.draw(sheet, kGap, headingTop() + 4, "In the library, not offered by the host:", kDimInk);
    for (std::size_t i = 0; i < libraryOnly.size(); ++i) {
        TexturePtr texture(libraryOnly[i]->create());
        const BatchEvaluator evaluate = [&texture](const float* points, int n, float* out) {
            (*texture)(points, n, out);
        };
        placeTile(sheet, font, renderSlice(evaluate, view), layout.tiles[host.size() + i],
                  std::string(libraryOnly[i]->name));
    }
    return sheet;
}

}  // namespace gritwell
