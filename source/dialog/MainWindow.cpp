#include "dialog/MainWindow.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <utility>

#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QAction>
#include <QCloseEvent>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

#include "core/BaseData.h"
#include "core/Texture3D.h"
#include "dialog/DialogPlacement.h"
#include "dialog/GeneratorRegistry.h"
#include "dialog/HostLink.h"
#include "dialog/ImageArea.h"
#include "dialog/PageScrollArea.h"
#include "dialog/QtWrapperBase.h"
#include "style/Theme.h"
#include "textures/TextureFactory.h"
#include "ui_MainWindow.h"

namespace gritwell {

namespace {
// The generator the dialog opens on, and falls back to.
constexpr char kDefaultGenerator[] = "Checkerboard";
// Filler of an empty description; byte 0 = 0 is what marks it empty.
constexpr char kEmptyDescriptionFill = ' ';
// However small the screen, a page shows at least this much of itself.
constexpr int kSmallestPageHeight = 200;

// Layouts cache the size hints of what they hold, and layouts nested in a
// widget's layout keep caches of their own. A hint that changes before the
// dialog is shown is passed up by hand, so that the dialog's own hint
// follows at once.
void invalidateWithNested(QLayout* layout) {
    layout->invalidate();
    for (int i = 0; i < layout->count(); ++i)
        if (QLayout* nested = layout->itemAt(i)->layout()) invalidateWithNested(nested);
}

void refreshSizeHints(QWidget* from) {
    for (QWidget* widget = from; widget != nullptr; widget = widget->parentWidget()) {
        widget->updateGeometry();
        if (widget->layout() != nullptr) invalidateWithNested(widget->layout());
    }
}

}  // namespace

MainWindow::MainWindow(QWidget* parent) : QDialog(parent), ui_(new Ui::MainWindow) {
    setWindowFlags(windowFlags() | Qt::CustomizeWindowHint);
    resetDescription();
    ui_->setupUi(this);

    ui_->centralWidget->setStyleSheet(Theme::mainWindowStyleSheet());
    ui_->buttonBox->setStyleSheet(Theme::buttonBoxStyleSheet());

    // The preview is built and kept current but not shown.
    auto* previewLayout = new QVBoxLayout;
    imageArea_ = new ImageArea(ui_->imageAreaParent, this);
    previewLayout->addWidget(imageArea_);
    ui_->imageAreaParent->setLayout(previewLayout);
    ui_->imageAreaParent->hide();

    // The form marks the list sortable, but the list keeps the registration
    // order: a sorting list would move each entry as its name is set.
    ui_->generatorList->setSortingEnabled(false);
    GeneratorRegistry::createEntries(ui_, imageArea_, generators_);
    ui_->pageScrollArea->setPages(ui_->stackedWidget);

    connect(ui_->generatorList, &QListWidget::currentRowChanged, this, &MainWindow::currentRowChangedCB);
    connect(ui_->generatorList, &QListWidget::itemClicked, this, &MainWindow::itemClickedCB);
    connect(ui_->buttonBox, &QDialogButtonBox::accepted, this, &MainWindow::accept);
    connect(ui_->buttonBox, &QDialogButtonBox::rejected, this, &MainWindow::reject);
    buildEditButtons();

    // A slider dragged through many values is one step.
    for (QAbstractSlider* slider : ui_->stackedWidget->findChildren<QAbstractSlider*>()) {
        connect(slider, &QAbstractSlider::sliderPressed, this, [this] { history_.beginGesture(); });
        connect(slider, &QAbstractSlider::sliderReleased, this, [this] { history_.endGesture(); });
    }
    for (QAbstractSpinBox* box : ui_->stackedWidget->findChildren<QAbstractSpinBox*>()) box->installEventFilter(this);
    HostLink::setWatcher(this, [this](const char* record, const char* transforms) { stateSent(record, transforms); });

    currentName_ = kDefaultGenerator;
    if (InfoBase* info = entry(currentName_)) {
        info->getWrapper()->setTransforms(transforms_);
        ui_->generatorList->setCurrentItem(info->getItem());
        ui_->stackedWidget->setCurrentWidget(info->getStackWidget());
    }
    fitToScreen();
    startHistory();
}

MainWindow::~MainWindow() {
    HostLink::clearWatcher(this);
    delete ui_;
    ui_ = nullptr;
    delete imageArea_;
    imageArea_ = nullptr;
    GeneratorRegistry::destroyEntries(generators_);
}

void MainWindow::resetDescription() {
    std::memset(description_, kEmptyDescriptionFill, sizeof description_);
    description_[0] = 0;
}

InfoBase* MainWindow::entry(const std::string& name) const {
    const auto found = generators_.find(name);
    return found != generators_.end() ? found->second : nullptr;
}

QtWrapperBase* MainWindow::getCurrentWrapper() const {
    InfoBase* info = entry(currentName_);
    return info != nullptr ? info->getWrapper() : nullptr;
}

Texture3D* MainWindow::getCurrentTexture() const {
    InfoBase* info = entry(currentName_);
    return info != nullptr ? info->getT3D() : nullptr;
}

void MainWindow::openOnCheckerboard() {
    currentName_ = kDefaultGenerator;
    InfoBase* info = entry(currentName_);
    if (info == nullptr) return;
    info->getWrapper()->setTransforms(transforms_);
    ui_->generatorList->setCurrentItem(info->getItem());
    itemClickedCB(info->getItem());
    ui_->stackedWidget->setCurrentWidget(info->getStackWidget());
}

void MainWindow::fitToScreen() {
    const QScreen* shownOn = screen();
    if (shownOn == nullptr) return;
    PageScrollArea* pages = ui_->pageScrollArea;
    pages->setHeightLimit(QWIDGETSIZE_MAX);
    // The pages were added to the stack after the form first measured it.
    refreshSizeHints(ui_->stackedWidget);
    const int aroundPages = sizeHint().height() - pages->sizeHint().height();
    // The dialog opens centred and never above the menu bar's clearance, so
    // it keeps that much free below too.
    const int room = shownOn->availableGeometry().height() - 2 * DialogPlacement::kTopClearance - aroundPages;
    pages->setHeightLimit(std::max(kSmallestPageHeight, room));
    refreshSizeHints(pages);
    // The window's minimum size is settled now, not once it is on screen.
    layout()->activate();
}

void MainWindow::buildEditButtons() {
    undoAction_ = new QAction(tr("Undo"), this);
    undoAction_->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Z));
    redoAction_ = new QAction(tr("Redo"), this);
    redoAction_->setShortcuts({QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z), QKeySequence(Qt::CTRL | Qt::Key_Y)});
    addAction(undoAction_);
    addAction(redoAction_);
    connect(undoAction_, &QAction::triggered, this, &MainWindow::undo);
    connect(redoAction_, &QAction::triggered, this, &MainWindow::redo);

    QDialogButtonBox* box = ui_->buttonBox;
    undoButton_ = box->addButton(tr("Undo"), QDialogButtonBox::ResetRole);
    redoButton_ = box->addButton(tr("Redo"), QDialogButtonBox::ResetRole);
    QPushButton* defaults = box->addButton(tr("Defaults"), QDialogButtonBox::ResetRole);
    undoButton_->setObjectName("undoButton");
    redoButton_->setObjectName("redoButton");
    defaults->setObjectName("defaultsButton");
    undoButton_->setToolTip(
        tr("Undo the last change (%1)").arg(undoAction_->shortcut().toString(QKeySequence::NativeText)));
    redoButton_->setToolTip(tr("Redo the change just undone (%1)")
                                .arg(QKeySequence::listToString(redoAction_->shortcuts(), QKeySequence::NativeText)));
    defaults->setToolTip(tr("Set this generator's parameters back to their defaults; the transforms stay as they are"));
    // Return still means OK.
    for (QPushButton* button : {undoButton_, redoButton_, defaults}) button->setAutoDefault(false);
    connect(undoButton_, &QPushButton::clicked, this, &MainWindow::undo);
    connect(redoButton_, &QPushButton::clicked, this, &MainWindow::redo);
    connect(defaults, &QPushButton::clicked, this, &MainWindow::restoreDefaults);
}

