#include "dialog/PageScrollArea.h"

#include <algorithm>

#include <QCoreApplication>
#include <QEvent>
#include <QScrollBar>
#include <QStackedWidget>

namespace gritwell {

PageScrollArea::PageScrollArea(QWidget* parent) : QScrollArea(parent) {
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
}

void PageScrollArea::setPages(QStackedWidget* pages) {
    pages_ = pages;
    connect(pages_, &QStackedWidget::currentChanged, this, &PageScrollArea::followShownPage);
    followShownPage();
}

void PageScrollArea::followShownPage() {
    fitWidgetToShownPage();
    verticalScrollBar()->setValue(0);
}

void PageScrollArea::resizeEvent(QResizeEvent* event) {
    QScrollArea::resizeEvent(event);
    fitWidgetToShownPage();
}

// The stack asks for its tallest page's room, and the area's widget grows to
// at least its minimum; a cap on the widget's height is what keeps a shorter
// page from scrolling. Where the area is taller, the page fills it, so that
// the common block stays at the bottom.
void PageScrollArea::fitWidgetToShownPage() {
    const QWidget* shown = pages_ != nullptr ? pages_->currentWidget() : nullptr;
    if (shown == nullptr) return;
    int tallest = 0;
    for (int i = 0; i < pages_->count(); ++i) tallest = std::max(tallest, pages_->widget(i)->sizeHint().height());
    // Pages were added, or their hints changed, since the layouts last asked.
    pages_->updateGeometry();
    const int needed = widget()->sizeHint().height() - tallest + shown->sizeHint().height();
    widget()->setMaximumHeight(std::max(needed, viewport()->height()));
    QEvent relayout(QEvent::LayoutRequest);
    QCoreApplication::sendEvent(this, &relayout);
}

void PageScrollArea::setHeightLimit(int pixels) {
    heightLimit_ = pixels;
    updateGeometry();
}

QSize PageScrollArea::sizeHint() const {
    const int frame = 2 * frameWidth();
    const QSize page = widget() != nullptr ? widget()->sizeHint() : QSize(0, 0);
    QSize wanted(page.width() + frame, page.height() + frame);
    if (wanted.height() > heightLimit_) {
        wanted.setHeight(heightLimit_);
        wanted.rwidth() += verticalScrollBar()->sizeHint().width();
    }
    return wanted;
}

QSize PageScrollArea::minimumSizeHint() const { return sizeHint(); }

}  // namespace gritwell
