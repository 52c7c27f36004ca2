#include "textures/TextureFactory.h"

#include <array>

#include "textures/CheckerboardTexture3D.h"
#include "textures/ConstantTexture3D.h"
#include "textures/SpheresTexture3D.h"

namespace gritwell::TextureFactory {

std::span<const GeneratorInfo* const> hostGenerators() {
    // The host's table order: names are compared in it, tools list in it.
    static const std::array kRows{
        &CheckerboardTexture3D::info(),
        &SpheresTexture3D::info(),
        &ConstantTexture3D::info(),
    };
    return kRows;
}

const GeneratorInfo* find(std::string_view name) {
    for (const GeneratorInfo* info : hostGenerators())
        if (info->name == name) return info;
    return nullptr;
}

Texture3D* create(std::string_view name) {
    const GeneratorInfo* info = find(name);
    return info != nullptr ? info->create() : nullptr;
}

}  // namespace gritwell::TextureFactory
