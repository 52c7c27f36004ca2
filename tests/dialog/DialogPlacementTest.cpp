// Where the dialog first opens: centred on the host's window with Qt's
// inclusive extent, halves truncated toward zero, never left of 0 nor above
// the menu bar, saturating at the int range.

#include <climits>

#include <gtest/gtest.h>

#include "dialog/DialogPlacement.h"

using gritwell::DialogPlacement::centredPosition;

TEST(DialogPlacement, CentresClampsAndSaturates) {
    const struct {
        QRect host, dialog;
        QPoint expected;
    } cases[] = {
        // w = 599, h = 399: x = 960 - 299, y = 540 - 199.
        {QRect(0, 0, 1920, 1080), QRect(0, 0, 600, 400), QPoint(661, 341)},
        // An offset host; the dialog's own position plays no part.
        {QRect(100, 50, 801, 601), QRect(-7, 900, 201, 101), QPoint(400, 300)},
        // An empty dialog has extent -1, whose half is 0 (a floor would give -1).
        {QRect(0, 100, 11, 11), QRect(0, 0, 0, 0), QPoint(5, 105)},
        // A host of negative width: -7/2 is -3 (a floor would give -4).
        {QRect(100, 100, -7, 100), QRect(0, 0, 1, 1), QPoint(97, 150)},
        {QRect(0, 0, 300, 200), QRect(0, 0, 800, 600), QPoint(0, 45)},
        {QRect(-500, -500, 100, 100), QRect(0, 0, 10, 10), QPoint(0, 45)},
        // Exactly at the limits stays there.
        {QRect(0, 0, 99, 189), QRect(0, 0, 100, 100), QPoint(0, 45)},
        {QRect(0, 0, 100, 190), QRect(0, 0, 100, 100), QPoint(1, 46)},
        // An inverted dialog of extent -(2^32 - 1) pushes the corner past the int range.
        {QRect(QPoint(0, 0), QPoint(INT_MAX - 1, INT_MAX - 1)), QRect(QPoint(INT_MAX, INT_MAX), QPoint(INT_MIN, INT_MIN)),
         QPoint(INT_MAX, INT_MAX)},
    };
    for (const auto& c : cases) EXPECT_EQ(centredPosition(c.host, c.dialog), c.expected) << c.host.x() << "," << c.host.y();
}
