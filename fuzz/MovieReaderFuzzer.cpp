// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/isobmff/MovieReader.h"
#include "ZelvraCore/isobmff/RawBoxes.h"
#include "ZelvraCore/isobmff/TrackTimeline.h"
#include "ZelvraCore/records/MediaError.h"

#include <cstdlib>

using namespace zelvra;
using namespace zelvra::isobmff;

namespace {

/// Checks what readMovie guarantees for every sample.
void requirePromises(const Movie& movie, std::uint64_t fileSize) {
    for (const Track& track : movie.tracks) {
        for (const Sample& sample : track.samples) {
            const bool inFile = sample.offset <= fileSize && sample.size <= fileSize - sample.offset;
            if (!inFile || sample.sampleEntry >= track.sampleEntries.size()) {
                std::abort();
            }
        }
    }
}

/// Checks that timelines are in order and that their pieces do not overlap.
void requireOrder(const TrackTimeline& timeline) {
    for (std::size_t i = 1; i < timeline.shown().size(); ++i) {
        if (timeline.shown()[i].start < timeline.shown()[i - 1].end()) {
            std::abort();
        }
    }
    for (std::size_t i = 1; i < timeline.pieces().size(); ++i) {
        if (timeline.pieces()[i].start < timeline.pieces()[i - 1].end()) {
            std::abort();
        }
    }
}

} // namespace

/// Reads arbitrary bytes as a movie file, builds its timelines and parses its sample entries. The only
/// exception allowed is MediaError.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    try {
        const files::MemoryByteSource source({data, data + size});
        const Movie movie = readMovie(source);
        requirePromises(movie, source.size());
        for (const Track& track : movie.tracks) {
            requireOrder(TrackTimeline(track, movie.timescale));
            for (const SampleEntry& entry : track.sampleEntries) {
                soundEntryBoxes(entry.box);
            }
        }
    } catch (const MediaError&) { // refused, as expected
    }
    return 0;
}
