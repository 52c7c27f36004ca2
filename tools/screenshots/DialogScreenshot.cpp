// dialog_screenshot OUT.png: opens the generator dialog on a Brick record at
// its defaults through GritwellPlugin.so, the way the host opens it, saves a
// picture of the dialog's window once it is on screen, and cancels it.

#include <cstdint>
#include <cstdio>

#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QPixmap>
#include <QPushButton>
#include <QScreen>
#include <QTimer>
#include <QWidget>

#include "PluginLibrary.h"
#include "core/TransformData.h"
#include "textures/BrickTexture3D.h"

namespace {

// Time for the window to be mapped and painted before it is photographed.
constexpr int kSettleMilliseconds = 1000;

float ignoreUpdate(std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t, char*, char*) { return 1.0f; }

QWidget* shownDialog() {
    if (QWidget* modal = QApplication::activeModalWidget()) return modal;
    for (QWidget* w : QApplication::topLevelWidgets())
        if (w->isVisible() && qobject_cast<QDialog*>(w) != nullptr) return w;
    return nullptr;
}

}  // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() != 2) {
        std::fprintf(stderr, "usage: dialog_screenshot OUT.png\n");
        return 2;
    }
    const QString output = arguments[1];

    gritwell::PluginLibrary plugin(gritwell::PluginLibrary::defaultPath());
    if (!plugin.ok()) {
        std::fprintf(stderr, "dialog_screenshot: %s\n", plugin.error().c_str());
        return 1;
    }

    char record[256] = {};
    gritwell::BrickTexture3D brick;
    brick.getDescription(record);
    char transforms[sizeof(gritwell::TransformData)];
    gritwell::TransformData{}.toBytes(transforms);
    void* hostBlock[8] = {};
    hostBlock[kHostCallbackWord] = reinterpret_cast<void*>(&ignoreUpdate);

    bool saved = false;
    // A loaded machine may take longer than the settling time to build the
    // dialog: look again until it is there, then give it the time to paint.
    QTimer poll;
    poll.setInterval(kSettleMilliseconds);
    QObject::connect(&poll, &QTimer::timeout, [&] {
        QWidget* dialog = shownDialog();
        if (dialog == nullptr) return;
        poll.stop();
        const QPixmap picture = dialog->screen()->grabWindow(dialog->winId());
        saved = !picture.isNull() && picture.save(output);
        if (auto* buttons = dialog->findChild<QDialogButtonBox*>())
            buttons->button(QDialogButtonBox::Cancel)->click();
    });
    poll.start();
    plugin.interactWithUser(nullptr, 0.0, record, sizeof record, transforms, sizeof transforms, hostBlock);

    if (!saved) {
        std::fprintf(stderr, "dialog_screenshot: could not take the picture\n");
        return 1;
    }
    std::printf("Wrote %s\n", qPrintable(output));
    return 0;
}
