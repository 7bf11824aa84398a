// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/isobmff/Movie.h"
#include "ZelvraCore/records/MovieContainer.h"

#include <cstdint>
#include <string>
#include <vector>

namespace zelvra::passthrough {

/// A movie as it is about to be written: every sample with its times and the store that has its bytes, and
/// what else the index says. Plain values; the writer adds nothing and decides nothing but chunks and
/// offsets.

/// Where bytes of a movie come from.
enum class Store : std::uint8_t {
    source, ///< the source file
    spool,  ///< a temporary file of bytes of our own, see SpoolStore
};

struct StoredBytes {
    Store store = Store::source;
    std::uint32_t size = 0;
    std::uint64_t offset = 0;
};

/// Times are ticks of the track's timescale on its media timeline.
struct OutputSample {
    StoredBytes bytes;
    std::int64_t decodeTime = 0; ///< 0 for the first; strictly increasing in video
    std::uint32_t compositionOffset = 0;
    bool sync = true;
};

struct OutputTrack {
    enum class Kind { video, sound };

    Kind kind = Kind::video;
    std::uint32_t timescale = 0;
    std::vector<std::uint8_t> sampleEntry; ///< one whole sample entry box, header included
    std::vector<OutputSample> samples;     ///< in decode order
    /// For sound of constant packets that are too many to list (PCM). A sample above is then a run of `size /
    /// uniform.bytes` packets, one after another in its store.
    isobmff::UniformPackets uniform;
    std::int64_t mediaDuration = 0; ///< decode time at which the last sample ends
    /// The track's only edit: `editDuration` ticks are presented from `editStart` on.
    std::int64_t editStart = 0;
    std::int64_t editDuration = 0;
    /// Codec warm-up in samples before a sync sample (an `AudioRollRecoveryEntry`), as in ISO/IEC 14496-12; 0
    /// = none.
    std::int16_t rollDistance = 0;
    std::uint16_t language = 0x55C4; ///< packed ISO 639-2/T, "und"
    std::uint64_t creationTime = 0;  ///< seconds since 1904-01-01 UTC, as in the source
    double width = 0;                ///< of the track header, in pixels; 0 for sound
    double height = 0;
    std::vector<std::uint8_t>
        userData; ///< whole boxes to place at the end of the track, already in the output's form
};

struct OutputMovie {
    MovieContainer container = MovieContainer::mpeg4;
    std::vector<std::uint32_t> compatibleBrands; ///< beyond the container's own, as four-character codes
    std::uint64_t creationTime = 0;              ///< seconds since 1904-01-01 UTC, as in the source
    std::vector<OutputTrack> tracks;
    std::vector<std::uint8_t> userData; ///< whole boxes to place at the end of the movie box (udta, meta)
};

} // namespace zelvra::passthrough
