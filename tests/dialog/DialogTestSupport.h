#pragma once
// What the dialog suites share: a host callback that records every update it
// is sent, a way to act on the modal dialog once it is on screen, and a
// display that does not exist.

#include <array>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include <QApplication>
#include <QTimer>
#include <QWidget>

#include <gtest/gtest.h>

#include "dialog/HostLink.h"

namespace dialogtest {

struct HostUpdate {
    std::array<std::uint32_t, 4> words;
    std::array<char, 256> record;
    std::array<char, 44> transforms;
};

inline std::vector<HostUpdate>& hostUpdates() {
    static std::vector<HostUpdate> updates;
    return updates;
}

inline float recordHostUpdate(std::uint32_t a, std::uint32_t b, std::uint32_t c, std::uint32_t d, char* record,
                              char* transforms) {
    HostUpdate update{{a, b, c, d}, {}, {}};
    std::memcpy(update.record.data(), record, update.record.size());
    std::memcpy(update.transforms.data(), transforms, update.transforms.size());
    hostUpdates().push_back(update);
    return 1.0f;
}

// Installs recordHostUpdate as the host's callback, with an empty log, for
// the life of the object.
struct RecordingHost {
    RecordingHost() {
        hostUpdates().clear();
        gritwell::HostLink::setCallback(&recordHostUpdate);
    }
    ~RecordingHost() { gritwell::HostLink::setCallback(nullptr); }
    RecordingHost(const RecordingHost&) = delete;
    RecordingHost& operator=(const RecordingHost&) = delete;
};

// Runs `act` on the modal dialog as soon as one is visible, polling the
// event loop that shows it.
inline void whenDialogShown(std::function<void(QWidget*)> act) {
    QTimer::singleShot(10, [act] {
        QWidget* dialog = QApplication::activeModalWidget();
        if (dialog == nullptr || !dialog->isVisible()) {
            whenDialogShown(act);
            return;
        }
        act(dialog);
    });
}

// An X display name at which no server listens: the first from :90 up
// without a socket.
inline std::string displayWithoutServer() {
    for (int n = 90;; ++n)
        if (!std::filesystem::exists("/tmp/.X11-unix/X" + std::to_string(n))) return ":" + std::to_string(n);
}

}  // namespace dialogtest
