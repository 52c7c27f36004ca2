#pragma once
// ImageArea: a greyscale preview of the current generator, the slice z = 0
// around the origin, one texture evaluation per pixel. It renders only when
// its size changes (or when asked through redraw); parameter changes are
// shown by the host, not here.

#include <QImage>
#include <QWidget>

class QPaintEvent;
class QResizeEvent;

namespace gritwell {

class MainWindow;
class Texture3D;

class ImageArea : public QWidget {
    Q_OBJECT

public:
    // `mainWindow` (may be null) supplies the texture to render after a resize.
    explicit ImageArea(QWidget* parent, MainWindow* mainWindow);

    // Renders `texture` into the image: pixel (i, j) shows the point
    // (i/m - 0.5, j/m - 0.5, 0), m the longer side, as grey 255 x value kept
    // to its low 8 bits (values outside 0..1 wrap). Null: a white image.
    void redraw(Texture3D* texture);
    // Replaces `image` by a white one of `size` and renders the current
    // texture into it; an image already of `size` is left alone.
    void resizeImage(QImage* image, const QSize& size);

    const QImage& image() const { return image_; }

protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QImage image_;
    MainWindow* mainWindow_;
};

}  // namespace gritwell
