#include "dialog/MainWindow.h"

#include <cstring>

#include <QCloseEvent>
#include <QCoreApplication>
#include <QVBoxLayout>

#include "core/Texture3D.h"
#include "dialog/GeneratorRegistry.h"
#include "dialog/ImageArea.h"
#include "dialog/QtWrapperBase.h"
#include "style/Theme.h"
#include "ui_MainWindow.h"

namespace gritwell {

namespace {
// The generator the dialog opens on, and falls back to.
constexpr char kDefaultGenerator[] = "Checkerboard";
// Filler of an empty description; byte 0 = 0 is what marks it empty.
constexpr char kEmptyDescriptionFill = ' ';
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

    connect(ui_->generatorList, &QListWidget::currentRowChanged, this, &MainWindow::currentRowChangedCB);
    connect(ui_->generatorList, &QListWidget::itemClicked, this, &MainWindow::itemClickedCB);
    connect(ui_->buttonBox, &QDialogButtonBox::accepted, this, &MainWindow::accept);
    connect(ui_->buttonBox, &QDialogButtonBox::rejected, this, &MainWindow::reject);

    currentName_ = kDefaultGenerator;
    if (InfoBase* info = entry(currentName_)) {
        info->getWrapper()->setTransforms(transforms_);
        ui_->generatorList->setCurrentItem(info->getItem());
        ui_->stackedWidget->setCurrentWidget(info->getStackWidget());
    }
}

MainWindow::~MainWindow() {
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

void MainWindow::setDescriptionAndTransforms(const char* record, const TransformData& transforms) {
    transforms_ = transforms;
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

void MainWindow::itemClickedCB(QListWidgetItem* item) {
    QListWidget* list = ui_->generatorList;
    for (int row = 0; row < list->count(); ++row) list->item(row)->setCheckState(Qt::Unchecked);
    int found = -1;
    for (int row = 0; row < list->count(); ++row)
        if (list->item(row) == item) found = row;
    if (found == -1) return;
    item->setCheckState(Qt::Checked);
    currentGeneratorChanged(found);
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

    currentName_ = name;
    info->getWrapper()->setTransforms(carried);
    info->getWrapper()->updateUI();
    ui_->stackedWidget->setCurrentWidget(info->getStackWidget());
    info->getWrapper()->redraw();
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

}  // namespace gritwell
