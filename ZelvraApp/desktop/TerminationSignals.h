// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QSocketNotifier>

namespace zelvra {

/// Turns SIGINT, SIGTERM and SIGHUP (Ctrl+C, a log-out, a terminal that goes) into a signal of the event
/// loop, so that the program can end in good order: an export stopped, the window's state kept. A second one
/// of them ends it at once.
///
/// One at a time; main thread.
class TerminationSignals : public QObject {
    Q_OBJECT

public:
    /// Throws std::system_error where the system gives no pipe.
    TerminationSignals();
    ~TerminationSignals() override;

Q_SIGNALS:
    void received();

private:
    QSocketNotifier notifier_;
};

} // namespace zelvra
