// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/bridge/Session.h"
#include "ZelvraApp/shell/Leaving.h"
#include "ZelvraApp/views/Dialogs.h"

#include <QObject>
#include <QString>
#include <qqml.h>

#include <cstddef>

namespace zelvra {

/// Which commands of the main window's menu are enabled, and the titles of the items whose titles change.
/// Follows the session; the commands themselves are the session's. While a question waits for its answer, no
/// command is enabled.
///
/// Main thread. What it follows outlives it.
class MenuState : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The shell has one.")
    /// No question is up: for those commands that have no other condition.
    Q_PROPERTY(bool canAct READ canAct NOTIFY changed)
    Q_PROPERTY(bool canClearRecents READ canClearRecents NOTIFY changed)
    Q_PROPERTY(bool canCloseClip READ canCloseClip NOTIFY changed)
    Q_PROPERTY(bool canExport READ canExport NOTIFY changed)
    Q_PROPERTY(QString exportTitle READ exportTitle NOTIFY changed)
    Q_PROPERTY(bool canUndo READ canUndo NOTIFY changed)
    Q_PROPERTY(bool canRedo READ canRedo NOTIFY changed)
    /// Work is offered to be restored.
    Q_PROPERTY(bool canRestore READ canRestore NOTIFY changed)
    /// A clip is open, and no highlight is being drawn.
    Q_PROPERTY(bool canWorkOnClip READ canWorkOnClip NOTIFY changed)
    Q_PROPERTY(bool canClearTrim READ canUseTrim NOTIFY changed)
    Q_PROPERTY(bool canMarkClip READ canUseTrim NOTIFY changed)
    Q_PROPERTY(QString markTitle READ markTitle NOTIFY changed)
    Q_PROPERTY(bool canGoToPreviousClip READ canGoToPreviousClip NOTIFY changed)
    Q_PROPERTY(bool canGoToNextClip READ canGoToNextClip NOTIFY changed)

public:
    MenuState(const Session& session, const Dialogs& dialogs, const Leaving& leaving,
              QObject* parent = nullptr);

    bool canAct() const { return !dialogs_.anyWaiting() && !leaving_.asksAboutExport(); }
    bool canClearRecents() const { return !state_.recents().empty(); }
    bool canCloseClip() const { return canAct() && session_.hasVideo(); }
    bool canExport() const { return canEdit() && state_.canExport(); }
    QString exportTitle() const { return exportTitle(state_.markedClips().size()); }
    bool canUndo() const { return canAct() && state_.canUndo(); }
    bool canRedo() const { return canAct() && state_.canRedo(); }
    bool canRestore() const { return canEdit() && session_.hasLeftWork(); }
    bool canWorkOnClip() const { return canEdit() && session_.hasVideo(); }
    bool canUseTrim() const { return canEdit() && session_.hasTrim(); }
    QString markTitle() const;
    bool canGoToPreviousClip() const { return canEdit() && state_.queueIndex() >= 1; }
    bool canGoToNextClip() const { return canEdit() && state_.canGoNext(); }

    /// "Export…", or "Export 3 Marked Clips…".
    static QString exportTitle(std::size_t markedClips);

Q_SIGNALS:
    void changed();

private:
    bool canEdit() const { return canAct() && !session_.hasDraft(); }

    const Session& session_;
    const AppState& state_;
    const Dialogs& dialogs_;
    const Leaving& leaving_;
};

} // namespace zelvra
