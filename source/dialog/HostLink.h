#pragma once
// HostLink: the dialog's line to the host. Every change on a page is sent to
// the host's live-update function, so the host redraws the model at once;
// whoever opens the dialog hands that function over first.

#include <cstdint>

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

// Sends a 256-byte record and a 44-byte transform record to the callback
// with the words the host expects, if there is one.
void send(char* record, char* transforms);

}  // namespace gritwell::HostLink
