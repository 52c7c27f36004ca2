// The dialog: its list of generators, loading the host's record, switching
// generators, what OK, Cancel and the close control hand back, Defaults, and
// undo and redo.

#include <algorithm>
#include <array>
#include <cstring>
#include <functional>
#include <vector>

#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QListWidget>
#include <QPushButton>
#include <QSlider>
#include <QStackedWidget>
#include <QTest>
#include <QWindow>

#include <gtest/gtest.h>

#include "DialogTestSupport.h"
#include "dialog/EditHistory.h"
#include "dialog/GeneratorRegistry.h"
#include "dialog/MainWindow.h"
#include "dialog/QtWrapperBase.h"
#include "textures/BrickTexture3D.h"
#include "textures/CellTexture3D.h"
#include "textures/CheckerboardTexture3D.h"
#include "textures/ConstantTexture3D.h"

using namespace gritwell;
using dialogtest::hostUpdates;

namespace {

QListWidget* listOf(const MainWindow& w) { return w.findChild<QListWidget*>("generatorList"); }
QStackedWidget* stackOf(const MainWindow& w) { return w.findChild<QStackedWidget*>("stackedWidget"); }

// A control on a generator's page (names repeat from page to page).
template <class C>
C* control(const MainWindow& w, const std::string& generator, const char* name) {
    InfoBase* entry = w.entry(generator);
    EXPECT_NE(entry, nullptr) << generator;
    C* c = entry->getStackWidget()->findChild<C*>(name);
    EXPECT_NE(c, nullptr) << generator << " " << name;
    return c;
}

std::vector<std::string> checkedItems(const MainWindow& w) {
    std::vector<std::string> checked;
    for (int row = 0; row < listOf(w)->count(); ++row)
        if (listOf(w)->item(row)->checkState() == Qt::Checked) checked.push_back(listOf(w)->item(row)->text().toStdString());
    return checked;
}

TransformData panelTransforms(const MainWindow& w, const std::string& generator) {
    TransformData t;
    w.entry(generator)->getWrapper()->getTransforms(t);
    return t;
}

TransformData hostTransforms() {
    TransformData t;
    t.flags = 2 | 4;
    t.xOffset = 0.25f;
    t.zAngle = -0.125f;
    t.overallScale = 3.5f;
    t.yScale = 0.5f;
    return t;
}

void expectSameTransforms(const TransformData& a, const TransformData& b) {
    EXPECT_EQ(std::memcmp(&a, &b, sizeof a), 0);
}

// A Brick record away from its defaults, interactive update off.
std::array<char, 256> brickRecord() {
    BrickTexture3D brick;
    brick.setPattern(BrickTexture3D::HERRINGBONE);
    brick.setBrickWidth(1.234f);
    brick.setInteractiveUpdate(false);
    std::array<char, 256> record{};
    brick.getDescription(record.data());
    return record;
}

void click(MainWindow& w, const std::string& generator) {
    QListWidget* list = listOf(w);
    const QRect where = list->visualItemRect(w.entry(generator)->getItem());
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, where.center());
}

}  // namespace

TEST(MainWindow, ListsTheRegisteredGeneratorsInOrderUnchecked) {
    MainWindow w(nullptr);
    const auto registrations = GeneratorRegistry::registrations();
    ASSERT_EQ(listOf(w)->count(), static_cast<int>(registrations.size()));
    for (std::size_t row = 0; row < registrations.size(); ++row) {
        const QListWidgetItem* item = listOf(w)->item(static_cast<int>(row));
        EXPECT_EQ(item->text().toStdString(), registrations[row].name);
        EXPECT_EQ(item->checkState(), Qt::Unchecked) << registrations[row].name;
        EXPECT_TRUE(item->flags() & Qt::ItemIsUserCheckable);
        // Pages stand in the stack in the same order, after the form's two.
        EXPECT_EQ(stackOf(w)->widget(static_cast<int>(row) + 2), w.entry(std::string(registrations[row].name))->getStackWidget());
    }
    for (const char* hidden : {"Constant", "Cell Noise", "Penrose Rhombus"}) {
        EXPECT_EQ(w.entry(hidden), nullptr) << hidden;
        EXPECT_TRUE(listOf(w)->findItems(hidden, Qt::MatchExactly).isEmpty()) << hidden;
    }
    EXPECT_EQ(w.currentGenerator(), "Checkerboard");
    EXPECT_EQ(stackOf(w)->currentWidget(), w.entry("Checkerboard")->getStackWidget());
    EXPECT_EQ(w.windowTitle(), "Gritwell");

    char description[MainWindow::kDescriptionSize];
    w.getDescription(description);
    EXPECT_EQ(description[0], 0);
    EXPECT_TRUE(std::all_of(description + 1, description + sizeof description, [](char c) { return c == ' '; }));
}

