// The host's dialog: interactWithUser shows the generator dialog modally
// inside the host's process and writes the user's choice back into the
// host's buffers. Like the session functions it reports nothing to the host:
// it returns 1.0 on every path. Where no display can be reached it says why
// on standard error, for the person at the terminal.

#include <cstdint>
#include <cstring>
#include <iostream>
#include <optional>
#include <string>

#include <QApplication>
#include <QGuiApplication>
#include <QScreen>
#include <QTimer>

#include "core/TransformData.h"
#include "dialog/ApplicationEventFilter.h"
#include "dialog/DialogPlacement.h"
#include "dialog/DisplayCheck.h"
#include "dialog/HostLink.h"
#include "dialog/MainWindow.h"
#include "plugin/HostInterface.h"

#define GRITWELL_EXPORT __attribute__((visibility("default")))

using gritwell::MainWindow;
using gritwell::TransformData;

namespace {

// Where the dialog opens: centred the first time, then wherever the user
// last left it, for the life of the loaded library.
bool positionSet = false;
int xPos = 0;
int yPos = 0;

// The window the dialog centres on: the host's active window where the host
// has one in this application, else the primary screen's free area.
QRect hostWindowRect() {
    if (const QWidget* active = QApplication::activeWindow()) return active->geometry();
    if (const QScreen* screen = QGuiApplication::primaryScreen()) return screen->availableGeometry();
    return QRect();
}

// The application's name as the GUI sees it. The count of 2 with a null
// second entry is what the dialog has always been given; the third entry
// keeps the vector null-terminated for anything that scans it.
constexpr char kApplicationName[] = "GritwellPlugin";
constexpr int kApplicationArgc = 2;

}  // namespace

extern "C" {

GRITWELL_EXPORT bool appKilled = false;
GRITWELL_EXPORT HostCallback DLL2KelmarCallBack = nullptr;

GRITWELL_EXPORT float interactWithUser(char*, double, char* stateRecord, int, char* transformBuffer, int,
                                       void* hostBlock) {
    // The first dialog of the process is brought to the front once it shows;
    // later ones open over a host that is already in front.
    static bool needsActivation = true;

    DLL2KelmarCallBack = hostBlock != nullptr
                             ? reinterpret_cast<HostCallback>(static_cast<void**>(hostBlock)[kHostCallbackWord])
                             : nullptr;
    gritwell::HostLink::setCallback(DLL2KelmarCallBack);

    char applicationName[256] = {};
    std::memcpy(applicationName, kApplicationName, sizeof kApplicationName - 1);
    char* argv[] = {applicationName, nullptr, nullptr};
    int argc = kApplicationArgc;

    // A host built on Qt already has its application object; a process holds
    // only one, so it is reused. Otherwise the dialog brings its own for the
    // length of the call. A non-widget application object cannot host
    // widgets: nothing is shown.
    std::optional<QApplication> ownApplication;
    if (QCoreApplication::instance() == nullptr) {
        // Qt would end the host's process if it cannot reach a display. The
        // host gets its buffers back as they came, as after Cancel with
        // nothing changed, and one line on standard error says why.
        if (const std::optional<std::string> problem = gritwell::DisplayCheck::problem()) {
            std::cerr << kApplicationName << ": " << *problem << std::endl;
            return 1.0f;
        }
        QCoreApplication::setAttribute(Qt::AA_PluginApplication, true);
        ownApplication.emplace(argc, argv);
    }
    if (qobject_cast<QApplication*>(QCoreApplication::instance()) == nullptr) return 1.0f;

    // The application's comings and goings are diagnostics: standard output
    // belongs to the host.
    gritwell::ApplicationEventFilter filter(appKilled, std::cerr);
    QCoreApplication::instance()->installEventFilter(&filter);
    {
        char emptyRecord[MainWindow::kDescriptionSize] = {};
        const char* record = stateRecord != nullptr ? stateRecord : emptyRecord;
        const TransformData hostTransforms =
            transformBuffer != nullptr ? TransformData::fromBytes(transformBuffer) : TransformData{};

        MainWindow dialog(nullptr);
        dialog.setDescriptionAndTransforms(record, hostTransforms);

        if (needsActivation) {
            QTimer::singleShot(0, &dialog, [&dialog] {
                dialog.raise();
                dialog.activateWindow();
            });
            needsActivation = false;
        }

        const QRect host = hostWindowRect();
        dialog.adjustSize();
        const QRect geometry = dialog.geometry();
        if (!positionSet) {
            const QPoint centred = gritwell::DialogPlacement::centredPosition(host, geometry);
            xPos = centred.x();
            yPos = centred.y();
            positionSet = true;
        }
        dialog.setGeometry(xPos, yPos, geometry.width(), geometry.height());
        dialog.exec();

        // A cancelled dialog's description has size byte 0: the host's record
        // stays as it was.
        char description[MainWindow::kDescriptionSize];
        dialog.getDescription(description);
        const int size = static_cast<std::int8_t>(description[0]);
        if (size > 0 && stateRecord != nullptr) std::memcpy(stateRecord, description, static_cast<std::size_t>(size));

        TransformData transforms;
        dialog.getTransforms(transforms);
        if (transformBuffer != nullptr) transforms.toBytes(transformBuffer);

        xPos = dialog.geometry().x();
        yPos = dialog.geometry().y();
    }
    QCoreApplication::instance()->removeEventFilter(&filter);
    return 1.0f;
}

}  // extern "C"
