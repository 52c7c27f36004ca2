#include "dialog/DisplayCheck.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <string_view>

#include <xcb/xcb.h>

namespace gritwell::DisplayCheck {

namespace {

std::string valueOf(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr ? value : "";
}

// Connects to the X server DISPLAY names, as Qt's xcb platform would, and
// hangs up at once.
bool xServerAnswers() {
    int screen = 0;
    xcb_connection_t* connection = xcb_connect(nullptr, &screen);
    const bool answers = xcb_connection_has_error(connection) == 0;
    xcb_disconnect(connection);
    return answers;
}

// Connects to the compositor's socket: WAYLAND_DISPLAY (by default
// "wayland-0"), in XDG_RUNTIME_DIR unless it is an absolute path. A socket
// file left behind by a compositor that has gone refuses the connection.
bool compositorAnswers() {
    std::string path = valueOf("WAYLAND_DISPLAY");
    if (path.empty()) path = "wayland-0";
    if (path.front() != '/') {
        const std::string runtimeDir = valueOf("XDG_RUNTIME_DIR");
        if (runtimeDir.empty()) return false;
        path = runtimeDir + "/" + path;
    }
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path) return false;
    std::memcpy(address.sun_path, path.c_str(), path.size());
    const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (socket < 0) return false;
    const bool answers = ::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    ::close(socket);
    return answers;
}

// Platforms that draw into memory, a VNC socket or the graphics device
// itself: none waits for a display server.
constexpr std::string_view kServerless[] = {"offscreen", "minimal", "minimalegl", "vnc",
                                            "linuxfb",   "eglfs",   "vkkhrdisplay"};

// One entry of QT_QPA_PLATFORM: a platform name, perhaps with ":options".
bool platformUsable(std::string_view entry) {
    const std::string_view name = entry.substr(0, entry.find(':'));
    if (name == "xcb") return xServerAnswers();
    if (name.starts_with("wayland")) return compositorAnswers();
    return std::find(std::begin(kServerless), std::end(kServerless), name) != std::end(kServerless);
}

bool anyDisplayUsable() {
    const std::string platforms = valueOf("QT_QPA_PLATFORM");
    if (platforms.empty()) {
        const bool waylandSession = !valueOf("WAYLAND_DISPLAY").empty() || valueOf("XDG_SESSION_TYPE") == "wayland";
        return (waylandSession && compositorAnswers()) || xServerAnswers();
    }
    std::string_view rest = platforms;
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find(';'), rest.size());
        if (platformUsable(rest.substr(0, end))) return true;
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return false;
}

std::string shown(const char* name) {
    const std::string value = valueOf(name);
    return value.empty() ? std::string(name) + " unset" : std::string(name) + "=" + value;
}

}  // namespace

std::optional<std::string> problem() {
    if (anyDisplayUsable()) return std::nullopt;
    return "the dialog needs a display, and none is usable (" + shown("DISPLAY") + ", " + shown("WAYLAND_DISPLAY") +
           ", " + shown("QT_QPA_PLATFORM") + ")";
}

}  // namespace gritwell::DisplayCheck
