#pragma once
// MainWindow: the modal generator dialog. A list of generators beside a
// stack of parameter pages; the check mark in the list marks the chosen
// generator. It is loaded from the host's state record and transforms, and
// afterwards gives back the chosen generator's record (only after OK) and
// the transforms. Every state sent to the host is an undoable step; Defaults
// resets the shown generator's parameters.

#include <map>
#include <string>

#include <QDialog>

#include "core/TransformData.h"
#include "dialog/EditHistory.h"

class QAction;
class QCloseEvent;
class QKeySequence;
class QListWidgetItem;
class QPushButton;

namespace Ui {
class MainWindow;
}

namespace gritwell {

class ImageArea;
class InfoBase;
class QtWrapperBase;
class Texture3D;

class MainWindow : public QDialog {
    Q_OBJECT

public:
    // The size of the outgoing description: the host's record buffer.
    static constexpr int kDescriptionSize = 256;

    // Builds every registered generator's page and opens on "Checkerboard".
    explicit MainWindow(QWidget* parent);
    ~MainWindow() override;
    MainWindow(const MainWindow&) = delete;
    MainWindow& operator=(const MainWindow&) = delete;

    // Selects the generator the record names and loads the record and the
    // transforms into it. A record whose size byte is 0, or whose name the
    // dialog does not offer, opens "Checkerboard" at its current parameters
    // with the given transforms. `record` is the host's 256-byte buffer.
    void setDescriptionAndTransforms(const char* record, const TransformData& transforms);
    // All 256 bytes of the outgoing description; byte 0 is 0 unless OK was
    // pressed with a generator shown, then the chosen generator's record.
    void getDescription(char* out) const;
    void getTransforms(TransformData& out) const;

    // The shown generator's panel and texture; null if none is shown.
    QtWrapperBase* getCurrentWrapper() const;
    Texture3D* getCurrentTexture() const;

    // The registry entry of a generator; null if the dialog does not offer it.
    InfoBase* entry(const std::string& name) const;
    const std::string& currentGenerator() const { return currentName_; }

public slots:
    // Moving through the list with the keyboard does not choose a generator;
    // only a click does.
    void currentRowChangedCB(int row);
    // Moves the check mark to `item` and shows its generator.
    void itemClickedCB(QListWidgetItem* item);
    // Shows the generator of list row `row`, carrying the transforms of the
    // one shown before over to it, and sends its state to the host.
    void currentGeneratorChanged(int row);
    // OK: the shown generator's record becomes the description; the
    // transforms are taken from its panel.
    void accept() override;
    // Cancel: no description; the panel's transforms are still taken.
    void reject() override;

    // The shown generator's parameters back to its defaults, keeping its
    // interactive-update setting and the transforms; one host update.
    void restoreDefaults();
    // Step back or forward through the changes made since the dialog was
    // loaded: parameters, transforms, Defaults and generator switches. The
    // page shows the state it returns to and the host receives it once.
    void undo();
    void redo();

protected:
    // The window's close control: no description, and the transforms stay
    // as they were loaded.
    void closeEvent(QCloseEvent* event) override;
    // Lets undo and redo keys past the spin boxes, whose text fields would
    // otherwise take them for their own text.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void resetDescription();
    void loadRecord(const char* record);
    void openOnCheckerboard();
    // Checks `item` alone; null clears every check mark.
    void markChosen(QListWidgetItem* item);
    // Asks for no more height than the dialog's screen can show.
    void fitToScreen();
    void buildEditButtons();
    // The shown generator's state as the host receives it.
    EditHistory::State currentState() const;
    void stateSent(const char* record, const char* transforms);
    void restoreState(const EditHistory::State& state);
    void startHistory();
    void updateEditButtons();

    std::map<std::string, InfoBase*> generators_;
    std::string currentName_;
    Ui::MainWindow* ui_;
    ImageArea* imageArea_ = nullptr;
    char description_[kDescriptionSize];
    TransformData transforms_;

    EditHistory history_;
    // While a state is restored, what the page sends is that state, not a step.
    bool restoring_ = false;
    QAction* undoAction_ = nullptr;
    QAction* redoAction_ = nullptr;
    QPushButton* undoButton_ = nullptr;
    QPushButton* redoButton_ = nullptr;
};

}  // namespace gritwell
