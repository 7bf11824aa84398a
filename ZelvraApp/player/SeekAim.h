// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/media/FrameIndex.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace zelvra {

/// The seek that makes mpv show a certain frame. An exact seek of mpv to T decodes from the sync
/// sample that its demuxer finds at or before T and shows the first frame at or after T - 5 ms. That misses
/// frames which are closer than that to their predecessors, and those which lead the next sync sample: they
/// are stored after it, appear before it, and cannot be decoded from it.
struct SeekAim {
    double seconds = 0; ///< the time to seek to
    /// How much earlier, in seconds, the demuxer looks for the sync sample.
    double demuxerOffset = 0;
};

/// `index` < frames.count(); `syncs` are Asset::syncTimes of the same movie.
SeekAim aimAt(const FrameIndex& frames, const std::vector<std::int64_t>& syncs, std::size_t index);

} // namespace zelvra
