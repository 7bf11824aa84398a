// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/isobmff/Movie.h"

#include <cstdint>
#include <vector>

namespace zelvra::isobmff {

/// A track's samples on the movie's presentation timeline, with the track's edit list applied. Everything
/// that works with time uses this one, so that all agree. The times equal those that libavformat computes by
/// default. Pure values. It does not know the movie's other tracks, nor codecs.
///
/// Times are in ticks of the track's timescale, 0 = the movie's start. The length of an empty edit is in
/// ticks of the movie and is rounded to the nearest tick of the track.

/// A stretch of the presentation timeline that shows one stretch of the media (one edit that is not empty).
struct ShownPiece {
    std::int64_t start = 0;      ///< presentation time of its first moment
    std::int64_t duration = 0;   ///< > 0
    std::int64_t mediaStart = 0; ///< media time that is shown at `start`

    std::int64_t end() const { return start + duration; }
    std::int64_t mediaEnd() const { return mediaStart + duration; }
    bool operator==(const ShownPiece&) const = default;
};

/// A sample that is shown, and when.
struct ShownSample {
    std::uint32_t sample = 0;  ///< index into Track::samples
    std::uint32_t piece = 0;   ///< index into TrackTimeline::pieces()
    std::int64_t start = 0;    ///< presentation time
    std::int64_t duration = 0; ///< until the next one starts or the piece ends; >= 0

    std::int64_t end() const { return start + duration; }
    bool operator==(const ShownSample&) const = default;
};

class TrackTimeline {
public:
    /// Throws MediaError::unsupported if the edit list shows too many samples.
    TrackTimeline(const Track& track, std::uint32_t movieTimescale);

    /// In order of time, without overlap. Empty if the track shows nothing.
    const std::vector<ShownPiece>& pieces() const { return pieces_; }

    /// Every sample that is shown, in order of presentation. A sample that several edits show is listed once
    /// for each. 32 bytes an entry.
    const std::vector<ShownSample>& shown() const { return shown_; }

    /// End of the last piece; 0 if the track shows nothing.
    std::int64_t end() const;

private:
    std::vector<ShownPiece> pieces_;
    std::vector<ShownSample> shown_;
};

} // namespace zelvra::isobmff
