#pragma once

#include "ZelvraCore/media/FrameIndex.h"

#include <cstddef>

namespace zelvra {

/// What to ask of mpv to have a certain frame on the screen, whatever the frame rate. An exact seek of mpv to
/// T shows the first frame at or after T - 5 ms; frames that are closer than that to each other would be
/// mistaken for their predecessors. A pure value.
struct SeekAim {
    double seconds = 0; ///< the time to seek to
    /// How much earlier (seconds) a sync frame has to lie from which decoding starts: the aim may lie beyond
    /// the frame, and a sync frame in between would hide it.
    double demuxerOffset = 0;
};

/// `index` < frames.count().
SeekAim aimAt(const FrameIndex& frames, std::size_t index);

} // namespace zelvra
