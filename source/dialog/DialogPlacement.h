#pragma once
// DialogPlacement: where the dialog first opens, centred on the host's window.

#include <QPoint>
#include <QRect>

namespace gritwell::DialogPlacement {

// Keeps the dialog below the desktop's menu bar.
constexpr int kTopClearance = 45;

// The top-left corner that centres `dialog` on `host`, in global
// coordinates, never left of x = 0 nor above y = kTopClearance. The host
// rectangle is read as left/top/right/bottom with right = left + width; the
// dialog's extent is Qt's inclusive right() - left() (one less than its
// width), and halves truncate toward zero. Any rectangles: out-of-range
// results saturate at the int limits.
QPoint centredPosition(const QRect& host, const QRect& dialog);

}  // namespace gritwell::DialogPlacement
