#include "DialogCommand.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <optional>

#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QEvent>
#include <QImage>
#include <QLabel>
#include <QListWidget>
#include <QPalette>
#include <QPixmap>
#include <QPointer>
#include <QPushButton>
#include <QScreen>
#include <QTimer>
#include <QVBoxLayout>

#include "AtomicOutput.h"
#include "CliError.h"
#include "HostTransform.h"
#include "MeshPreview.h"
#include "MeshReader.h"
#include "RecordFile.h"
#include "SliceRenderer.h"
#include "core/Texture3D.h"
#include "textures/TextureFactory.h"
#include "dialog/DisplayCheck.h"
#include "plugin/HostInterface.h"

namespace gritwell {

namespace {

std::string transformText(const TransformData& t) {
    char text[256];
    std::snprintf(text, sizeof text, "%d %g %g %g %g %g %g %g %g %g %g", t.flags, t.overallScale, t.xOffset,
                  t.yOffset, t.zOffset, t.xScale, t.yScale, t.zScale, t.xAngle, t.yAngle, t.zAngle);
    return text;
}

QImage toImage(const Picture& picture) {
    QImage image(picture.width, picture.height, QImage::Format_RGB32);
    const std::uint16_t* sample = picture.samples.data();
    const int last = picture.channels - 1;  // grey: one channel is all three
    for (int y = 0; y < picture.height; ++y) {
        auto* row = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < picture.width; ++x, sample += picture.channels)
            row[x] = qRgb(sample[0], sample[std::min(1, last)], sample[last]);
    }
    return image;
}

// The slice above the painted mesh, and a line saying what they show.
class PreviewWindow : public QWidget {
public:
    explicit PreviewWindow(const DialogPreview& preview) : preview_(preview) {
        setWindowTitle(tr("Gritwell preview"));
        // The dialog keeps the keyboard; this window only shows.
        setAttribute(Qt::WA_ShowWithoutActivating);
        QPalette dark = palette();
        const QColor background(MeshPreview::kBackground, MeshPreview::kBackground, MeshPreview::kBackground);
        dark.setColor(QPalette::Window, background);
        dark.setColor(QPalette::WindowText, Qt::lightGray);
        setPalette(dark);
        setAutoFillBackground(true);
        auto* layout = new QVBoxLayout(this);
        for (QLabel** label : {&slice_, &mesh_}) {
            *label = new QLabel(this);
            (*label)->setFixedSize(preview.size(), preview.size());
            layout->addWidget(*label);
        }
        slice_->setToolTip(tr("The texture on the slice z = %1, from 0 to 4 across").arg(double(SliceView().z), 0, 'g', 3));
        mesh_->setToolTip(tr("The texture painted on the mesh"));
        status_ = new QLabel(this);
        layout->addWidget(status_);
    }

    // Renders the state of one host update; the time it took goes on the
    // status line and into times().
    void draw(const char* record, const TransformData& transforms) {
        const auto start = std::chrono::steady_clock::now();
        try {
            const PreviewPictures pictures = preview_.render(record, transforms);
            slice_->setPixmap(QPixmap::fromImage(toImage(pictures.slice)));
            mesh_->setPixmap(QPixmap::fromImage(toImage(pictures.mesh)));
        } catch (const std::exception& e) {
            // Never out through the plug-in, which called us.
            status_->setText(QString::fromStdString(e.what()));
            return;
        }
        const double ms = std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
        times_.push_back(ms);
        status_->setText(tr("%1, %2 ms").arg(QString::fromStdString(Texture3D::recordName(record))).arg(ms, 0, 'f', 0));
    }

    // To the right of the dialog; else to its left; else against the
    // screen's right edge, over the dialog's.
    void placeBeside(const QWidget& dialog) {
        constexpr int kGap = 8;
        adjustSize();
        const QRect d = dialog.frameGeometry();
        const QRect free = dialog.screen()->availableGeometry();
        int x = d.right() + 1 + kGap;
        if (x + width() > free.right() + 1)
            x = d.left() - kGap - width() >= free.left() ? d.left() - kGap - width() : free.right() + 1 - width();
        move(x, std::max(d.top(), free.top()));
    }

