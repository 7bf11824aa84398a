// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/session/AppState.h"

#include <QObject>
#include <qqml.h>

namespace zelvra {

/// The way out of the program. Asks first where something would be lost: while an export runs, about that;
/// where work was never exported, as closing the clip asks.
///
/// Main thread. The session outlives it.
class Leaving : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The shell has one.")
    /// The question is up whether a running export shall be stopped.
    Q_PROPERTY(bool asksAboutExport READ asksAboutExport NOTIFY asksAboutExportChanged)

public:
    /// `end` is what ends the program.
    Leaving(AppState& state, Terminator& end, QObject* parent = nullptr);

    bool asksAboutExport() const { return asksAboutExport_; }

    /// Closing the window, Quit, and the dialog after an export all come here.
    Q_INVOKABLE void request();

    /// The answers to the question about the export.
    Q_INVOKABLE void stopExportAndLeave();
    Q_INVOKABLE void stay();

Q_SIGNALS:
    void asksAboutExportChanged();

private:
    void setAsksAboutExport(bool on);
    void leaveOnceClosed();

    AppState& state_;
    Terminator& end_;
    bool asksAboutExport_ = false;
    bool leavesOnceClosed_ = false; ///< the close question is up on our account
};

} // namespace zelvra
