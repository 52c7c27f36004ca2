#include "dialog/HostLink.h"

#include <cstring>

namespace gritwell::HostLink {

namespace {

// The callback's first words: the bits of the float 4.0, then 8, 0, 0. What
// the host reads into them is its own affair; they are passed as it expects.
constexpr float kCallbackTag = 4.0f;
constexpr std::uint32_t kCallbackSecondWord = 8;

Callback current = nullptr;

}  // namespace

void setCallback(Callback callback) { current = callback; }

Callback callback() { return current; }

void send(char* record, char* transforms) {
    if (current == nullptr) return;
    std::uint32_t tag;
    std::memcpy(&tag, &kCallbackTag, sizeof tag);
    current(tag, kCallbackSecondWord, 0, 0, record, transforms);
}

}  // namespace gritwell::HostLink
