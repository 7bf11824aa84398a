#pragma once

#include "ZelvraApp/bridge/Session.h"

#include <QObject>
#include <QString>
#include <qqml.h>

#include <cstddef>

namespace zelvra {

/// What the menu of the main window can do at the moment, and what its changing items are called. Follows the
/// session; the commands themselves are the session's.
///
/// Main thread. The session outlives it.
class MenuState : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The shell has one.")
    Q_PROPERTY(bool canClearRecents READ canClearRecents NOTIFY changed)
    Q_PROPERTY(bool canCloseClip READ canCloseClip NOTIFY changed)
    Q_PROPERTY(bool canExport READ canExport NOTIFY changed)
    Q_PROPERTY(QString exportTitle READ exportTitle NOTIFY changed)
    Q_PROPERTY(bool canUndo READ canUndo NOTIFY changed)
    Q_PROPERTY(bool canRedo READ canRedo NOTIFY changed)
    /// A clip is open, and no highlight is being drawn.
    Q_PROPERTY(bool canWorkOnClip READ canWorkOnClip NOTIFY changed)
    Q_PROPERTY(bool canClearTrim READ canUseTrim NOTIFY changed)
    Q_PROPERTY(bool canMarkClip READ canUseTrim NOTIFY changed)
    Q_PROPERTY(QString markTitle READ markTitle NOTIFY changed)
    Q_PROPERTY(bool canGoToPreviousClip READ canGoToPreviousClip NOTIFY changed)
    Q_PROPERTY(bool canGoToNextClip READ canGoToNextClip NOTIFY changed)

public:
    explicit MenuState(const Session& session, QObject* parent = nullptr);

    bool canClearRecents() const { return !state_.recents().empty(); }
    bool canCloseClip() const { return session_.hasVideo(); }
    bool canExport() const { return state_.canExport() && !session_.hasDraft(); }
    QString exportTitle() const { return exportTitle(state_.markedClips().size()); }
    bool canUndo() const { return state_.canUndo(); }
    bool canRedo() const { return state_.canRedo(); }
    bool canWorkOnClip() const { return session_.hasVideo() && !session_.hasDraft(); }
    bool canUseTrim() const { return session_.hasTrim() && !session_.hasDraft(); }
    QString markTitle() const;
    bool canGoToPreviousClip() const { return state_.queueIndex() >= 1 && !session_.hasDraft(); }
    bool canGoToNextClip() const { return state_.canGoNext() && !session_.hasDraft(); }

    /// "Export…", or "Export 3 Marked Clips…".
    static QString exportTitle(std::size_t markedClips);

Q_SIGNALS:
    void changed();

private:
    const Session& session_;
    const AppState& state_;
};

} // namespace zelvra