void MainWindow::setDescriptionAndTransforms(const char* record, const TransformData& transforms) {
    transforms_ = transforms;
    loadRecord(record);
    // What the host gave is where undoing stops.
    startHistory();
}

void MainWindow::loadRecord(const char* record) {
    if (record[0] == 0) {
        openOnCheckerboard();
        return;
    }
    InfoBase* info = entry(Texture3D::recordName(record));
    if (info == nullptr) {
        // A generator the dialog does not offer: the user still sees the
        // host's placement, so that OK never resets it.
        openOnCheckerboard();
        return;
    }
    currentName_ = Texture3D::recordName(record);
    ui_->generatorList->setCurrentItem(info->getItem());
    itemClickedCB(info->getItem());
    ui_->stackedWidget->setCurrentWidget(info->getStackWidget());
    info->getT3D()->setFlags(transforms_.flags);

    // Older record versions are converted by the generator itself.
    info->getT3D()->setStateFromDescription(record);
    info->getT3D()->setFlags(transforms_.flags);
    info->getWrapper()->setTransforms(transforms_);
    info->getWrapper()->updateUI();
}

void MainWindow::getDescription(char* out) const { std::memcpy(out, description_, sizeof description_); }

void MainWindow::getTransforms(TransformData& out) const { out = transforms_; }

void MainWindow::currentRowChangedCB(int) {}

void MainWindow::markChosen(QListWidgetItem* item) {
    QListWidget* list = ui_->generatorList;
    for (int row = 0; row < list->count(); ++row)
        list->item(row)->setCheckState(list->item(row) == item ? Qt::Checked : Qt::Unchecked);
}

void MainWindow::itemClickedCB(QListWidgetItem* item) {
    const int row = ui_->generatorList->row(item);
    markChosen(row != -1 ? item : nullptr);
    if (row != -1) currentGeneratorChanged(row);
}

