#include "textures/TextureFactory.h"

#include <algorithm>
#include <array>
#include <vector>

#include "textures/BrickTexture3D.h"
#include "textures/CamouflageTexture3D.h"
#include "textures/CellTexture3D.h"
#include "textures/CheckerboardTexture3D.h"
#include "textures/CheetahTexture3D.h"
#include "textures/ConstantTexture3D.h"
#include "textures/CorrugatedTexture3D.h"
#include "textures/DentedTexture3D.h"
#include "textures/ErodedTexture3D.h"
#include "textures/FBMTexture3D.h"
#include "textures/GradientTexture3D.h"
#include "textures/GraniteTexture3D.h"
#include "textures/GridTexture3D.h"
#include "textures/HexTileTexture3D.h"
#include "textures/HoundstoothTexture3D.h"
#include "textures/NestedShapesTexture3D.h"
#include "textures/PenroseRhombusTexture3D.h"
#include "textures/PerlinTexture3D.h"
#include "textures/PlaidTexture3D.h"
#include "textures/PsychedelicTexture3D.h"
#include "textures/ScalesTexture3D.h"
#include "textures/SimpleMarbleTexture3D.h"
#include "textures/SimplexTexture3D.h"
#include "textures/SnakeskinTexture3D.h"
#include "textures/SpeckledStoneTexture3D.h"
#include "textures/SpheresTexture3D.h"
#include "textures/SpiralTexture3D.h"
#include "textures/StripesTexture3D.h"
#include "textures/TurbulenceTexture3D.h"
#include "textures/VoronoiTexture3D.h"
#include "textures/VoronoiTileTexture3D.h"
#include "textures/WeaveTexture3D.h"
#include "textures/WoodTexture3D.h"
#include "textures/ZigzagTexture3D.h"

namespace gritwell::TextureFactory {

std::span<const GeneratorInfo* const> hostGenerators() {
    // The host's table order: names are compared in it, tools list in it.
    static const std::array kRows{
        &CheckerboardTexture3D::info(),
        &WoodTexture3D::info(),
        &PerlinTexture3D::info(),
        &SimpleMarbleTexture3D::info(),
        &StripesTexture3D::info(),
        &SpheresTexture3D::info(),
        &GraniteTexture3D::info(),
        &GradientTexture3D::info(),
        &ConstantTexture3D::info(),
        &SimplexTexture3D::info(),
        &VoronoiTexture3D::info(),
        &BrickTexture3D::info(),
        &GridTexture3D::info(),
        &TurbulenceTexture3D::info(),
        &FBMTexture3D::info(),
        &ErodedTexture3D::info(),
        &NestedShapesTexture3D::info(),
        &DentedTexture3D::info(),
        &SpeckledStoneTexture3D::info(),
        &HexTileTexture3D::info(),
        &SpiralTexture3D::info(),
        &CheetahTexture3D::info(),
        &VoronoiTileTexture3D::info(),
        &WeaveTexture3D::info(),
        &PlaidTexture3D::info(),
        &PsychedelicTexture3D::info(),
        &CamouflageTexture3D::info(),
        &ZigzagTexture3D::info(),
        &CorrugatedTexture3D::info(),
        &SnakeskinTexture3D::info(),
        &ScalesTexture3D::info(),
        &HoundstoothTexture3D::info(),
    };
    return kRows;
}

std::span<const GeneratorInfo* const> libraryOnlyGenerators() {
    static const std::array kRows{
        &CellTexture3D::info(),
        &PenroseRhombusTexture3D::info(),
    };
    return kRows;
}

std::span<const GeneratorInfo* const> allGenerators() {
    static const std::vector<const GeneratorInfo*> kAll = [] {
        std::vector<const GeneratorInfo*> all(hostGenerators().begin(), hostGenerators().end());
        all.insert(all.end(), libraryOnlyGenerators().begin(), libraryOnlyGenerators().end());
        return all;
    }();
    return kAll;
}

Texture3D* create(std::string_view name) {
    for (const GeneratorInfo* info : hostGenerators())
        if (info->name == name) return info->create();
    return nullptr;
}

const GeneratorInfo* find(std::string_view name) {
    for (const GeneratorInfo* info : allGenerators())
        if (info->name == name) return info;
    return nullptr;
}

bool isHostGenerator(const GeneratorInfo& generator) {
    return std::ranges::find(hostGenerators(), &generator) != hostGenerators().end();
}

}  // namespace gritwell::TextureFactory
