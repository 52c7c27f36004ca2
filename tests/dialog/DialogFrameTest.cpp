// The dialog's frame: where it first opens, its theme, and the application
// events it watches.

#include <array>
#include <climits>
#include <cstdlib>
#include <sstream>
#include <utility>
#include <vector>

#include <QApplicationStateChangeEvent>
#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QEvent>
#include <QImage>
#include <QListWidget>
#include <QObject>
#include <QTest>
#include <QWidget>

#include <gtest/gtest.h>

#include "dialog/ApplicationEventFilter.h"
#include "dialog/DialogPlacement.h"
#include "dialog/MainWindow.h"
#include "style/Theme.h"

using namespace gritwell;

// ---- Where it first opens ---------------------------------------------------
// Where the dialog first opens: centred on the host's window with Qt's
// inclusive extent, halves truncated toward zero, never left of 0 nor above
// the menu bar, saturating at the int range.

using gritwell::DialogPlacement::centredPosition;

TEST(DialogPlacement, CentresClampsAndSaturates) {
    const struct {
        QRect host, dialog;
        QPoint expected;
    } cases[] = {
        // w = 599, h = 399: x = 960 - 299, y = 540 - 199.
        {QRect(0, 0, 1920, 1080), QRect(0, 0, 600, 400), QPoint(661, 341)},
        // An offset host; the dialog's own position plays no part.
        {QRect(100, 50, 801, 601), QRect(-7, 900, 201, 101), QPoint(400, 300)},
        // An empty dialog has extent -1, whose half is 0 (a floor would give -1).
        {QRect(0, 100, 11, 11), QRect(0, 0, 0, 0), QPoint(5, 105)},
        // A host of negative width: -7/2 is -3 (a floor would give -4).
        {QRect(100, 100, -7, 100), QRect(0, 0, 1, 1), QPoint(97, 150)},
        {QRect(0, 0, 300, 200), QRect(0, 0, 800, 600), QPoint(0, 45)},
        {QRect(-500, -500, 100, 100), QRect(0, 0, 10, 10), QPoint(0, 45)},
        // Exactly at the limits stays there.
        {QRect(0, 0, 99, 189), QRect(0, 0, 100, 100), QPoint(0, 45)},
        {QRect(0, 0, 100, 190), QRect(0, 0, 100, 100), QPoint(1, 46)},
        // An inverted dialog of extent -(2^32 - 1) pushes the corner past the int range.
        {QRect(QPoint(0, 0), QPoint(INT_MAX - 1, INT_MAX - 1)), QRect(QPoint(INT_MAX, INT_MAX), QPoint(INT_MIN, INT_MIN)),
         QPoint(INT_MAX, INT_MAX)},
    };
    for (const auto& c : cases) EXPECT_EQ(centredPosition(c.host, c.dialog), c.expected) << c.host.x() << "," << c.host.y();
}

// ---- The theme --------------------------------------------------------------
// The theme: what each placeholder of the style sheets becomes, and the
// sheets as the dialog applies them.

namespace {

const struct {
    const char* placeholder;
    const char* colour;
    bool inButtonBox;  // the button box fills only these
} kPlaceholders[] = {
    {"HILITE_COLOR", "rgb(135, 135, 135)", true},        {"FOREGROUND_COLOR", "rgb(135, 135, 135)", true},
    {"BACKGROUND_COLOR", "rgb(26, 26, 26)", false},      {"BUTTON_PRESSED_COLOR", "rgb(242, 112, 0)", false},
    {"SLIDER_SLIT_COLOR", "rgb(135, 135, 135)", false},  {"SLIDER_HANDLE_COLOR", "rgb(242, 112, 0)", false},
};

}  // namespace

TEST(Theme, EachPlaceholderBecomesItsColourCaseSensitively) {
    for (const auto& p : kPlaceholders) {
        const QString lower = QString(p.placeholder).toLower();
        const QString text = QString("a %1%1 b ").arg(p.placeholder) + lower;
        const QString filled = QString("a %1%1 b ").arg(p.colour) + lower;
        EXPECT_EQ(Theme::substituteMainWindowColors(text), filled) << p.placeholder;
        EXPECT_EQ(Theme::substituteButtonBoxColors(text), p.inButtonBox ? filled : text) << p.placeholder;
    }
}

