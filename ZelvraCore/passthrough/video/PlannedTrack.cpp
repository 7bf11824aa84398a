// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/passthrough/video/PlannedTrack.h"

namespace zelvra::passthrough {

OutputTrack plannedTrack(const SamplePlan& plan, const isobmff::Track& source) {
    OutputTrack track;
    track.timescale = source.timescale * plan.timescaleFactor;
    track.samples.reserve(plan.samples.size());
    for (const PlannedSample& planned : plan.samples) {
        OutputSample sample;
        sample.decodeTime = planned.decodeTime;
        sample.compositionOffset = static_cast<std::uint32_t>(planned.presentationTime - planned.decodeTime);
        sample.sync = planned.sync;
        track.samples.push_back(sample);
    }
    track.mediaDuration = plan.mediaDuration;
    track.editStart = plan.editStart;
    track.editDuration = plan.editDuration;
    track.language = source.language;
    track.creationTime = source.creationTime;
    track.width = source.width;
    track.height = source.height;
    return track;
}

} // namespace zelvra::passthrough
