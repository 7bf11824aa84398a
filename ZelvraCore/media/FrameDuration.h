// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/records/CMTime.h"

#include <cstdint>
#include <span>

namespace zelvra::media {

/// The length of one frame of a movie, from the lengths of all its frames. Freezes are built of frames of
/// this length, so it must be one that the movie really runs at.
///
/// It is the shortest length such that the frames which are no longer fill at least a twentieth of the
/// movie's time; a frame counts for at most a tenth of a second. So
/// - a movie of constant rate gives its frame's length, in the file's own ticks (1001/30000 stays that);
/// - ticks that are too coarse for the rate give the usual length (33 of 33, 33, 34 ms);
/// - a stray sample of one tick, or a run of hidden ones, changes nothing, as it fills almost no time: the
///   plain minimum would make a freeze of 3 s 270,000 frames long;
/// - a stretch at a higher rate counts as soon as it is more than a flicker;
/// - one picture held for minutes (a paused screen recording) does not outweigh the moving ones.
///
/// `durations` in ticks of 1/`timescale` s, in any order; those that are not positive are ignored. Invalid
/// when none is left or the timescale is not positive.
CMTime typicalFrameDuration(std::span<const std::int64_t> durations, std::int32_t timescale);

/// The frame length of a movie without frame lengths: one n-th of a second, n being the rate rounded to the
/// nearest whole number (halves away from zero) and at least 1. A rate that is not a number, or that 31 bits
/// do not hold, counts as 1.
CMTime frameDurationFromRate(float nominalFrameRate);

} // namespace zelvra::media
