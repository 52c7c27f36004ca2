#pragma once
// The generator registry: for each generator the dialog offers, one entry
// binding the live texture, its parameter panel, the generated form that
// built the panel's page, the page in the dialog's stack and the list item.
// Entries are built in the list's order, one line each in
// GeneratorRegistry.cpp.

#include <map>
#include <span>
#include <string>
#include <string_view>

#include <QListWidgetItem>
#include <QStackedWidget>
#include <QWidget>

#include "ui_MainWindow.h"

namespace gritwell {

class ImageArea;
class QtWrapperBase;
class Texture3D;

// One registry entry, seen without its types.
class InfoBase {
public:
    InfoBase() = default;
    InfoBase(const InfoBase&) = delete;
    InfoBase& operator=(const InfoBase&) = delete;

    virtual Texture3D* getT3D() const = 0;
    virtual QtWrapperBase* getWrapper() const = 0;
    virtual QWidget* getStackWidget() const = 0;
    virtual QListWidgetItem* getItem() const = 0;
    virtual ImageArea* getImageArea() const = 0;
    virtual ~InfoBase() = default;
};

// The entry of generator T with panel W and form U, which belong together by
// name: XxxTexture3D, XxxQtWrapper, Ui_XxxWidget. It owns all but the shared
// preview.
template <class T, class W, class U>
class Info final : public InfoBase {
public:
    // Appends the list item (unchecked) and the page to the dialog's list and
    // stack, then makes the texture at its defaults and the panel over them.
    explicit Info(Ui::MainWindow* mainUi, ImageArea* imageArea) : imageArea_(imageArea) {
        item_ = new QListWidgetItem(mainUi->generatorList, QListWidgetItem::Type);
        // The name is the record's name and the registry's key, never translated.
        item_->setText(QString::fromStdString(T::name()));
        item_->setToolTip(QString::fromUtf8(T::kSummary.data(), static_cast<qsizetype>(T::kSummary.size())));
        item_->setTextAlignment(Qt::AlignLeft);
        item_->setFlags(Qt::ItemIsSelectable | Qt::ItemIsUserCheckable | Qt::ItemIsEnabled);
        item_->setCheckState(Qt::Unchecked);

        ui_ = new U;
        stackWidget_ = new QWidget(nullptr, Qt::WindowFlags());
        ui_->setupUi(stackWidget_);
        mainUi->stackedWidget->addWidget(stackWidget_);

        t3D_ = new T();
        wrapper_ = new W(t3D_, imageArea_, ui_, stackWidget_, nullptr);
    }

    // Generators have no virtual destructor but are final with a public one,
    // so deleting through T is complete.
    ~Info() override {
        delete t3D_;
        t3D_ = nullptr;
        delete wrapper_;
        wrapper_ = nullptr;
        delete ui_;
        ui_ = nullptr;
        delete stackWidget_;  // leaves the stack
        stackWidget_ = nullptr;
        delete item_;  // leaves the list
        item_ = nullptr;
    }

    Texture3D* getT3D() const override { return t3D_; }
    QtWrapperBase* getWrapper() const override { return wrapper_; }
    QWidget* getStackWidget() const override { return stackWidget_; }
    QListWidgetItem* getItem() const override { return item_; }
    ImageArea* getImageArea() const override { return imageArea_; }

private:
    T* t3D_ = nullptr;
    W* wrapper_ = nullptr;
    U* ui_ = nullptr;
    QWidget* stackWidget_ = nullptr;
    QListWidgetItem* item_ = nullptr;
    ImageArea* imageArea_;
};

namespace GeneratorRegistry {

// How one entry is made.
struct Registration {
    std::string_view name;
    InfoBase* (*create)(Ui::MainWindow* mainUi, ImageArea* imageArea);
};

// Every generator the dialog offers, each once, in the order of its list and
// stack.
std::span<const Registration> registrations();

// Builds every registered entry, in order, into `generators` keyed by name.
void createEntries(Ui::MainWindow* mainUi, ImageArea* imageArea, std::map<std::string, InfoBase*>& generators);

// Destroys the entries in registration order and empties their keys.
void destroyEntries(std::map<std::string, InfoBase*>& generators);

}  // namespace GeneratorRegistry

}  // namespace gritwell
