// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <vector>

namespace zelvra {

/// The clips of a folder that is worked through, and the place in it. A value; empty without a folder.
class ClipQueue {
public:
    ClipQueue() = default;
    /// Starts at the first clip.
    explicit ClipQueue(std::vector<std::filesystem::path> clips) : clips_(std::move(clips)) {}

    const std::vector<std::filesystem::path>& clips() const { return clips_; }
    /// From 0; 0 if the queue is empty.
    int index() const { return index_; }
    /// nullopt at either end.
    std::optional<int> next() const;
    std::optional<int> previous() const;

    /// The clip at a place that `next` or `previous` gave; the queue is there now.
    const std::filesystem::path& goTo(int index);
    /// Goes to that clip if it is in the queue; a clip from elsewhere empties the queue.
    void follow(const std::filesystem::path& clip);

    bool operator==(const ClipQueue&) const = default;

private:
    std::vector<std::filesystem::path> clips_;
    int index_ = 0;
};

} // namespace zelvra
