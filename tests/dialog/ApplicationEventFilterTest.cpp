// The application event filter: what each event prints, and whether it sets
// the killed flag. Every event goes on to the application.

#include <sstream>
#include <utility>
#include <vector>

#include <QApplicationStateChangeEvent>
#include <QCoreApplication>
#include <QEvent>
#include <QObject>

#include <gtest/gtest.h>

#include "dialog/ApplicationEventFilter.h"

using gritwell::ApplicationEventFilter;

TEST(ApplicationEventFilter, PrintsEachApplicationEventAndLetsItThrough) {
    QEvent quit(QEvent::Quit), close(QEvent::Close);
    QApplicationStateChangeEvent active(Qt::ApplicationActive), inactive(Qt::ApplicationInactive),
        hidden(Qt::ApplicationHidden), suspended(Qt::ApplicationSuspended);
    QObject other;
    const struct {
        std::vector<std::pair<QObject*, QEvent*>> events;
        const char* printed;
        bool killed;
    } cases[] = {
        {{{QCoreApplication::instance(), &quit}}, "kEventAppQuit\n", true},
        // Leaving the hidden state says so first.
        {{{QCoreApplication::instance(), &active},
          {QCoreApplication::instance(), &inactive},
          {QCoreApplication::instance(), &hidden},
          {QCoreApplication::instance(), &active},
          {QCoreApplication::instance(), &suspended}},
         "kEventAppActivated\nkEventAppDeactivated\nkEventAppHidden\nkEventAppShown\nkEventAppActivated\n",
         false},
        // Only the application object is watched, and only these events.
        {{{&other, &quit}, {QCoreApplication::instance(), &close}}, "", false},
    };
    for (const auto& c : cases) {
        bool killed = false;
        std::ostringstream out;
        ApplicationEventFilter filter(killed, out);
        for (const auto& [watched, event] : c.events) EXPECT_FALSE(filter.eventFilter(watched, event));
        EXPECT_EQ(out.str(), c.printed);
        EXPECT_EQ(killed, c.killed);
    }
}