TEST(MainWindow, LoadingABrickRecordShowsItsValues) {
    dialogtest::RecordingHost host;
    MainWindow w(nullptr);
    const auto record = brickRecord();
    w.setDescriptionAndTransforms(record.data(), hostTransforms());

    EXPECT_EQ(w.currentGenerator(), "Brick");
    EXPECT_EQ(checkedItems(w), std::vector<std::string>{"Brick"});
    EXPECT_EQ(listOf(w)->currentItem(), w.entry("Brick")->getItem());
    EXPECT_EQ(stackOf(w)->currentWidget(), w.entry("Brick")->getStackWidget());

    // The page shows the record (the panels' own suite checks every control).
    EXPECT_DOUBLE_EQ(control<QDoubleSpinBox>(w, "Brick", "width")->value(), 1.234);
    EXPECT_FALSE(control<QPushButton>(w, "Brick", "newInteractiveUpdate")->isChecked());
    EXPECT_EQ(control<QSlider>(w, "Brick", "transX")->value(), 25);
    EXPECT_EQ(control<QSlider>(w, "Brick", "rotZ")->value(), -45);

    // The texture holds the record exactly, and the host's flags word.
    char held[256] = {};
    w.getCurrentTexture()->getDescription(held);
    EXPECT_EQ(std::memcmp(held, record.data(), BrickTexture3D::kRecordSize), 0);
    EXPECT_EQ(w.getCurrentTexture()->flags(), 6);
    expectSameTransforms(panelTransforms(w, "Brick"), hostTransforms());
    // Choosing Brick sent its state to the host.
    ASSERT_FALSE(hostUpdates().empty());
    EXPECT_STREQ(hostUpdates().back().record.data() + 1, "Brick");
}

TEST(MainWindow, AnEmptyOrUnknownRecordOpensOnCheckerboardWithTheHostsTransforms) {
    ConstantTexture3D constant;
    CellTexture3D cell;
    std::array<char, 256> constantRecord{}, cellRecord{}, unknown{}, empty{};
    constant.getDescription(constantRecord.data());
    cell.getDescription(cellRecord.data());
    unknown = brickRecord();
    std::memcpy(unknown.data() + 1, "Brickwork", 10);

    for (const auto* record : {&empty, &constantRecord, &cellRecord, &unknown}) {
        MainWindow w(nullptr);
        w.setDescriptionAndTransforms(record->data(), hostTransforms());
        EXPECT_EQ(w.currentGenerator(), "Checkerboard");
        EXPECT_EQ(checkedItems(w), std::vector<std::string>{"Checkerboard"});
        EXPECT_EQ(stackOf(w)->currentWidget(), w.entry("Checkerboard")->getStackWidget());
        EXPECT_EQ(control<QSlider>(w, "Checkerboard", "transX")->value(), 25);
        expectSameTransforms(panelTransforms(w, "Checkerboard"), hostTransforms());
        // At the checkerboard's own defaults.
        char held[256] = {}, defaults[256] = {};
        w.getCurrentTexture()->getDescription(held);
        CheckerboardTexture3D().getDescription(defaults);
        EXPECT_EQ(std::memcmp(held, defaults, sizeof held), 0);
    }
}

