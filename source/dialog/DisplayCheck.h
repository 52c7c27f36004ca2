#pragma once
// DisplayCheck: whether Qt can open a window in this process, asked before
// an application object is made. Qt ends the whole process with a fatal
// error when its platform cannot connect, so whoever makes the application
// object for the dialog asks first and declines on its own terms.

#include <optional>
#include <string>

namespace gritwell::DisplayCheck {

// None when a window can be shown; otherwise one sentence saying that the
// dialog needs a display and none is usable, with the values of DISPLAY,
// WAYLAND_DISPLAY and QT_QPA_PLATFORM.
//
// QT_QPA_PLATFORM, where set, is the list of platforms Qt tries, separated
// by ';': "xcb" is usable when an X server answers at DISPLAY, "wayland..."
// when a compositor answers at WAYLAND_DISPLAY, and the platforms that draw
// without a display server (offscreen, minimal, vnc, linuxfb, eglfs...)
// always are; any other name is not. Unset, Qt prefers Wayland in a Wayland
// session and otherwise X, so either answering will do.
std::optional<std::string> problem();

}  // namespace gritwell::DisplayCheck
