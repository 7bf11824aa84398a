// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/player/Player.h"

#include <QImage>
#include <filesystem>
#include <functional>
#include <optional>
#include <vector>

namespace zelvra::test {

/// Runs the event loop until `done` holds; false if it did not within ten seconds.
bool spinUntil(const std::function<bool()>& done);
void spinFor(int milliseconds);

PlayerItem itemOf(const std::filesystem::path& movie);

/// A real player with a real movie of numbered pictures loaded, and the means to read its picture.
class PlayedMovie {
public:
    /// Loads, and waits until the first picture is there.
    explicit PlayedMovie(const std::filesystem::path& movie);

    Player& player() { return player_; }
    const Asset& asset() const { return *player_.currentItem()->asset; }
    const FrameIndex& frames() const { return asset().frames(); }

    bool seek(const CMTime& time) { return QCoro::waitFor(player_.seek(time)); }
    bool step(int count) { return QCoro::waitFor(player_.step(count)); }
    void playUntil(const std::function<bool()>& done);

    /// The player's picture, turned upright, when it has settled.
    QImage pictureOnScreen();
    /// The number in it.
    std::optional<int> numberOnScreen();
    /// The number in the picture that the engine grabs at the player's current time.
    std::optional<int> numberGrabbed();

private:
    Player player_;
};

} // namespace zelvra::test
