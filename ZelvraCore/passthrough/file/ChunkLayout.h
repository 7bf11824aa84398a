// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/passthrough/file/OutputMovie.h"

#include <cstdint>
#include <vector>

namespace zelvra::passthrough {

/// In which order a movie's samples are stored in its file. Pure values: no byte is read or written here.

/// Samples of one track that are stored one after another.
struct OutputChunk {
    std::uint32_t track = 0;       ///< index into OutputMovie::tracks
    std::uint32_t firstSample = 0; ///< index into OutputTrack::samples
    std::uint32_t samples = 0;
    std::uint64_t offset = 0; ///< of its first byte, counted from the first byte of media
    std::uint64_t bytes = 0;
    bool operator==(const OutputChunk&) const = default;
};

/// By decode time, so that a player reads the file forwards. But samples that are together in a store stay
/// together while no track gets more than half a second ahead. So a source's own order of sound and picture
/// is kept, and its bytes are copied in few large pieces.
std::vector<OutputChunk> layOutChunks(const OutputMovie& movie);

} // namespace zelvra::passthrough
