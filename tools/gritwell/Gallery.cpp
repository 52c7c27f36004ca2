#include "Gallery.h"

#include <algorithm>
#include <string>

#include "LabelFont.h"
#include "RecordFile.h"
#include "SliceRenderer.h"
#include "textures/TextureFactory.h"

namespace gritwell {

namespace {

constexpr int kTile = 192;
constexpr int kLabel = 28;
constexpr int kGap = 8;
constexpr int kHeading = 30;
constexpr int kColumns = 6;
constexpr std::uint8_t kBackground = 40;
constexpr std::uint8_t kInk = 235;
constexpr std::uint8_t kDimInk = 160;

int rowsFor(std::size_t count) { return static_cast<int>((count + kColumns - 1) / kColumns); }

void placeTile(GreyImage& sheet, const LabelFont& font, const GreyImage& tile, int index, int top0,
               const std::string& label) {
    const int left = kGap + (index % kColumns) * (kTile + kGap);
    const int top = top0 + (index / kColumns) * (kTile + kLabel + kGap);
    for (int y = 0; y < kTile; ++y)
        std::copy_n(&tile.pixels[std::size_t(y) * kTile], kTile, &sheet.at(left, top + y));
    const int textLeft = left + std::max(0, (kTile - font.textWidth(label)) / 2);
    font.draw(sheet, textLeft, top + kTile + 5, label, kInk);
}

}  // namespace

GreyImage renderGallery(PluginLibrary& plugin) {
    const auto host = TextureFactory::hostGenerators();
    const auto libraryOnly = TextureFactory::libraryOnlyGenerators();
    const int hostRows = rowsFor(host.size());
    const int libraryRows = rowsFor(libraryOnly.size());
    const int rowHeight = kTile + kLabel + kGap;
    GreyImage sheet(kGap + kColumns * (kTile + kGap),
                    kGap + hostRows * rowHeight + (libraryRows > 0 ? kHeading + libraryRows * rowHeight : 0),
                    kBackground);
    const LabelFont font(16.0f);

    SliceView view;
    view.size = kTile;
    view.z = 0.3f;  // off the cell faces, so solid patterns show their insides
    for (std::size_t i = 0; i < host.size(); ++i)
        placeTile(sheet, font, renderSlice(plugin, defaultRecord(*host[i]), view), static_cast<int>(i), kGap,
                  std::string(host[i]->name));

    if (libraryRows == 0) return sheet;
    const int headingTop = kGap + hostRows * rowHeight;
    font.draw(sheet, kGap, headingTop + 4, "In the library, not offered by the host:", kDimInk);
    for (std::size_t i = 0; i < libraryOnly.size(); ++i) {
        TexturePtr texture(libraryOnly[i]->create());
        const BatchEvaluator evaluate = [&texture](const float* points, int n, float* out) {
            (*texture)(points, n, out);
        };
        placeTile(sheet, font, renderSlice(evaluate, view), static_cast<int>(i), headingTop + kHeading,
                  std::string(libraryOnly[i]->name));
    }
    return sheet;
}

}  // namespace gritwell
