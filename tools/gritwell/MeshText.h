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

// The number of type T (a float, double or integer) at `p`, after any
// whitespace, `p` moved past it; false when there is none, or when it runs
// into anything but whitespace, the end or `stop`.
template <typename T>
bool parseAt(const char*& p, const char* end, T& value, char stop = ' ') {
    while (p < end && isSpace(*p)) ++p;
    const char* from = p;
    if (end - from > 1 && *from == '+' && from[1] != '-') ++from;
    const auto [after, ec] = std::from_chars(from, end, value);
    if (ec != std::errc() || (after < end && !isSpace(*after) && *after != stop)) return false;
    p = after;
    return true;
}

// True when the whole of `word` is one number of type T, stored in `value`.
template <typename T>
bool parseWhole(std::string_view word, T& value) {
    const char* p = word.data();
    return parseAt(p, p + word.size(), value) && p == word.data() + word.size();
}

}  // namespace gritwell::MeshText
