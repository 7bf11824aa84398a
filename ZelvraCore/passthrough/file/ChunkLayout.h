// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/passthrough/file/OutputMovie.h"

#include <cstdint>
#include <vector>

namespace zelvra::passthrough {

/// In which order a movie's samples lie in its file. Pure values: no byte is read or written here.

/// Samples of one track that lie one after another.
struct OutputChunk {
    std::uint32_t track = 0;       ///< index into OutputMovie::tracks
    std::uint32_t firstSample = 0; ///< index into OutputTrack::samples
    std::uint32_t samples = 0;
    std::uint64_t offset = 0; ///< of its first byte, counted from the first byte of media
    std::uint64_t bytes = 0;
    bool operator==(const OutputChunk&) const = default;
};

/// By decode time, so that a player reads the file forwards. But samples that lie together in a store stay
/// together while no track gets more than half a second ahead: a source's own order of sound and picture goes
/// over as it is, and its bytes in few large pieces.
std::vector<OutputChunk> layOutChunks(const OutputMovie& movie);

} // namespace zelvra::passthrough
