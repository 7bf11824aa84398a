// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/passthrough/video/PlannedTrack.h"

namespace zelvra::passthrough {

OutputTrack plannedTrack(const SamplePlan& plan, const isobmff::Track& source, std::int64_t editStart) {
    const std::int64_t delay = editStart - plan.editStart;
    OutputTrack track;
    track.timescale = source.timescale * plan.timescaleFactor;
    track.samples.reserve(plan.samples.size());
    bool moves = false;
    for (const PlannedSample& planned : plan.samples) {
        moves = moves || planned.shown;
        const std::int64_t presentationTime = planned.presentationTime + (moves ? delay : 0);
        OutputSample& sample = track.samples.emplace_back();
        sample.decodeTime = planned.decodeTime + (moves && track.samples.size() > 1 ? delay : 0);
        sample.compositionOffset = static_cast<std::uint32_t>(presentationTime - sample.decodeTime);
        sample.sync = planned.sync;
    }
    track.mediaDuration = plan.mediaDuration + delay;
    track.editStart = editStart;
    track.editDuration = plan.editDuration;
    track.language = source.language;
    track.creationTime = source.creationTime;
    track.width = source.width;
    track.height = source.height;
    return track;
}

} // namespace zelvra::passthrough
