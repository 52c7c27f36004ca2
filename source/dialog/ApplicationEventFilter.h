#pragma once
// ApplicationEventFilter: watches the application object while a dialog
// runs. A request to quit sets the host-visible "killed" flag; changes of
// the application's state are reported on a text stream. It never consumes
// an event.

#include <ostream>

#include <QObject>

class QEvent;

namespace gritwell {

class ApplicationEventFilter : public QObject {
    Q_OBJECT

public:
    // `killed` is set on a quit request; reports go to `out`, one per line:
    // "kEventAppQuit", "kEventAppActivated", "kEventAppDeactivated",
    // "kEventAppHidden", and "kEventAppShown" when a hidden application
    // comes back.
    explicit ApplicationEventFilter(bool& killed, std::ostream& out, QObject* parent = nullptr);

    // Always false: every event goes on to its normal handling.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool& killed_;
    std::ostream& out_;
    bool hidden_ = false;
};

}  // namespace gritwell
