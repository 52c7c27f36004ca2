#pragma once
// HostLink: the dialog's line to the host. Every change on a page is sent to
// the host's live-update function, so the host redraws the model at once;
// whoever opens the dialog hands that function over first.

#include <cstdint>
#include <functional>

namespace gritwell::HostLink {

// The host's live-update function: four 32-bit words (the bits of 4.0f, then
// 8, 0, 0) and the 256-byte state-record and 44-byte transform buffers. Its
// result is ignored.
using Callback = float (*)(std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t, char* record,
                           char* transforms);

// The function the pages send to from now on; null sends nothing (a host
// that gave none, or a page outside a dialog).
void setCallback(Callback callback);
Callback callback();

// Something that follows every state sent, host or no host: the dialog's
// undo history. There is one at a time; `owner` names it, so that a watcher
// is only ever taken away by the one who set it.
using Watcher = std::function<void(const char* record, const char* transforms)>;
void setWatcher(const void* owner, Watcher watcher);
void clearWatcher(const void* owner);

// Sends a 256-byte record and a 44-byte transform record to the watcher and
// then to the callback, with the words the host expects, unless a Hold lives.
void send(char* record, char* transforms);

// While one lives, nothing is sent. Restoring a state moves controls one by
// one, and each would send a half-restored state; the restorer holds sends,
// then sends the whole state once.
class Hold {
public:
    Hold();
    ~Hold();
    Hold(const Hold&) = delete;
    Hold& operator=(const Hold&) = delete;
};

}  // namespace gritwell::HostLink
