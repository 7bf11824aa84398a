// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/session/AppState.h"

#include <QObject>
#include <qqml.h>

namespace zelvra {

/// Ends the program. Asks first if something would be lost: about the export while one runs, or, if work was
/// never exported, the same question as closing the clip.
///
/// Main thread. The session outlives it.
class Leaving : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The shell has one.")
    /// The question whether to stop a running export is up.
    Q_PROPERTY(bool asksAboutExport READ asksAboutExport NOTIFY asksAboutExportChanged)

public:
    /// `end` ends the program.
    Leaving(AppState& state, Terminator& end, QObject* parent = nullptr);

    bool asksAboutExport() const { return asksAboutExport_; }

    /// Called by closing the window, by Quit, and by the dialog after an export.
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
    bool leavesOnceClosed_ = false; ///< the close question is up because of `request`
};

} // namespace zelvra
