#pragma once
// PageScrollArea: the scrolling frame around the dialog's stack of parameter
// pages. It asks for room for the whole page, so that on a tall enough
// screen nothing scrolls, but never for more height than its limit; a page
// taller than that scrolls vertically. Pages never scroll sideways: the
// width asked for is the page's, plus the scroll bar when there is one.

#include <QScrollArea>

namespace gritwell {

class PageScrollArea : public QScrollArea {
    Q_OBJECT

public:
    explicit PageScrollArea(QWidget* parent = nullptr);

    // The most height either size hint asks for. The minimum hint asks for
    // as much as the hint: a top-level window is otherwise opened at no more
    // than two thirds of the screen, and would scroll where it need not.
    void setHeightLimit(int pixels);
    int heightLimit() const { return heightLimit_; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

private:
    int heightLimit_ = QWIDGETSIZE_MAX;
};

}  // namespace gritwell
