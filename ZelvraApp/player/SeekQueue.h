// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <optional>

namespace zelvra {

/// A seek that a core is to carry out now.
struct CoreSeek {
    std::size_t frame = 0;
    bool isSecondTry = false; ///< the first one missed: decode from farther back
    bool operator==(const CoreSeek&) const = default;
};

/// The seeks of a core, as a value: events in, commands out. A core carries out one seek at a time, because
/// it does not report which one has ended. Of those that wait only the latest counts.
class SeekQueue {
public:
    /// Someone wants the core at that frame. Returns the seek to begin.
    std::optional<CoreSeek> seek(std::size_t frame);

    /// The core's seek has ended, on the frame `found`; nullopt: beyond the last one. A seek may miss its
    /// frame if the file's sync samples cannot be decoded from, or if its index is wrong: then there is a
    /// second try, unless the core `isPlaying` and has gone on since. Returns the seek to begin.
    std::optional<CoreSeek> ended(std::optional<std::size_t> found, bool isPlaying);

    /// The core has moved by itself, or it has nothing loaded.
    void reset();

    bool isSeeking() const { return underWay_.has_value(); }
    /// Where the core is, or is going to be; nullopt if only the core knows.
    std::optional<std::size_t> goal() const;

private:
    std::optional<CoreSeek> begin(CoreSeek seek);

    std::optional<CoreSeek> underWay_;
    std::optional<std::size_t> waiting_;
    std::optional<std::size_t> at_;
};

} // namespace zelvra
