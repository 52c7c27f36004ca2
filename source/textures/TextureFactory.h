#pragma once
// TextureFactory: generator names to new generators.

#include <span>
#include <string_view>

#include "core/GeneratorInfo.h"
#include "core/Texture3D.h"

namespace gritwell::TextureFactory {

// The generators a host session can open, in the order names are compared.
std::span<const GeneratorInfo* const> hostGenerators();

// Generators the library has but host sessions never open; tools reach
// them through the library directly.
std::span<const GeneratorInfo* const> libraryOnlyGenerators();

// Every generator: the host's, then the library-only ones.
std::span<const GeneratorInfo* const> allGenerators();

// A new generator for an exact (case-sensitive) name among hostGenerators(),
// at its defaults; nullptr when none matches. Free it with Texture3D::release.
Texture3D* create(std::string_view name);

// The generator of an exact name, host or library-only; nullptr if none.
const GeneratorInfo* find(std::string_view name);

// Whether a host session opens this generator.
bool isHostGenerator(const GeneratorInfo& generator);

}  // namespace gritwell::TextureFactory
