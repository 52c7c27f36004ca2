#include "dialog/HostLink.h"

#include <cstring>
#include <utility>

namespace gritwell::HostLink {

namespace {

// The callback's first words: the bits of the float 4.0, then 8, 0, 0. What
// the host reads into them is its own affair; they are passed as it expects.
constexpr float kCallbackTag = 4.0f;
constexpr std::uint32_t kCallbackSecondWord = 8;

Callback current = nullptr;
const void* watcherOwner = nullptr;
Watcher watcher;
int holds = 0;

}  // namespace

void setCallback(Callback callback) { current = callback; }

Callback callback() { return current; }

void setWatcher(const void* owner, Watcher w) {
    watcherOwner = owner;
    watcher = std::move(w);
}

void clearWatcher(const void* owner) {
    if (owner != watcherOwner) return;
    watcherOwner = nullptr;
    watcher = nullptr;
}

void send(char* record, char* transforms) {
    if (holds > 0) return;
    if (watcher) watcher(record, transforms);
    if (current == nullptr) return;
    std::uint32_t tag;
    std::memcpy(&tag, &kCallbackTag, sizeof tag);
    current(tag, kCallbackSecondWord, 0, 0, record, transforms);
}

Hold::Hold() { ++holds; }

Hold::~Hold() { --holds; }

}  // namespace gritwell::HostLink
