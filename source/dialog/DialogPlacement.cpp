#include "dialog/DialogPlacement.h"

#include <algorithm>
#include <climits>
#include <cstdint>

namespace gritwell::DialogPlacement {

namespace {
int saturate(std::int64_t v) { return static_cast<int>(std::clamp<std::int64_t>(v, INT_MIN, INT_MAX)); }
}  // namespace

QPoint centredPosition(const QRect& host, const QRect& dialog) {
    // 64-bit throughout, so that no rectangle can overflow; C++ division
    // truncates toward zero, as the placement always has.
    const std::int64_t left = host.x();
    const std::int64_t top = host.y();
    const std::int64_t right = left + host.width();
    const std::int64_t bottom = top + host.height();
    const std::int64_t w = static_cast<std::int64_t>(dialog.right()) - dialog.left();
    const std::int64_t h = static_cast<std::int64_t>(dialog.bottom()) - dialog.top();
    const std::int64_t x = (right - left) / 2 + left - w / 2;
    const std::int64_t y = (bottom - top) / 2 + top - h / 2;
    return QPoint(saturate(std::max<std::int64_t>(0, x)), saturate(std::max<std::int64_t>(kTopClearance, y)));
}

}  // namespace gritwell::DialogPlacement