TEST(MainWindow, ClickingASecondGeneratorMovesTheCheckAndCarriesTheTransforms) {
    dialogtest::RecordingHost host;
    MainWindow w(nullptr);
    std::array<char, 256> empty{};
    w.setDescriptionAndTransforms(empty.data(), TransformData{});
    w.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&w));

    control<QSlider>(w, "Checkerboard", "transX")->setValue(30);
    control<QSlider>(w, "Checkerboard", "rotY")->setValue(90);
    control<QDoubleSpinBox>(w, "Checkerboard", "overallScale")->setValue(2.5);
    control<QSlider>(w, "Checkerboard", "scaleZ")->setValue(40);
    const TransformData before = panelTransforms(w, "Checkerboard");

    hostUpdates().clear();
    click(w, "Brick");
    EXPECT_EQ(w.currentGenerator(), "Brick");
    EXPECT_EQ(checkedItems(w), std::vector<std::string>{"Brick"});
    EXPECT_EQ(stackOf(w)->currentWidget(), w.entry("Brick")->getStackWidget());
    expectSameTransforms(panelTransforms(w, "Brick"), before);
    EXPECT_EQ(control<QSlider>(w, "Brick", "rotY")->value(), 90);
    EXPECT_EQ(control<QSlider>(w, "Brick", "scaleZ")->value(), 40);
    ASSERT_FALSE(hostUpdates().empty());
    EXPECT_STREQ(hostUpdates().back().record.data() + 1, "Brick");
    EXPECT_EQ(TransformData::fromBytes(hostUpdates().back().transforms.data()).yAngle, 0.25f);

    // Each generator keeps its own parameters for the life of the dialog.
    control<QSlider>(w, "Brick", "brickColor")->setValue(12);
    click(w, "Checkerboard");
    click(w, "Brick");
    EXPECT_EQ(static_cast<BrickTexture3D*>(w.getCurrentTexture())->getBrickColor(), 0.12f);
    EXPECT_EQ(control<QSlider>(w, "Brick", "brickColor")->value(), 12);
}

TEST(MainWindow, MovingTheCurrentRowWithoutAClickChoosesNothing) {
    MainWindow w(nullptr);
    listOf(w)->setCurrentItem(w.entry("Brick")->getItem());
    EXPECT_EQ(w.currentGenerator(), "Checkerboard");
    EXPECT_TRUE(checkedItems(w).empty());
}

// OK hands back the record shown and the transforms as edited; Cancel and
// Escape no record but the edited transforms; the close control neither.
TEST(MainWindow, EachWayOfClosingHandsBackItsShare) {
    enum class Close { Ok, Cancel, Escape, CloseControl };
    const struct {
        Close how;
        bool givesRecord;
        bool givesEditedTransforms;
    } ways[] = {{Close::Ok, true, true},
                {Close::Cancel, false, true},
                {Close::Escape, false, true},
                {Close::CloseControl, false, false}};
    for (const auto& way : ways) {
        SCOPED_TRACE(static_cast<int>(way.how));
        MainWindow w(nullptr);
        const auto record = brickRecord();
        w.setDescriptionAndTransforms(record.data(), hostTransforms());
        w.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&w));
        control<QSlider>(w, "Brick", "mortarColor")->setValue(55);
        control<QSlider>(w, "Brick", "transY")->setValue(-10);
        const auto* buttons = w.findChild<QDialogButtonBox*>("buttonBox");
        switch (way.how) {
            case Close::Ok: QTest::mouseClick(buttons->button(QDialogButtonBox::Ok), Qt::LeftButton); break;
            case Close::Cancel: QTest::mouseClick(buttons->button(QDialogButtonBox::Cancel), Qt::LeftButton); break;
            case Close::Escape: QTest::keyClick(&w, Qt::Key_Escape); break;
            case Close::CloseControl: w.windowHandle()->close(); break;
        }
        EXPECT_TRUE(QTest::qWaitFor([&] { return !w.isVisible(); }));

        char description[MainWindow::kDescriptionSize];
        w.getDescription(description);
        const std::size_t size = way.givesRecord ? BrickTexture3D::kRecordSize : 1;
        char expected[MainWindow::kDescriptionSize];
        std::memset(expected, ' ', sizeof expected);
        if (way.givesRecord)
            w.getCurrentTexture()->getDescription(expected);
        else
            expected[0] = 0;
        EXPECT_EQ(std::memcmp(description, expected, size), 0);
        EXPECT_TRUE(std::all_of(description + size, description + sizeof description, [](char c) { return c == ' '; }));

        TransformData out;
        w.getTransforms(out);
        TransformData edited = hostTransforms();
        edited.yOffset = static_cast<float>(-10 / 100.0);
        expectSameTransforms(out, way.givesEditedTransforms ? edited : hostTransforms());
    }
}

