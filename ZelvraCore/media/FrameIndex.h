// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/records/CMTime.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace zelvra {

/// The moments at which a movie's pictures appear: which frame is on screen at a time, when exactly it
/// appeared, the next and the one before. Made from the movie's tables without decoding (see Asset::frames);
/// the times are the movie's presentation times with its edit lists applied, as libavformat and players
/// have them. Plain values, 8 bytes a frame; any thread may read.
///
/// A frame stays on screen until the next one appears, the last one until the movie ends, even if the sound
/// goes on after it. Before the first frame (the picture may start later than the sound) the first one is on
/// screen.
class FrameIndex {
public:
    struct Frame {
        std::size_t index = 0;
        CMTime time;     ///< when it appears, in the track's own ticks
        CMTime duration; ///< until the next one appears; of the last, its own length

        CMTime end() const { return time + duration; }
    };

    FrameIndex() = default;

    /// `starts`: strictly increasing, in ticks of 1/`timescale` s (positive). `end`: when the last frame's
    /// own length is over, beyond its start.
    FrameIndex(std::vector<std::int64_t> starts, std::int64_t end, std::int32_t timescale);

    bool empty() const { return starts_.empty(); }
    std::size_t count() const { return starts_.size(); }
    std::int32_t timescale() const { return timescale_; }

    /// `index` < count(); throws std::out_of_range for any other.
    Frame frame(std::size_t index) const;
    /// Of an index that is not empty; that of an opened movie never is.
    Frame first() const { return frame(0); }
    Frame last() const { return frame(count() - 1); }

    /// The frame on screen at `time`, which may be outside the movie. `nullopt` for a time that is no number,
    /// and in an empty index.
    std::optional<Frame> containing(const CMTime& time) const;
    /// The frame after and the one before the frame that contains `time`; `nullopt` if there is none.
    std::optional<Frame> next(const CMTime& time) const;
    std::optional<Frame> previous(const CMTime& time) const;

    /// When the last frame's own length is over; zero for an empty index.
    CMTime end() const;

    /// Each frame's length in ticks.
    std::vector<std::int64_t> durations() const;

private:
    std::vector<std::int64_t> starts_;
    std::int64_t end_ = 0;
    std::int32_t timescale_ = 1;
};

} // namespace zelvra
