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
constexpr int kColumns = 6;
constexpr std::uint8_t kBackground = 40;
constexpr std::uint8_t kInk = 235;
}  // namespace

GreyImage renderGallery(PluginLibrary& plugin) {
    const auto generators = TextureFactory::hostGenerators();
    const int count = static_cast<int>(generators.size());
    const int columns = std::min(kColumns, count);
    const int rows = (count + columns - 1) / columns;
    GreyImage sheet(kGap + columns * (kTile + kGap), kGap + rows * (kTile + kLabel + kGap), kBackground);
    const LabelFont font(16.0f);

    SliceView view;
    view.size = kTile;
    view.z = 0.3f;  // off the cell faces, so solid patterns show their insides
    for (int i = 0; i < count; ++i) {
        const GeneratorInfo& generator = *generators[i];
        const GreyImage tile = renderSlice(plugin, defaultRecord(generator), view);
        const int left = kGap + (i % columns) * (kTile + kGap);
        const int top = kGap + (i / columns) * (kTile + kLabel + kGap);
        for (int y = 0; y < kTile; ++y)
            std::copy_n(&tile.pixels[std::size_t(y) * kTile], kTile, &sheet.at(left, top + y));

        const std::string label(generator.name);
        const int textLeft = left + std::max(0, (kTile - font.textWidth(label)) / 2);
        font.draw(sheet, textLeft, top + kTile + 5, label, kInk);
    }
    return sheet;
}

}  // namespace gritwell
