#include "dialog/ApplicationEventFilter.h"

#include <QApplicationStateChangeEvent>
#include <QCoreApplication>
#include <QEvent>

namespace gritwell {

ApplicationEventFilter::ApplicationEventFilter(bool& killed, std::ostream& out, QObject* parent)
    : QObject(parent), killed_(killed), out_(out) {}

bool ApplicationEventFilter::eventFilter(QObject* watched, QEvent* event) {
    if (watched != QCoreApplication::instance()) return false;
    switch (event->type()) {
        case QEvent::Quit:
            out_ << "kEventAppQuit" << std::endl;
            killed_ = true;
            break;
        case QEvent::ApplicationStateChange: {
            const Qt::ApplicationState state = static_cast<QApplicationStateChangeEvent*>(event)->applicationState();
            if (hidden_ && state != Qt::ApplicationHidden) {
                out_ << "kEventAppShown" << std::endl;
                hidden_ = false;
            }
            switch (state) {
                case Qt::ApplicationActive: out_ << "kEventAppActivated" << std::endl; break;
                case Qt::ApplicationInactive: out_ << "kEventAppDeactivated" << std::endl; break;
                case Qt::ApplicationHidden:
                    out_ << "kEventAppHidden" << std::endl;
                    hidden_ = true;
                    break;
                case Qt::ApplicationSuspended: break;  // no counterpart to report
            }
            break;
        }
        default: break;
    }
    return false;
}

}  // namespace gritwell
