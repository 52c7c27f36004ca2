// The application event filter: quit requests and application state changes.

#include <sstream>

#include <QCoreApplication>
#include <QEvent>
#include <QGuiApplication>
#include <QApplicationStateChangeEvent>
#include <QObject>

#include <gtest/gtest.h>

#include "dialog/ApplicationEventFilter.h"

using gritwell::ApplicationEventFilter;

namespace {

bool sendState(ApplicationEventFilter& filter, Qt::ApplicationState state) {
    QApplicationStateChangeEvent event(state);
    return filter.eventFilter(QCoreApplication::instance(), &event);
}

}  // namespace

TEST(ApplicationEventFilter, QuitSetsTheKilledFlag) {
    bool killed = false;
    std::ostringstream out;
    ApplicationEventFilter filter(killed, out);
    QEvent quit(QEvent::Quit);
    EXPECT_FALSE(filter.eventFilter(QCoreApplication::instance(), &quit));
    EXPECT_TRUE(killed);
    EXPECT_EQ(out.str(), "kEventAppQuit\n");
}

TEST(ApplicationEventFilter, ReportsStateChangesAndLetsThemThrough) {
    bool killed = false;
    std::ostringstream out;
    ApplicationEventFilter filter(killed, out);
    EXPECT_FALSE(sendState(filter, Qt::ApplicationActive));
    EXPECT_FALSE(sendState(filter, Qt::ApplicationInactive));
    EXPECT_FALSE(sendState(filter, Qt::ApplicationHidden));
    EXPECT_FALSE(sendState(filter, Qt::ApplicationActive));
    EXPECT_FALSE(sendState(filter, Qt::ApplicationSuspended));
    EXPECT_EQ(out.str(),
              "kEventAppActivated\nkEventAppDeactivated\nkEventAppHidden\nkEventAppShown\nkEventAppActivated\n");
    EXPECT_FALSE(killed);
}

TEST(ApplicationEventFilter, WatchesOnlyTheApplicationObject) {
    bool killed = false;
    std::ostringstream out;
    ApplicationEventFilter filter(killed, out);
    QObject other;
    QEvent quit(QEvent::Quit);
    EXPECT_FALSE(filter.eventFilter(&other, &quit));
    QEvent close(QEvent::Close);
    EXPECT_FALSE(filter.eventFilter(QCoreApplication::instance(), &close));
    EXPECT_FALSE(killed);
    EXPECT_EQ(out.str(), "");
}
