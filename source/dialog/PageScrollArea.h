#pragma once
// PageScrollArea: the scrolling frame around the dialog's stack of parameter
// pages. It asks for room for the tallest page, so that the dialog keeps one
// size from page to page and on a tall enough screen nothing scrolls, but
// never for more height than its limit. What scrolls is the shown page's own
// height: a short page does not scroll through the room a tall one needs.
// Pages never scroll sideways: the width asked for is the widest page's,
// plus the scroll bar when there is one.

#include <QScrollArea>

class QStackedWidget;

namespace gritwell {

class PageScrollArea : public QScrollArea {
    Q_OBJECT

public:
    explicit PageScrollArea(QWidget* parent = nullptr);

    // The stack, inside the area's widget, whose shown page scrolls.
    void setPages(QStackedWidget* pages);

    // The most height either size hint asks for. The minimum hint asks for
    // as much as the hint: a top-level window is otherwise opened at no more
    // than two thirds of the screen, and would scroll where it need not.
    void setHeightLimit(int pixels);
    int heightLimit() const { return heightLimit_; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    // A newly shown page starts at its top.
    void followShownPage();
    // Only the shown page's height scrolls.
    void fitWidgetToShownPage();

    QStackedWidget* pages_ = nullptr;
    int heightLimit_ = QWIDGETSIZE_MAX;
};

}  // namespace gritwell
