#include "dialog/GeneratorRegistry.h"

#include <cstddef>
#include <iterator>

#include "dialog/panels/BrickQtWrapper.h"
#include "dialog/panels/CamouflageQtWrapper.h"
#include "dialog/panels/CheckerboardQtWrapper.h"
#include "dialog/panels/CheetahQtWrapper.h"
#include "dialog/panels/CorrugatedQtWrapper.h"
#include "dialog/panels/DentedQtWrapper.h"
#include "dialog/panels/ErodedQtWrapper.h"
#include "dialog/panels/FBMQtWrapper.h"
#include "dialog/panels/GradientQtWrapper.h"
#include "dialog/panels/GraniteQtWrapper.h"
#include "dialog/panels/GridQtWrapper.h"
#include "dialog/panels/HexTileQtWrapper.h"
#include "dialog/panels/HoundstoothQtWrapper.h"
#include "dialog/panels/NestedShapesQtWrapper.h"
#include "dialog/panels/PerlinQtWrapper.h"
#include "dialog/panels/PlaidQtWrapper.h"
#include "dialog/panels/PsychedelicQtWrapper.h"
#include "dialog/panels/ScalesQtWrapper.h"
#include "dialog/panels/SimpleMarbleQtWrapper.h"
#include "dialog/panels/SimplexQtWrapper.h"
#include "dialog/panels/SnakeskinQtWrapper.h"
#include "dialog/panels/SpeckledStoneQtWrapper.h"
#include "dialog/panels/SpheresQtWrapper.h"
#include "dialog/panels/SpiralQtWrapper.h"
#include "dialog/panels/StripesQtWrapper.h"
#include "dialog/panels/TurbulenceQtWrapper.h"
#include "dialog/panels/VoronoiQtWrapper.h"
#include "dialog/panels/VoronoiTileQtWrapper.h"
#include "dialog/panels/WeaveQtWrapper.h"
#include "dialog/panels/WoodQtWrapper.h"
#include "dialog/panels/ZigzagQtWrapper.h"

namespace gritwell::GeneratorRegistry {

namespace {

template <class T, class W, class U>
constexpr Registration entry() {
    return {T::kName, [](Ui::MainWindow* mainUi, ImageArea* imageArea) -> InfoBase* {
                return new Info<T, W, U>(mainUi, imageArea);
            }};
}

// One line per generator the dialog offers, in the order of its list and
// stack. "Constant", "Cell Noise" and "Penrose Rhombus" have none on purpose.
constexpr Registration kRegistrations[] = {
    entry<PerlinTexture3D, PerlinQtWrapper, Ui_PerlinWidget>(),
    entry<CheckerboardTexture3D, CheckerboardQtWrapper, Ui_CheckerboardWidget>(),
    entry<WoodTexture3D, WoodQtWrapper, Ui_WoodWidget>(),
    entry<SimpleMarbleTexture3D, SimpleMarbleQtWrapper, Ui_SimpleMarbleWidget>(),
    entry<StripesTexture3D, StripesQtWrapper, Ui_StripesWidget>(),
    entry<SpheresTexture3D, SpheresQtWrapper, Ui_SpheresWidget>(),
    entry<GraniteTexture3D, GraniteQtWrapper, Ui_GraniteWidget>(),
    entry<GradientTexture3D, GradientQtWrapper, Ui_GradientWidget>(),
    entry<SimplexTexture3D, SimplexQtWrapper, Ui_SimplexWidget>(),
    entry<VoronoiTexture3D, VoronoiQtWrapper, Ui_VoronoiWidget>(),
    entry<BrickTexture3D, BrickQtWrapper, Ui_BrickWidget>(),
    entry<GridTexture3D, GridQtWrapper, Ui_GridWidget>(),
    entry<TurbulenceTexture3D, TurbulenceQtWrapper, Ui_TurbulenceWidget>(),
    entry<FBMTexture3D, FBMQtWrapper, Ui_FBMWidget>(),
    entry<ErodedTexture3D, ErodedQtWrapper, Ui_ErodedWidget>(),
    entry<NestedShapesTexture3D, NestedShapesQtWrapper, Ui_NestedShapesWidget>(),
    entry<DentedTexture3D, DentedQtWrapper, Ui_DentedWidget>(),
    entry<SpeckledStoneTexture3D, SpeckledStoneQtWrapper, Ui_SpeckledStoneWidget>(),
    entry<HexTileTexture3D, HexTileQtWrapper, Ui_HexTileWidget>(),
    entry<SpiralTexture3D, SpiralQtWrapper, Ui_SpiralWidget>(),
    entry<CheetahTexture3D, CheetahQtWrapper, Ui_CheetahWidget>(),
    entry<VoronoiTileTexture3D, VoronoiTileQtWrapper, Ui_VoronoiTileWidget>(),
    entry<WeaveTexture3D, WeaveQtWrapper, Ui_WeaveWidget>(),
    entry<PlaidTexture3D, PlaidQtWrapper, Ui_PlaidWidget>(),
    entry<PsychedelicTexture3D, PsychedelicQtWrapper, Ui_PsychedelicWidget>(),
    entry<CamouflageTexture3D, CamouflageQtWrapper, Ui_CamouflageWidget>(),
    entry<ZigzagTexture3D, ZigzagQtWrapper, Ui_ZigzagWidget>(),
    entry<CorrugatedTexture3D, CorrugatedQtWrapper, Ui_CorrugatedWidget>(),
    entry<SnakeskinTexture3D, SnakeskinQtWrapper, Ui_SnakeskinWidget>(),
    entry<ScalesTexture3D, ScalesQtWrapper, Ui_ScalesWidget>(),
    entry<HoundstoothTexture3D, HoundstoothQtWrapper, Ui_HoundstoothWidget>(),
};

// A second line for a generator would build a second page and leak the
// first entry, whose key the second takes.
constexpr bool eachGeneratorOnce() {
    for (std::size_t i = 0; i < std::size(kRegistrations); ++i)
        for (std::size_t j = i + 1; j < std::size(kRegistrations); ++j)
            if (kRegistrations[i].name == kRegistrations[j].name) return false;
    return true;
}
static_assert(eachGeneratorOnce(), "each generator has one registration line");

}  // namespace

std::span<const Registration> registrations() { return kRegistrations; }

void createEntries(Ui::MainWindow* mainUi, ImageArea* imageArea, std::map<std::string, InfoBase*>& generators) {
    for (const Registration& r : kRegistrations) generators[std::string(r.name)] = r.create(mainUi, imageArea);
}

void destroyEntries(std::map<std::string, InfoBase*>& generators) {
    for (const Registration& r : kRegistrations) {
        const auto found = generators.find(std::string(r.name));
        if (found == generators.end()) continue;
        delete found->second;
        found->second = nullptr;
        generators.erase(found);
    }
}

}  // namespace gritwell::GeneratorRegistry
