#include "style/Theme.h"

namespace gritwell::Theme {

namespace {

// The sheet of the dialog's central widget, and so of every page under it.
constexpr char kMainWindowStyleSheet[] = R"(
QWidget {
    font: 75 10pt "Verdana";
    font-weight: 900;
    color: FOREGROUND_COLOR;
    background-color: BACKGROUND_COLOR;
}

QDialogButtonBox {
    button-layout: 0;
}

QGroupBox {
    min-width: 210px;
    max-width: 210px;
    border: 1px solid FOREGROUND_COLOR;
    border-radius: 5px;
    margin-top: 2ex; /* room for the title */
}

QGroupBox::title {
    margin-top: 0.5ex;
    subcontrol-origin: margin;
    subcontrol-position: top center;
    padding: 0 3px;
}

QSpinBox::hover {
    border-color: red;
}

QSlider {
    margin-top: -5px;
    margin-bottom: -5px;
}

QSlider::groove:horizontal {
    border: 1px solid #bbb;
    background: white;
    height: 9px;
    border-radius: 4px;
}

QSlider::sub-page:horizontal {
    background: qlineargradient(x1: 0, y1: 0, x2: 1, y2: 0,
                                stop: 0 BACKGROUND_COLOR, stop: 1 SLIDER_SLIT_COLOR);
    border: 5px solid BACKGROUND_COLOR;
    height: 5px;
    border-radius: 0px;
}

QSlider::add-page:horizontal {
    background: qlineargradient(x1: 0, y1: 0, x2: 1, y2: 0,
                                stop: 0 SLIDER_SLIT_COLOR, stop: 1 BACKGROUND_COLOR);
    border: 5px solid BACKGROUND_COLOR;
    height: 5px;
    border-radius: 0px;
}

QSlider::handle:horizontal {
    background: SLIDER_HANDLE_COLOR;
    border: 1px solid SLIDER_HANDLE_COLOR;
    width: 13px;
    margin-top: 1px;
    margin-bottom: 1px;
    border-radius: 3px;
}

QSlider::handle:horizontal:hover {
    background: SLIDER_HANDLE_COLOR;
    border: 1px solid SLIDER_HANDLE_COLOR;
    border-radius: 3px;
}

QSlider::sub-page:horizontal:disabled {
    background: #bbb;
    border-color: #999;
}

QSlider::add-page:horizontal:disabled {
    background: #eee;
    border-color: #999;
}

QSlider::handle:horizontal:disabled {
    background: #eee;
    border: 1px solid #aaa;
    border-radius: 4px;
}

/* A page taller than the screen scrolls; the bar is dark like the rest. */
QScrollBar:vertical {
    background: BACKGROUND_COLOR;
    width: 12px;
    margin: 0px;
}

QScrollBar::handle:vertical {
    background: FOREGROUND_COLOR;
    border-radius: 4px;
    min-height: 24px;
    margin: 2px;
}

QScrollBar::handle:vertical:hover {
    background: SLIDER_HANDLE_COLOR;
}

QScrollBar::add-line:vertical, QScrollBar::sub-line:vertical {
    height: 0px;
}

QScrollBar::add-page:vertical, QScrollBar::sub-page:vertical {
    background: none;
}

QPushButton {
    background-color: BACKGROUND_COLOR;
    border-style: outset;
    border-width: 1px;
    border-color: black;
    border-radius: 4px;
    padding: 1px;
    min-width: 5em;
    margin-bottom: 8px;
}

QPushButton::hover {
    border-color: HILITE_COLOR;
}

QPushButton::checked {
    background-color: qlineargradient(x1: 0, y1: 0, x2: 0, y2: 1,
                                      stop: 0 rgba(74, 34, 0, 255),
                                      stop: 0.16 rgba(200, 92, 0, 255),
                                      stop: 0.28 rgba(242, 112, 0, 255),
                                      stop: 1 rgba(242, 112, 0, 255));
    color: black;
}

QFrame[sliderFrame="true"]::hover {
    border: 1px solid HILITE_COLOR;
    border-radius: 6px;
}

QFrame[sliderFrame="true"] {
    border: 1px solid BACKGROUND_COLOR;
    border-radius: 6px;
    margin-top: 0px;
    margin-bottom: 0px;
    margin-left: 2px;
    margin-right: 2px;
}

QComboBox {
    selection-color: FOREGROUND_COLOR;
}

QComboBox QAbstractItemView, QComboBox QListView, QComboBox:pressed {
    selection-color: black;
    selection-background-color: BUTTON_PRESSED_COLOR;
}

QComboBox:focus, QComboBox:default {
    selection-color: FOREGROUND_COLOR;
    selection-background-color: BACKGROUND_COLOR;
}

QListView::item:alternate {
    background: #EEEEEE;
}

QListView::item:selected {
    border: 1px solid BACKGROUND_COLOR;
    color: FOREGROUND_COLOR;
    background: BACKGROUND_COLOR;
}

QListView::item:selected:!active {
    border: 1px solid BACKGROUND_COLOR;
    color: FOREGROUND_COLOR;
    background: BACKGROUND_COLOR;
}

QListView::item:selected:active {
    border: 0px solid BACKGROUND_COLOR;
    color: FOREGROUND_COLOR;
    background: BACKGROUND_COLOR;
}

QListView::item:hover {
    border: 1px solid BACKGROUND_COLOR;
    color: FOREGROUND_COLOR;
    background: BACKGROUND_COLOR;
}

/* The generator list: the current row stands out whether or not the list
   has focus, and the check boxes show on the dark ground. These follow the
   item rules above and match their weight, so they win. */
QListWidget::item:selected, QListWidget::item:selected:active, QListWidget::item:selected:!active {
    border: 1px solid HILITE_COLOR;
    color: black;
    background: HILITE_COLOR;
}

QListWidget::item:hover:!selected {
    border: 1px solid HILITE_COLOR;
}

QListWidget::indicator {
    width: 11px;
    height: 11px;
    border: 1px solid FOREGROUND_COLOR;
    border-radius: 2px;
    background: BACKGROUND_COLOR;
}

QListWidget::indicator:checked {
    border-color: BUTTON_PRESSED_COLOR;
    background: BUTTON_PRESSED_COLOR;
    image: url(:/gritwell/images/check-mark.png);
}
)";

// The sheet of the OK / Cancel box: darker buttons with a shaded face.
constexpr char kButtonBoxStyleSheet[] = R"(
QPushButton {
    background-color: qlineargradient(x1: 0.5, y1: 1, x2: 0.5, y2: 0,
                                      stop: 0.7 rgba(25, 25, 25, 255),
                                      stop: 0.8 rgba(35, 35, 35, 255),
                                      stop: 0.9 rgba(45, 45, 45, 255));
    border-style: outset;
    border-width: 1px;
    border-color: black;
    border-radius: 4px;
    padding: 1px;
    min-width: 5em;
    margin-top: 4px;
    margin-left: 4px;
    margin-right: 8px;
}

QPushButton::hover {
    border-color: HILITE_COLOR;
}

/* Undo and Redo with nothing to undo or redo. */
QPushButton:disabled {
    color: rgb(70, 70, 70);
}
)";

}  // namespace

