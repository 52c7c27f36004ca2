#pragma once
// TextureFactory: generator names to new generators.

#include <span>
#include <string_view>

#include "core/GeneratorInfo.h"
#include "core/Texture3D.h"

namespace gritwell::TextureFactory {

// The generators a host session can open, in the order names are compared.
std::span<const GeneratorInfo* const> hostGenerators();

// The generator of an exact (case-sensitive) name; nullptr when none matches.
const GeneratorInfo* find(std::string_view name);

// A new generator at its defaults, or nullptr for an unknown name. Free it
// with Texture3D::release.
Texture3D* create(std::string_view name);

}  // namespace gritwell::TextureFactory