    const std::vector<double>& times() const { return times_; }

private:
    const DialogPreview& preview_;
    QLabel* slice_ = nullptr;
    QLabel* mesh_ = nullptr;
    QLabel* status_ = nullptr;
    std::vector<double> times_;
};

// What the host sees of the dialog: its updates, and which way it closed.
class DialogHost : public QObject {
public:
    DialogHost(PreviewWindow* window, std::vector<std::string> script) : window_(window), script_(std::move(script)) {}

    void update(char* record, char* transformBytes) {
        const TransformData transforms = TransformData::fromBytes(transformBytes);
        // The dialog also calls while it loads the host's record and
        // transforms, before it shows: that is the host's own state coming
        // back, not a change, so only what arrives while it is on screen is
        // printed. The preview follows every call.
        if (dialog_ != nullptr && dialog_->isVisible()) {
            std::printf("update: %s, %d bytes; transforms %s\n", Texture3D::recordName(record).c_str(),
                        static_cast<unsigned char>(record[0]), transformText(transforms).c_str());
            std::fflush(stdout);
        }
        if (window_ != nullptr) window_->draw(record, transforms);
    }

    bool accepted() const { return accepted_; }

    // Watches the application for the dialog to show.
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Show && dialog_ == nullptr)
            if (auto* dialog = qobject_cast<QDialog*>(watched))
                if (auto* buttons = dialog->findChild<QDialogButtonBox*>("buttonBox")) adopt(dialog, buttons);
        return false;
    }

private:
    void adopt(QDialog* dialog, QDialogButtonBox* buttons) {
        dialog_ = dialog;
        // interactWithUser returns 1.0 whatever the answer, and after Cancel
        // the record buffer still holds what it came with, so OK is seen on
        // the dialog itself: its button box's accepted() comes from OK (or
        // Enter) only.
        connect(buttons, &QDialogButtonBox::accepted, this, [this] { accepted_ = true; });
        if (window_ != nullptr) {
            window_->placeBeside(*dialog);
            window_->show();
        }
        if (!script_.empty()) QTimer::singleShot(0, this, [this, buttons] { play(buttons); });
    }

    void play(QDialogButtonBox* buttons) {
        auto* list = dialog_->findChild<QListWidget*>("generatorList");
        for (const std::string& step : script_) {
            if (step == "ok" || step == "cancel")
                buttons->button(step == "ok" ? QDialogButtonBox::Ok : QDialogButtonBox::Cancel)->click();
            else if (step == "close")
                dialog_->close();
            else if (list != nullptr)
                for (QListWidgetItem* item : list->findItems(QString::fromStdString(step), Qt::MatchExactly))
                    emit list->itemClicked(item);
        }
    }

    PreviewWindow* window_;
    std::vector<std::string> script_;
    QPointer<QDialog> dialog_;
    bool accepted_ = false;
};

DialogHost* activeHost = nullptr;

float hostCallback(std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t, char* record, char* transforms) {
    if (activeHost != nullptr) activeHost->update(record, transforms);
    return 1.0f;
}

void writeOutput(AtomicOutput& out, const std::string& path, const void* data, std::size_t size) {
    if (std::fwrite(data, 1, size, out.file()) != size) throw CliError("cannot write '" + path + "'");
    out.commit();
}

// "preview: 12 updates drawn, median 21 ms, slowest 34 ms", on standard error.
void reportTimes(std::vector<double> times) {
    if (times.empty()) return;
    std::sort(times.begin(), times.end());
    std::fprintf(stderr, "gritwell: preview: %zu updates drawn, median %.0f ms, slowest %.0f ms\n", times.size(),
                 times[times.size() / 2], times.back());
}

}  // namespace

