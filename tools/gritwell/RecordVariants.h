#pragma once
// RecordVariants: records that take a generator's costlier paths, derived
// from its field table alone, so tests and benchmarks cover a new generator
// without code of their own for it.

#include <string_view>
#include <vector>

#include "core/GeneratorInfo.h"

namespace gritwell::RecordVariants {

constexpr int kCount = 4;

// The record bytes (256, the host's block size) of variant v in [0, kCount):
//   0  the defaults
//   1  every switch on (randomised colours, rounded corners, shading...)
//   2  switches on, 8 octaves, every other integer one past its default
//      (the next style, pattern or shape; one more level or shade)
//   3  switches on, 12 octaves, every other integer two past its default,
//      every real field a quarter larger (sizes, frequencies, colours)
std::vector<char> record(const GeneratorInfo& generator, int v);

// A short label for variant v: "defaults", "switches", "detail", "detail+".
std::string_view label(int v);

}  // namespace gritwell::RecordVariants
