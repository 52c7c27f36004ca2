#include "dialog/PageScrollArea.h"

#include <algorithm>

#include <QScrollBar>

namespace gritwell {

PageScrollArea::PageScrollArea(QWidget* parent) : QScrollArea(parent) {
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
}

void PageScrollArea::setHeightLimit(int pixels) {
    heightLimit_ = pixels;
    updateGeometry();
}

QSize PageScrollArea::sizeHint() const {
    const int frame = 2 * frameWidth();
    const QSize page = widget() != nullptr ? widget()->sizeHint() : QSize();
    QSize wanted(page.width() + frame, page.height() + frame);
    if (wanted.height() > heightLimit_) {
        wanted.setHeight(heightLimit_);
        wanted.rwidth() += verticalScrollBar()->sizeHint().width();
    }
    return wanted;
}

QSize PageScrollArea::minimumSizeHint() const { return sizeHint(); }

}  // namespace gritwell
