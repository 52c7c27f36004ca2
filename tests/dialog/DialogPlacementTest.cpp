// Where the dialog first opens: centred on the host's window, clamped.

#include <climits>

#include <gtest/gtest.h>

#include "dialog/DialogPlacement.h"

using gritwell::DialogPlacement::centredPosition;

TEST(DialogPlacement, CentresWithQtsInclusiveExtent) {
    // w = 599, h = 399: x = 960 - 299, y = 540 - 199.
    EXPECT_EQ(centredPosition(QRect(0, 0, 1920, 1080), QRect(0, 0, 600, 400)), QPoint(661, 341));
    // An offset host; the dialog's own position plays no part.
    EXPECT_EQ(centredPosition(QRect(100, 50, 801, 601), QRect(-7, 900, 201, 101)), QPoint(400, 300));
}

TEST(DialogPlacement, HalvesTruncateTowardZero) {
    // An empty dialog has extent -1, whose half is 0 (a floor would give -1).
    EXPECT_EQ(centredPosition(QRect(0, 100, 11, 11), QRect(0, 0, 0, 0)), QPoint(5, 105));
    // A host of negative width: -7/2 is -3 (a floor would give -4).
    EXPECT_EQ(centredPosition(QRect(100, 100, -7, 100), QRect(0, 0, 1, 1)), QPoint(97, 150));
}

TEST(DialogPlacement, NeverLeftOfZeroNorAboveTheMenuBar) {
    EXPECT_EQ(centredPosition(QRect(0, 0, 300, 200), QRect(0, 0, 800, 600)), QPoint(0, 45));
    EXPECT_EQ(centredPosition(QRect(-500, -500, 100, 100), QRect(0, 0, 10, 10)), QPoint(0, 45));
    // Exactly at the limits stays there.
    EXPECT_EQ(centredPosition(QRect(0, 0, 99, 189), QRect(0, 0, 100, 100)), QPoint(0, 45));
    EXPECT_EQ(centredPosition(QRect(0, 0, 100, 190), QRect(0, 0, 100, 100)), QPoint(1, 46));
}

TEST(DialogPlacement, ExtremeRectanglesSaturate) {
    // An inverted dialog rectangle of extent -(2^32 - 1) pushes the corner
    // past the int range.
    const QRect host(QPoint(0, 0), QPoint(INT_MAX - 1, INT_MAX - 1));
    const QRect inverted(QPoint(INT_MAX, INT_MAX), QPoint(INT_MIN, INT_MIN));
    EXPECT_EQ(centredPosition(host, inverted), QPoint(INT_MAX, INT_MAX));
}