void runDialog(const DialogOptions& options, const std::function<PluginLibrary&()>& loadPlugin) {
    char record[256] = {};
    if (!options.target.empty()) {
        const LoadedRecord loaded = resolveRecord(options.target);
        std::memcpy(record, loaded.bytes.data(), loaded.bytes.size());
    }
    const TransformData transforms =
        options.transform.empty() ? TransformData{} : HostTransform::readFile(options.transform);
    [[maybe_unused]] const HostTransform checked(transforms);  // refuses zero scales and fields that are not finite
    if (options.previewSize < 16 || options.previewSize > 2048) throw CliError("--preview-size must be 16 to 2048");
    const std::string mesh = options.mesh.empty() ? GRITWELL_SAMPLE_MESH : options.mesh;
    if (options.preview && options.mesh.empty() && !std::filesystem::exists(mesh))
        throw CliError("the sample mesh " + mesh + " is missing; name a mesh with --mesh FILE, or use --no-preview");
    if (!options.script.empty() && options.script.back() != "ok" && options.script.back() != "cancel" &&
        options.script.back() != "close")
        throw CliError("--script must end with ok, cancel or close");
    // The dialog edits: it may write back the record and the transform it
    // opened, as `record set` does, but no other file it reads.
    const CommandFile recordOut{"-o", options.output}, transformOut{"--transform-out", options.transformOutput};
    const CommandFile target{"TARGET", TextureFactory::find(options.target) ? std::string() : options.target};
    const CommandFile meshIn{"--mesh", options.mesh}, transformIn{"--transform", options.transform};
    std::vector<CommandFile> outputs;
    for (const CommandFile& out : {recordOut, transformOut})
        if (!out.path.empty()) outputs.push_back(out);
    checkCommandFiles(outputs, {meshIn});
    if (!options.output.empty()) checkCommandFiles({recordOut}, {transformIn});
    if (!options.transformOutput.empty()) checkCommandFiles({transformOut}, {target});
    // Opened now, so that an unwritable output is reported before the user's work.
    std::optional<AtomicOutput> recordOutput, transformOutput;
    if (!options.output.empty()) recordOutput.emplace(options.output);
    if (!options.transformOutput.empty()) transformOutput.emplace(options.transformOutput);

    if (const std::optional<std::string> problem = DisplayCheck::problem())
        throw CliError(*problem, CliError::kEnvironment);
    PluginLibrary& plugin = loadPlugin();
    std::optional<DialogPreview> preview;
    if (options.preview) preview.emplace(plugin, MeshReader::read(mesh), options.previewSize);

    // The preview window and the watch on the dialog need an application
    // object; the plug-in reuses it, as in a host built on Qt.
    char name[] = "gritwell";
    char* argv[] = {name, nullptr};
    int argc = 1;
    QApplication application(argc, argv);
    std::optional<PreviewWindow> window;
    if (preview) window.emplace(*preview);
    DialogHost host(window ? &*window : nullptr, options.script);
    application.installEventFilter(&host);
    activeHost = &host;

    char transformBytes[sizeof(TransformData)];
    transforms.toBytes(transformBytes);
    void* hostBlock[8] = {};
    hostBlock[kHostCallbackWord] = reinterpret_cast<void*>(&hostCallback);
    plugin.interactWithUser(nullptr, 0.0, record, sizeof record, transformBytes, sizeof transformBytes, hostBlock);
    activeHost = nullptr;
    application.removeEventFilter(&host);
    if (window) reportTimes(window->times());

    // The plug-in hands the transforms back after Cancel too, and the host
    // keeps them. What the dialog ended with is said on standard error:
    // standard output is the update lines alone, for scripts to read.
    std::fprintf(stderr, "transforms: %s\n", transformText(TransformData::fromBytes(transformBytes)).c_str());
    if (transformOutput) writeOutput(*transformOutput, options.transformOutput, transformBytes, sizeof transformBytes);
    const auto size = static_cast<unsigned char>(record[0]);
    if (!host.accepted() || size == 0) {
        std::fprintf(stderr, "no record: the dialog was cancelled\n");
        return;
    }
    std::fprintf(stderr, "record: %s, %d bytes\n", Texture3D::recordName(record).c_str(), size);
    if (recordOutput) writeOutput(*recordOutput, options.output, record, size);
}

}  // namespace gritwell