void MainWindow::currentGeneratorChanged(int row) {
    if (ui_ == nullptr || row == -1) return;
    TransformData carried;
    if (QtWrapperBase* shown = getCurrentWrapper()) shown->getTransforms(carried);

    QListWidgetItem* item = ui_->generatorList->item(row);
    if (item == nullptr) return;
    const std::string name = item->text().toStdString();
    InfoBase* info = entry(name);
    if (info == nullptr) return;

    // The new generator's state is sent once for each transform control the
    // carried transforms move, and once more at the end: one step in all.
    history_.beginGesture();
    currentName_ = name;
    info->getWrapper()->setTransforms(carried);
    info->getWrapper()->updateUI();
    ui_->stackedWidget->setCurrentWidget(info->getStackWidget());
    info->getWrapper()->redraw();
    history_.endGesture();
    QCoreApplication::sendPostedEvents();
}

void MainWindow::accept() {
    if (Texture3D* texture = getCurrentTexture())
        texture->getDescription(description_);
    else
        resetDescription();
    if (QtWrapperBase* wrapper = getCurrentWrapper()) wrapper->getTransforms(transforms_);
    QWidget::close();
}

void MainWindow::reject() {
    resetDescription();
    if (QtWrapperBase* wrapper = getCurrentWrapper()) wrapper->getTransforms(transforms_);
    QWidget::close();
}

void MainWindow::closeEvent(QCloseEvent*) { QWidget::close(); }

bool MainWindow::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride) {
        const QKeySequence pressed(static_cast<QKeyEvent*>(event)->keyCombination());
        if (undoAction_->shortcuts().contains(pressed) || redoAction_->shortcuts().contains(pressed)) {
            // Not taken by the field, the key goes on to the dialog's action.
            event->ignore();
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

// ---- Defaults, undo and redo --------------------------------------------------

void MainWindow::restoreDefaults() {
    InfoBase* info = entry(currentName_);
    const GeneratorInfo* generator = TextureFactory::find(currentName_);
    if (info == nullptr || generator == nullptr) return;
    char defaults[kDescriptionSize] = {};
    Texture3D* fresh = generator->create();
    fresh->getDescription(defaults);
    Texture3D::release(fresh);

    char shown[kDescriptionSize] = {};
    info->getT3D()->getDescription(shown);
    // Interactive update is how the user likes to work, not a parameter.
    constexpr std::size_t kInteractiveUpdate = offsetof(BaseData, interactiveUpdate);
    defaults[kInteractiveUpdate] = shown[kInteractiveUpdate];
    {
        const HostLink::Hold hold;
        info->getT3D()->setStateFromDescription(defaults);
        info->getWrapper()->updateUI();
    }
    info->getWrapper()->redraw();
}

void MainWindow::undo() {
    if (!history_.canUndo()) return;
    restoreState(history_.undo());
    updateEditButtons();
}

void MainWindow::redo() {
    if (!history_.canRedo()) return;
    restoreState(history_.redo());
    updateEditButtons();
}

EditHistory::State MainWindow::currentState() const {
    char record[kDescriptionSize] = {};
    if (Texture3D* texture = getCurrentTexture()) texture->getDescription(record);
    TransformData shown;
    if (QtWrapperBase* wrapper = getCurrentWrapper()) wrapper->getTransforms(shown);
    char transforms[sizeof(TransformData)];
    shown.toBytes(transforms);
    return EditHistory::State::of(record, transforms);
}

void MainWindow::startHistory() {
    history_.reset(currentState());
    updateEditButtons();
}

void MainWindow::stateSent(const char* record, const char* transforms) {
    if (restoring_) return;
    history_.record(EditHistory::State::of(record, transforms));
    updateEditButtons();
}

void MainWindow::updateEditButtons() {
    undoAction_->setEnabled(history_.canUndo());
    undoButton_->setEnabled(history_.canUndo());
    redoAction_->setEnabled(history_.canRedo());
    redoButton_->setEnabled(history_.canRedo());
}

// The controls move one by one, each of which would send a half-restored
// state; they are held, and the whole state is sent once at the end.
void MainWindow::restoreState(const EditHistory::State& state) {
    InfoBase* info = entry(Texture3D::recordName(state.record.data()));
    if (info == nullptr) return;
    const TransformData transforms = TransformData::fromBytes(state.transforms.data());
    {
        const HostLink::Hold hold;
        currentName_ = Texture3D::recordName(state.record.data());
        markChosen(info->getItem());
        ui_->generatorList->setCurrentItem(info->getItem());
        ui_->stackedWidget->setCurrentWidget(info->getStackWidget());
        info->getT3D()->setStateFromDescription(state.record.data());
        info->getT3D()->setFlags(transforms.flags);
        info->getWrapper()->setTransforms(transforms);
        info->getWrapper()->updateUI();
    }
    const bool wasRestoring = std::exchange(restoring_, true);
    info->getWrapper()->redraw();
    restoring_ = wasRestoring;
}

}  // namespace gritwell
