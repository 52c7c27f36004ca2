#pragma once
// Nearest: the word a mistyped one was most likely meant to be, for "did you
// mean" hints on commands, options, generator names and fields.

#include <span>
#include <string>
#include <string_view>

namespace gritwell {

// The candidate closest to `word` by edit distance (a swap of neighbours
// counts as one edit, case is ignored), when it is close enough to be a
// slip of the fingers: at most a third of the word's letters, and at least
// one. Empty when none is.
std::string nearest(std::string_view word, std::span<const std::string_view> candidates);

// "; did you mean 'list'?" for the nearest candidate, or nothing.
std::string didYouMean(std::string_view word, std::span<const std::string_view> candidates);

}  // namespace gritwell
