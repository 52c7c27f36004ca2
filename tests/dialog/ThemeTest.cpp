// The theme: the colour defaults, the placeholder substitution, and the
// sheets as the dialog applies them.

#include <QDialogButtonBox>
#include <QWidget>

#include <gtest/gtest.h>

#include "dialog/MainWindow.h"
#include "style/Theme.h"

using namespace gritwell;

namespace {

const char* const kPlaceholders[] = {"HILITE_COLOR",         "BACKGROUND_COLOR",  "FOREGROUND_COLOR",
                                     "BUTTON_PRESSED_COLOR", "SLIDER_SLIT_COLOR", "SLIDER_HANDLE_COLOR"};

// The declarations of the first rule whose selector line is exactly `selector`.
QString ruleBody(const QString& sheet, const QString& selector) {
    const qsizetype at = sheet.indexOf("\n" + selector + " {");
    if (at < 0) return {};
    const qsizetype open = sheet.indexOf('{', at);
    return sheet.mid(open + 1, sheet.indexOf('}', open) - open - 1);
}

}  // namespace

TEST(Theme, ColourDefaults) {
    EXPECT_EQ(Theme::mainBackgroundDefault, QColor(26, 26, 26));
    EXPECT_EQ(Theme::mainForegroundDefault, QColor(135, 135, 135));
    EXPECT_EQ(Theme::orangeDefault, QColor(242, 112, 0));
    EXPECT_EQ(Theme::sliderSlitDefault, Theme::mainForegroundDefault);
    EXPECT_EQ(Theme::sliderHandleDefault, Theme::orangeDefault);
    EXPECT_EQ(Theme::buttonPressedDefault, Theme::orangeDefault);
    EXPECT_EQ(Theme::buttonTextDefault, Theme::mainForegroundDefault);
    EXPECT_EQ(Theme::buttonTextPressedDefault, QColor(0, 0, 0));
    EXPECT_EQ(Theme::hiliteDefault, Theme::mainForegroundDefault);
    EXPECT_EQ(Theme::pushButtonDefault, Theme::mainBackgroundDefault);
    EXPECT_EQ(Theme::orangeDefault.alpha(), 255);
    EXPECT_EQ(Theme::rgbText(QColor(1, 22, 255)), "rgb(1, 22, 255)");
}

TEST(Theme, SubstitutionReplacesEveryPlaceholderCaseSensitively) {
    const QString main = Theme::substituteMainWindowColors("a HILITE_COLOR b SLIDER_HANDLE_COLOR c hilite_color "
                                                           "BACKGROUND_COLORBACKGROUND_COLOR");
    EXPECT_EQ(main, "a rgb(135, 135, 135) b rgb(242, 112, 0) c hilite_color rgb(26, 26, 26)rgb(26, 26, 26)");
    // The button box fills only the highlight and foreground colours.
    EXPECT_EQ(Theme::substituteButtonBoxColors("HILITE_COLOR FOREGROUND_COLOR BACKGROUND_COLOR"),
              "rgb(135, 135, 135) rgb(135, 135, 135) BACKGROUND_COLOR");
}

TEST(Theme, TemplatesHoldEveryRule) {
    const QString main = Theme::mainWindowStyleSheetTemplate();
    for (const char* selector :
         {"QWidget", "QDialogButtonBox", "QGroupBox", "QGroupBox::title", "QSpinBox::hover", "QSlider",
          "QSlider::groove:horizontal", "QSlider::sub-page:horizontal", "QSlider::add-page:horizontal",
          "QSlider::handle:horizontal", "QSlider::handle:horizontal:hover", "QSlider::sub-page:horizontal:disabled",
          "QSlider::add-page:horizontal:disabled", "QSlider::handle:horizontal:disabled", "QPushButton",
          "QPushButton::hover", "QPushButton::checked", "QFrame[sliderFrame=\"true\"]::hover",
          "QFrame[sliderFrame=\"true\"]", "QComboBox", "QComboBox QAbstractItemView, QComboBox QListView, QComboBox:pressed",
          "QComboBox:focus, QComboBox:default", "QListView::item:alternate", "QListView::item:selected",
          "QListView::item:selected:!active", "QListView::item:selected:active", "QListView::item:hover"})
        EXPECT_FALSE(ruleBody(main, selector).isEmpty()) << selector;
    for (const char* placeholder : kPlaceholders) EXPECT_TRUE(main.contains(placeholder)) << placeholder;
    EXPECT_TRUE(ruleBody(Theme::buttonBoxStyleSheetTemplate(), "QPushButton::hover").contains("HILITE_COLOR"));
}

TEST(Theme, TheDialogAppliesSubstitutedSheets) {
    MainWindow window(nullptr);
    const QString main = window.findChild<QWidget*>("centralWidget")->styleSheet();
    const QString buttons = window.findChild<QDialogButtonBox*>("buttonBox")->styleSheet();
    for (const char* placeholder : kPlaceholders) {
        EXPECT_FALSE(main.contains(placeholder)) << placeholder;
        EXPECT_FALSE(buttons.contains(placeholder)) << placeholder;
    }

    // Orange wherever the slider handle and pressed-button colours stood, the
    // dark background wherever the background did, and nowhere else.
    const QString raw = Theme::mainWindowStyleSheetTemplate();
    EXPECT_EQ(main.count("rgb(242, 112, 0)"), raw.count("SLIDER_HANDLE_COLOR") + raw.count("BUTTON_PRESSED_COLOR"));
    EXPECT_EQ(main.count("rgb(26, 26, 26)"), raw.count("BACKGROUND_COLOR"));
    EXPECT_TRUE(ruleBody(main, "QSlider::handle:horizontal").contains("background: rgb(242, 112, 0);"));
    EXPECT_TRUE(ruleBody(main, "QWidget").contains("background-color: rgb(26, 26, 26);"));
    EXPECT_TRUE(ruleBody(main, "QComboBox QAbstractItemView, QComboBox QListView, QComboBox:pressed")
                    .contains("selection-background-color: rgb(242, 112, 0);"));
    EXPECT_TRUE(ruleBody(buttons, "QPushButton::hover").contains("border-color: rgb(135, 135, 135);"));
}
