// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QPointer>

#include <functional>

namespace zelvra {

/// The view that shows the session's player, as the session uses it: it lets the user trim.
/// Main thread.
class PlayerView : public QObject {
    Q_OBJECT

public:
    enum class TrimResult { ok, cancelled };

    using QObject::QObject;

    virtual bool canBeginTrimming() const = 0;
    /// Shows the trim editor. Calls `completion` once, when the user leaves it; after `ok` the chosen in and
    /// out points are the playback bounds of the player's item.
    virtual void beginTrimming(std::function<void(TrimResult)> completion) = 0;
};

/// Connects the session to the view that currently shows its player. Views come and go.
class PlayerController {
public:
    QPointer<PlayerView> playerView; ///< none until a view has attached itself

    /// Opens the view's trim editor. `completion` is called once, never before this returns, with whether the
    /// user confirmed; with false too if there is no view or it cannot trim now.
    void beginTrim(std::function<void(bool confirmed)> completion);
};

} // namespace zelvra
