#pragma once
// `gritwell info`: the generators, and every field of one, with its type,
// default, the range the dialog allows, its meaning (the dialog's tool tip,
// FieldGuide) and an enumeration's values with their labels (EnumLabels).

#include <string>

#include <nlohmann/json.hpp>

#include "core/GeneratorInfo.h"

namespace gritwell::GeneratorGuide {

// Every generator with its one-line summary, the host's first.
std::string listText();
nlohmann::ordered_json listJson();

// One generator, field by field.
std::string generatorText(const GeneratorInfo& generator);
nlohmann::ordered_json generatorJson(const GeneratorInfo& generator);

}  // namespace gritwell::GeneratorGuide
