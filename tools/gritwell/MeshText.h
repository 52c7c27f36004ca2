#pragma once
// MeshText: the number reading the text mesh formats share. Numbers are read
// with std::from_chars, correctly rounded to the type asked for, so a
// coordinate written with enough digits comes back with the very bits it was
// written from; a leading '+' is taken as some exporters write it.

#include <charconv>
#include <cstdint>
#include <string_view>
#include <system_error>

namespace gritwell::MeshText {

constexpr bool isSpace(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\v' || c == '\f'; }

// The whitespace-separated word at `at` and after it, `at` moved past it;
// empty at the end of `text`.
inline std::string_view nextWord(std::string_view text, std::size_t& at) {
    while (at < text.size() && isSpace(text[at])) ++at;
    const std::size_t start = at;
    while (at < text.size() && !isSpace(text[at])) ++at;
    return text.substr(start, at - start);
}

// True when the whole of `word` is one number of type T (a float, double or
// integer), stored in `value`.
template <typename T>
bool parseWhole(std::string_view word, T& value) {
    if (word.size() > 1 && word[0] == '+' && word[1] != '-') word.remove_prefix(1);
    const char* end = word.data() + word.size();
    const auto [stop, ec] = std::from_chars(word.data(), end, value);
    return ec == std::errc() && stop == end;
}

}  // namespace gritwell::MeshText
