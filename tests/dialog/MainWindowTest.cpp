// The dialog: its list of generators, loading the host's record, switching
// generators, what OK, Cancel and the close control hand back, Defaults, and
// undo and redo.

#include <algorithm>
#include <array>
#include <cstring>
#include <vector>

#include <QApplication>
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
#include "core/FloatToInt.h"
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

QPushButton* button(const MainWindow& w, const QString& text) {
    for (QAbstractButton* b : w.findChild<QDialogButtonBox*>("buttonBox")->buttons())
        if (b->text() == text) return static_cast<QPushButton*>(b);
    ADD_FAILURE() << "no button " << text.toStdString();
    return nullptr;
}

// On brickRecord() and the host's transforms, shown and active so that its
// keyboard shortcuts work.
void openActiveOnBrick(MainWindow& w) {
    const auto record = brickRecord();
    w.setDescriptionAndTransforms(record.data(), hostTransforms());
    w.show();
    w.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&w));
}

int sliderShowing(float value) { return truncToInt(static_cast<double>(value * 100.0f)); }

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

// Two changes, then undo and redo with each of their keys: every step sends
// the host the state it returns to exactly once and shows it; a key with
// nothing to undo or redo sends nothing, and the host's record is as far
// back as undo goes.
TEST(MainWindow, UndoAndRedoSendTheRestoredStateOnceAndShowIt) {
    dialogtest::RecordingHost host;
    MainWindow w(nullptr);
    openActiveOnBrick(w);
    QSlider* colour = control<QSlider>(w, "Brick", "brickColor");
    QSlider* transX = control<QSlider>(w, "Brick", "transX");
    struct Shown {
        int colour, transX;
        std::array<char, 256> record;
        TransformData transforms;
    };
    const auto shown = [&] {
        Shown s{colour->value(), transX->value(), {}, panelTransforms(w, "Brick")};
        w.getCurrentTexture()->getDescription(s.record.data());
        return s;
    };
    std::vector<Shown> states{shown()};
    EXPECT_FALSE(button(w, "Undo")->isEnabled());
    hostUpdates().clear();
    colour->setValue(12);
    states.push_back(shown());
    transX->setValue(-40);
    states.push_back(shown());
    ASSERT_EQ(hostUpdates().size(), 2u);

    const struct {
        Qt::KeyboardModifiers modifiers;
        Qt::Key key;
        std::size_t state;
        bool moves;
    } steps[] = {
        {Qt::ControlModifier, Qt::Key_Z, 1, true},
        {Qt::ControlModifier, Qt::Key_Z, 0, true},
        {Qt::ControlModifier, Qt::Key_Z, 0, false},
        {Qt::ControlModifier | Qt::ShiftModifier, Qt::Key_Z, 1, true},
        {Qt::ControlModifier, Qt::Key_Y, 2, true},
        {Qt::ControlModifier, Qt::Key_Y, 2, false},
    };
    for (const auto& step : steps) {
        SCOPED_TRACE(QKeySequence(step.modifiers | step.key).toString().toStdString());
        hostUpdates().clear();
        QTest::keyClick(&w, step.key, step.modifiers);
        const Shown& expected = states[step.state];
        ASSERT_EQ(hostUpdates().size(), step.moves ? 1u : 0u);
        if (step.moves) {
            EXPECT_EQ(std::memcmp(hostUpdates()[0].record.data(), expected.record.data(), BrickTexture3D::kRecordSize), 0);
            expectSameTransforms(TransformData::fromBytes(hostUpdates()[0].transforms.data()), expected.transforms);
        }
        const Shown now = shown();
        EXPECT_EQ(now.colour, expected.colour);
        EXPECT_EQ(now.transX, expected.transX);
        EXPECT_EQ(std::memcmp(now.record.data(), expected.record.data(), BrickTexture3D::kRecordSize), 0);
        expectSameTransforms(now.transforms, expected.transforms);
        EXPECT_EQ(button(w, "Undo")->isEnabled(), step.state > 0);
        EXPECT_EQ(button(w, "Redo")->isEnabled(), step.state < 2);
    }
}

// A slider held down through several values, Defaults and a generator switch
// are one step each. Defaults sends once and keeps interactive update and the
// transforms; undo keys work from inside a spin box, which would otherwise
// take them for its text.
TEST(MainWindow, ADragDefaultsAndASwitchAreOneStepEach) {
    dialogtest::RecordingHost host;
    MainWindow w(nullptr);
    openActiveOnBrick(w);
    QSlider* colour = control<QSlider>(w, "Brick", "brickColor");
    const int loaded = colour->value();
    colour->setSliderDown(true);
    for (int value : {20, 30, 40}) colour->setValue(value);
    colour->setSliderDown(false);

    hostUpdates().clear();
    button(w, "Defaults")->click();
    BrickTexture3D defaults;
    defaults.setInteractiveUpdate(false);
    char expected[256] = {};
    defaults.getDescription(expected);
    ASSERT_EQ(hostUpdates().size(), 1u);
    EXPECT_EQ(std::memcmp(hostUpdates()[0].record.data(), expected, BrickTexture3D::kRecordSize), 0);
    expectSameTransforms(TransformData::fromBytes(hostUpdates()[0].transforms.data()), hostTransforms());
    EXPECT_EQ(colour->value(), sliderShowing(defaults.getBrickColor()));
    EXPECT_FALSE(control<QPushButton>(w, "Brick", "newInteractiveUpdate")->isChecked());

    click(w, "Wood");
    const struct {
        const char* generator;
        int colour;
    } undos[] = {{"Brick", sliderShowing(defaults.getBrickColor())}, {"Brick", 40}, {"Brick", loaded}};
    for (const auto& undo : undos) {
        control<QDoubleSpinBox>(w, w.currentGenerator(), "overallScale")->setFocus();
        ASSERT_EQ(QApplication::focusWidget(), control<QDoubleSpinBox>(w, w.currentGenerator(), "overallScale"));
        hostUpdates().clear();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Z, Qt::ControlModifier);
        ASSERT_EQ(hostUpdates().size(), 1u);
        EXPECT_STREQ(hostUpdates()[0].record.data() + 1, undo.generator);
        EXPECT_EQ(w.currentGenerator(), undo.generator);
        EXPECT_EQ(checkedItems(w), std::vector<std::string>{undo.generator});
        EXPECT_EQ(stackOf(w)->currentWidget(), w.entry(undo.generator)->getStackWidget());
        EXPECT_EQ(colour->value(), undo.colour);
    }
    EXPECT_FALSE(button(w, "Undo")->isEnabled());
}