TEST(Theme, TheDialogAppliesTheSheetsAndTheListShowsItsRowsAndCheckBoxes) {
    MainWindow window(nullptr);
    const QString main = window.findChild<QWidget*>("centralWidget")->styleSheet();
    const QString buttons = window.findChild<QDialogButtonBox*>("buttonBox")->styleSheet();
    EXPECT_EQ(main, Theme::substituteMainWindowColors(Theme::mainWindowStyleSheetTemplate()));
    EXPECT_EQ(buttons, Theme::substituteButtonBoxColors(Theme::buttonBoxStyleSheetTemplate()));
    for (const auto& p : kPlaceholders) {
        EXPECT_TRUE(Theme::mainWindowStyleSheetTemplate().contains(p.placeholder)) << p.placeholder;
        EXPECT_FALSE(main.contains(p.placeholder)) << p.placeholder;
        EXPECT_FALSE(buttons.contains(p.placeholder)) << p.placeholder;
    }
    EXPECT_TRUE(buttons.contains("rgb(135, 135, 135)"));

    // On the dark ground the current row stands out, and the chosen
    // generator's check box is filled and checked (the check mark is a
    // built-in picture); the other check boxes show their border.
    window.setDescriptionAndTransforms(std::array<char, 256>{}.data(), TransformData{});
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    auto* list = window.findChild<QListWidget*>("generatorList");
    const QImage image = list->viewport()->grab().toImage();
    const auto row = [&](const char* generator) { return list->visualItemRect(list->findItems(generator, Qt::MatchExactly).value(0)); };
    // The grab may round a channel by one.
    const auto near = [](QColor a, QColor b) { return std::abs(a.red() - b.red()) + std::abs(a.green() - b.green()) + std::abs(a.blue() - b.blue()) <= 3; };
    // Pixels of `colour` in the check box's end of a row.
    const auto countInCheckBox = [&](const QRect& r, const QColor& colour) {
        int count = 0;
        for (int y = r.top(); y <= r.bottom(); ++y)
            for (int x = r.left(); x < r.left() + r.height(); ++x) count += near(image.pixelColor(x, y), colour);
        return count;
    };
    const QRect current = row("Checkerboard"), other = row("Wood");
    EXPECT_TRUE(near(image.pixelColor(current.right() - 4, current.center().y()), Theme::hiliteDefault));
    EXPECT_TRUE(near(image.pixelColor(other.right() - 4, other.center().y()), Theme::mainBackgroundDefault));
    EXPECT_GT(countInCheckBox(current, Theme::buttonPressedDefault), 0);
    EXPECT_GT(countInCheckBox(current, Qt::black), 0);
    EXPECT_EQ(countInCheckBox(other, Theme::buttonPressedDefault), 0);
    EXPECT_GT(countInCheckBox(other, Theme::mainForegroundDefault), 0);
}

// ---- Application events -----------------------------------------------------
// The application event filter: what each event prints, and whether it sets
// the killed flag. Every event goes on to the application.

using gritwell::ApplicationEventFilter;

TEST(ApplicationEventFilter, PrintsEachApplicationEventAndLetsItThrough) {
    QEvent quit(QEvent::Quit), close(QEvent::Close);
    QApplicationStateChangeEvent active(Qt::ApplicationActive), inactive(Qt::ApplicationInactive),
        hidden(Qt::ApplicationHidden), suspended(Qt::ApplicationSuspended);
    QObject other;
    const struct {
        std::vector<std::pair<QObject*, QEvent*>> events;
        const char* printed;
        bool killed;
    } cases[] = {
        {{{QCoreApplication::instance(), &quit}}, "kEventAppQuit\n", true},
        // Leaving the hidden state says so first.
        {{{QCoreApplication::instance(), &active},
          {QCoreApplication::instance(), &inactive},
          {QCoreApplication::instance(), &hidden},
          {QCoreApplication::instance(), &active},
          {QCoreApplication::instance(), &suspended}},
         "kEventAppActivated\nkEventAppDeactivated\nkEventAppHidden\nkEventAppShown\nkEventAppActivated\n",
         false},
        // Only the application object is watched, and only these events.
        {{{&other, &quit}, {QCoreApplication::instance(), &close}}, "", false},
    };
    for (const auto& c : cases) {
        bool killed = false;
        std::ostringstream out;
        ApplicationEventFilter filter(killed, out);
        for (const auto& [watched, event] : c.events) EXPECT_FALSE(filter.eventFilter(watched, event));
        EXPECT_EQ(out.str(), c.printed);
        EXPECT_EQ(killed, c.killed);
    }
}
