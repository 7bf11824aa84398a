// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/records/CMTimeRange.h"

#include <QObject>
#include <QPointer>

#include <functional>
#include <optional>

namespace zelvra {

/// The view that shows the session's player, as the session uses it: it lets the user trim.
/// Main thread.
class PlayerView : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    virtual bool canBeginTrimming() const = 0;
    /// Shows the trim editor. Calls `completion` once, when the user leaves it: with the range that was
    /// confirmed, or nullopt if it was cancelled.
    virtual void beginTrimming(std::function<void(std::optional<CMTimeRange>)> completion) = 0;
};

/// Connects the session to the view that currently shows its player. Views come and go.
class PlayerController {
public:
    QPointer<PlayerView> playerView; ///< none until a view has attached itself

    /// Opens the view's trim editor. `completion` is called once, never before this returns, with the range
    /// that the user confirmed; with nullopt also if there is no view or it cannot trim now.
    void beginTrim(std::function<void(std::optional<CMTimeRange> confirmed)> completion);
};

} // namespace zelvra
