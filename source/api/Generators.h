#pragma once
// The library's descriptions of the generators, from their GeneratorInfo.

#include <gritwell/gritwell.h>

#include "core/GeneratorInfo.h"

namespace gritwell {

GeneratorDesc describeGenerator(const GeneratorInfo& info);

// "a, b, c": the field names of a generator, for messages.
std::string fieldNameList(const GeneratorInfo& info);

}  // namespace gritwell
