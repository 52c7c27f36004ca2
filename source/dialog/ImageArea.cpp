#include "dialog/ImageArea.h"

#include <algorithm>

#include <QPaintEvent>
#include <QPainter>
#include <QResizeEvent>

#include "core/FloatToInt.h"
#include "core/Texture3D.h"
#include "dialog/MainWindow.h"

namespace gritwell {

namespace {
constexpr int kInitialSide = 256;
}

ImageArea::ImageArea(QWidget* parent, MainWindow* mainWindow)
    : QWidget(parent), image_(kInitialSide, kInitialSide, QImage::Format_RGB32), mainWindow_(mainWindow) {
    image_.fill(qRgb(255, 255, 255));
}

void ImageArea::redraw(Texture3D* texture) {
    if (texture == nullptr) {
        image_.fill(qRgb(255, 255, 255));
    } else {
        const int w = image_.width();
        const int h = image_.height();
        const float m = static_cast<float>(std::max(w, h));
        for (int i = 0; i < w; ++i) {
            for (int j = 0; j < h; ++j) {
                const float p[3] = {static_cast<float>(i) / m - 0.5f, static_cast<float>(j) / m - 0.5f, 0.0f};
                const int g = truncToInt(255.0 * static_cast<double>((*texture)(p)));
                // qRgb keeps the low 8 bits of each component: values above 1
                // or below 0 wrap around instead of saturating, as the preview
                // always has.
                image_.setPixel(i, j, qRgb(g, g, g));
            }
        }
    }
    update();
}

void ImageArea::resizeImage(QImage* image, const QSize& size) {
    if (image->size() == size) return;
    QImage resized(size, QImage::Format_RGB32);
    resized.fill(qRgb(255, 255, 255));
    *image = resized;
    redraw(mainWindow_ != nullptr ? mainWindow_->getCurrentTexture() : nullptr);
}

void ImageArea::resizeEvent(QResizeEvent* event) {
    if (width() != image_.width() || height() != image_.height()) {
        const int side = std::min(width(), height());
        resizeImage(&image_, QSize(side, side));
        update();
    }
    QWidget::resizeEvent(event);
}

void ImageArea::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    const QRect dirty = event->rect();
    painter.drawImage(dirty, image_, dirty);
}

}  // namespace gritwell
