// The theme: what each placeholder of the style sheets becomes, and the
// sheets as the dialog applies them.

#include <QDialogButtonBox>
#include <QWidget>

#include <gtest/gtest.h>

#include "dialog/MainWindow.h"
#include "style/Theme.h"

using namespace gritwell;

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

TEST(Theme, TheDialogAppliesTheSubstitutedSheets) {
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
}