// Changes of every kind, then undo and redo with each of their keys, some
// pressed in a spin box (whose text field would otherwise take them): each
// step sends the host the state it returns to exactly once and shows it. A
// slider held down through several values, Defaults (which keeps interactive
// update and the transforms) and choosing another generator are one step
// each; a key with nothing to undo or redo sends nothing, and the host's
// record is as far back as undo goes.
TEST(MainWindow, UndoAndRedoReturnToEachStepAndSendItOnce) {
    dialogtest::RecordingHost host;
    MainWindow w(nullptr);
    const auto record = brickRecord();
    w.setDescriptionAndTransforms(record.data(), hostTransforms());
    w.show();
    w.activateWindow();  // for its keyboard shortcuts
    ASSERT_TRUE(QTest::qWaitForWindowActive(&w));
    QSlider* colour = control<QSlider>(w, "Brick", "brickColor");
    QSlider* transX = control<QSlider>(w, "Brick", "transX");
    struct Shown {
        std::string generator;
        int colour, transX;
        EditHistory::State sent;  // what the host is sent
        bool operator==(const Shown&) const = default;
    };
    const auto shown = [&] {
        char record[256] = {}, transforms[44];
        w.getCurrentTexture()->getDescription(record);
        panelTransforms(w, w.currentGenerator()).toBytes(transforms);
        return Shown{w.currentGenerator(), colour->value(), transX->value(), EditHistory::State::of(record, transforms)};
    };
    const std::function<void()> changes[] = {
        [&] { colour->setValue(12); },
        [&] { transX->setValue(-40); },
        [&] { colour->setSliderDown(true); for (int v : {20, 30, 40}) colour->setValue(v); colour->setSliderDown(false); },
        [&] { w.findChild<QPushButton*>("defaultsButton")->click(); },
        [&] { click(w, "Wood"); },
    };
    std::vector<Shown> states{shown()};
    for (const auto& change : changes) {
        hostUpdates().clear();
        change();
        EXPECT_TRUE(&change != &changes[3] || hostUpdates().size() == 1) << "Defaults sent " << hostUpdates().size();
        states.push_back(shown());
    }
    BrickTexture3D defaults;
    defaults.setInteractiveUpdate(false);
    std::array<char, 256> defaultRecord{};
    defaults.getDescription(defaultRecord.data());
    EXPECT_EQ(states[4].sent.record, defaultRecord);
    EXPECT_EQ(states[4].sent.transforms, states[3].sent.transforms);

    constexpr auto undo = Qt::CTRL | Qt::Key_Z, redo = Qt::CTRL | Qt::SHIFT | Qt::Key_Z, redoY = Qt::CTRL | Qt::Key_Y;
    const struct {
        QKeyCombination keys;
        bool inSpinBox;
        std::size_t state;
        bool moves;
    } steps[] = {{undo, true, 4, true},  {undo, true, 3, true},   {undo, false, 2, true}, {undo, false, 1, true},
                 {undo, false, 0, true}, {undo, false, 0, false}, {redo, true, 1, true},  {redoY, false, 2, true},
                 {redo, false, 3, true}, {redoY, false, 4, true}, {redo, false, 5, true}, {redoY, false, 5, false}};
    for (const auto& step : steps) {
        SCOPED_TRACE(QKeySequence(step.keys).toString().toStdString() + " to " + std::to_string(step.state));
        QWidget* target = &w;
        if (step.inSpinBox) target = control<QDoubleSpinBox>(w, w.currentGenerator(), "overallScale");
        target->setFocus();
        ASSERT_TRUE(target->hasFocus());
        hostUpdates().clear();
        QTest::keyClick(target, step.keys.key(), step.keys.keyboardModifiers());
        const Shown& expected = states[step.state];
        ASSERT_EQ(hostUpdates().size(), step.moves ? 1u : 0u);
        for (const auto& update : hostUpdates())
            EXPECT_TRUE(EditHistory::State::of(update.record.data(), update.transforms.data()) == expected.sent);
        EXPECT_TRUE(shown() == expected);
        EXPECT_EQ(checkedItems(w), std::vector<std::string>{expected.generator});
        EXPECT_EQ(stackOf(w)->currentWidget(), w.entry(expected.generator)->getStackWidget());
        EXPECT_EQ(w.findChild<QPushButton*>("undoButton")->isEnabled(), step.state > 0);
        EXPECT_EQ(w.findChild<QPushButton*>("redoButton")->isEnabled(), step.state < 5);
    }
}
