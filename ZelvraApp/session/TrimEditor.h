// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/player/Player.h"
#include "ZelvraApp/session/PlayerController.h"

#include <memory>

namespace zelvra {

/// The state of the player view's trim editor: in and out points over the whole source that the user moves,
/// then confirms or cancels. It changes nothing itself: who opened it gets the range.
///
/// Main thread. `player` outlives it.
class TrimEditor : public PlayerView {
    Q_OBJECT

public:
    explicit TrimEditor(Player& player, QObject* parent = nullptr);

    /// A movie is loaded and the editor is not open yet.
    bool canBeginTrimming() const override;
    /// Opens with the points at the player's bounds, or at the movie's ends if there are none.
    void beginTrimming(std::function<void(std::optional<CMTimeRange>)> completion) override;

    bool isActive() const { return completion_ != nullptr; }
    CMTime inPoint() const { return inPoint_; }
    CMTime outPoint() const { return outPoint_; }

    /// The points stay inside the movie and 0.1 s apart. Does nothing while the editor is closed.
    void setInPoint(const CMTime& time);
    void setOutPoint(const CMTime& time);

    /// Ends with the points as a range. Cancels if another movie has been loaded meanwhile.
    void confirm();
    void cancel();

Q_SIGNALS:
    void changed();

private:
    bool showsSameMovie() const;
    void end(const std::optional<CMTimeRange>& result);

    Player& player_;
    std::weak_ptr<const Asset> movie_; ///< that the points belong to
    CMTime duration_;
    CMTime inPoint_;
    CMTime outPoint_;
    std::function<void(std::optional<CMTimeRange>)> completion_;
};

} // namespace zelvra
