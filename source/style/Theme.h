#pragma once
// Theme: the dialog's dark look with orange accents. Two style-sheet
// templates name their colours by placeholder ("BACKGROUND_COLOR", ...); the
// dialog fills them from the colour defaults below and applies the results.

#include <QColor>
#include <QString>

namespace gritwell::Theme {

// The palette. The copies are separate names so that one part of the look
// can be retuned without touching the rest.
inline constexpr QColor mainBackgroundDefault{26, 26, 26};
inline constexpr QColor mainForegroundDefault{135, 135, 135};
inline constexpr QColor orangeDefault{242, 112, 0};
inline constexpr QColor sliderSlitDefault = mainForegroundDefault;
inline constexpr QColor sliderHandleDefault = orangeDefault;
inline constexpr QColor buttonPressedDefault = orangeDefault;
inline constexpr QColor buttonTextDefault = mainForegroundDefault;  // no sheet uses it
inline constexpr QColor buttonTextPressedDefault{0, 0, 0};          // no sheet uses it
inline constexpr QColor hiliteDefault = mainForegroundDefault;
inline constexpr QColor pushButtonDefault = mainBackgroundDefault;  // no sheet uses it

// "rgb(r, g, b)" with decimal components, as style sheets take a colour.
QString rgbText(const QColor& color);

// The templates as written, placeholders included. The main sheet (for the
// dialog's central widget) uses all six placeholders; the button-box sheet
// only "HILITE_COLOR".
QString mainWindowStyleSheetTemplate();
QString buttonBoxStyleSheetTemplate();

// Every occurrence (case-sensitive) of each placeholder replaced by its
// colour text: the main sheet in the order HILITE, BACKGROUND, FOREGROUND,
// BUTTON_PRESSED, SLIDER_SLIT, SLIDER_HANDLE; the button-box sheet HILITE
// then FOREGROUND. Any text goes in; text without placeholders comes out as is.
QString substituteMainWindowColors(QString sheet);
QString substituteButtonBoxColors(QString sheet);

// The two sheets the dialog applies: the templates, substituted.
QString mainWindowStyleSheet();
QString buttonBoxStyleSheet();

}  // namespace gritwell::Theme
