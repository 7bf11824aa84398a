// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/ZelvraCore/passthrough/file/CopyPlan.h"

namespace zelvra::test {

using namespace passthrough;

namespace {

OutputTrack copied(const isobmff::Track& source) {
    OutputTrack track;
    track.kind = source.isVideo() ? OutputTrack::Kind::video : OutputTrack::Kind::sound;
    track.timescale = source.timescale;
    track.sampleEntry = source.sampleEntries.at(0).box;
    track.uniform = source.uniform;
    track.mediaDuration = static_cast<std::int64_t>(source.mediaDuration);
    track.editStart = source.edits.empty() ? 0 : source.edits.front().mediaTime;
    track.editDuration = track.mediaDuration;
    track.width = source.width;
    track.height = source.height;
    for (const isobmff::Sample& sample : source.samples) {
        track.samples.push_back({{Store::source, sample.size, sample.offset},
                                 sample.decodeTime,
                                 static_cast<std::uint32_t>(sample.compositionOffset),
                                 sample.sync});
    }
    return track;
}

} // namespace

OutputMovie copyPlan(const isobmff::Movie& movie, MovieContainer container) {
    OutputMovie plan;
    plan.container = container;
    plan.userData = movie.userData;
    for (const isobmff::Track& track : movie.tracks) {
        if (track.isVideo() || track.isSound()) {
            plan.tracks.push_back(copied(track));
        }
    }
    return plan;
}

} // namespace zelvra::test