QString rgbText(const QColor& color) {
    return QStringLiteral("rgb(%1, %2, %3)").arg(color.red()).arg(color.green()).arg(color.blue());
}

QString mainWindowStyleSheetTemplate() { return QString::fromLatin1(kMainWindowStyleSheet); }

QString buttonBoxStyleSheetTemplate() { return QString::fromLatin1(kButtonBoxStyleSheet); }

QString substituteMainWindowColors(QString sheet) {
    sheet.replace(QLatin1String("HILITE_COLOR"), rgbText(hiliteDefault), Qt::CaseSensitive);
    sheet.replace(QLatin1String("BACKGROUND_COLOR"), rgbText(mainBackgroundDefault), Qt::CaseSensitive);
    sheet.replace(QLatin1String("FOREGROUND_COLOR"), rgbText(mainForegroundDefault), Qt::CaseSensitive);
    sheet.replace(QLatin1String("BUTTON_PRESSED_COLOR"), rgbText(buttonPressedDefault), Qt::CaseSensitive);
    sheet.replace(QLatin1String("SLIDER_SLIT_COLOR"), rgbText(sliderSlitDefault), Qt::CaseSensitive);
    sheet.replace(QLatin1String("SLIDER_HANDLE_COLOR"), rgbText(sliderHandleDefault), Qt::CaseSensitive);
    return sheet;
}

QString substituteButtonBoxColors(QString sheet) {
    sheet.replace(QLatin1String("HILITE_COLOR"), rgbText(hiliteDefault), Qt::CaseSensitive);
    sheet.replace(QLatin1String("FOREGROUND_COLOR"), rgbText(mainForegroundDefault), Qt::CaseSensitive);
    return sheet;
}

QString mainWindowStyleSheet() { return substituteMainWindowColors(mainWindowStyleSheetTemplate()); }

QString buttonBoxStyleSheet() { return substituteButtonBoxColors(buttonBoxStyleSheetTemplate()); }

}  // namespace gritwell::Theme
