// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <optional>

namespace zelvra {

/// Which single picture is to be shown next, as a value: events in, commands out. One picture is on its way
/// to the screen at a time.
class StillQueue {
public:
    using IsThere = std::function<bool(std::size_t)>;

    /// Only that picture is wanted now.
    void jump(std::size_t frame);
    /// That picture is wanted after those that wait, so that each of them is seen.
    void append(std::size_t frame);
    /// Another hand shows `frame` now; nullopt: one that is not known. Nothing waits any more.
    void reset(std::optional<std::size_t> frame);

    /// The picture to show now, if it is there. It is then on its way.
    std::optional<std::size_t> next(const IsThere& isThere);
    /// The picture on its way is on screen.
    void arrived();

    /// The picture that has to be there next; if none waits, the latest.
    std::optional<std::size_t> wanted() const { return waiting_.empty() ? latest() : waiting_.front(); }
    bool isIdle() const { return !onItsWay_ && waiting_.empty(); }
    bool isOnItsWay() const { return onItsWay_.has_value(); }
    std::optional<std::size_t> onScreen() const { return onScreen_; }
    /// What is on screen when nothing more is asked for than what is on its way.
    std::optional<std::size_t> latest() const { return onItsWay_ ? onItsWay_ : onScreen_; }

private:
    std::optional<std::size_t> onScreen_;
    std::optional<std::size_t> onItsWay_;
    std::deque<std::size_t> waiting_;
};

} // namespace zelvra
