// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QSocketNotifier>

namespace zelvra {

/// Turns SIGINT, SIGTERM and SIGHUP (Ctrl+C, a log-out, a closed terminal) into a Qt signal in the event
/// loop, so that the program can end in order: it stops an export and saves the window's state. A second one
/// of them ends the program at once.
///
/// One at a time; main thread.
class TerminationSignals : public QObject {
    Q_OBJECT

public:
    /// Throws std::system_error if no pipe can be made.
    TerminationSignals();
    ~TerminationSignals() override;

Q_SIGNALS:
    void received();

private:
    QSocketNotifier notifier_;
};

} // namespace zelvra
