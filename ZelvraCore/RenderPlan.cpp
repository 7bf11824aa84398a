// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/RenderPlan.h"

#include <algorithm>
#include <cmath>

namespace zelvra {

RenderPlan planRender(std::span<const Highlight> highlights, const std::optional<CMTimeRange>& sourceRange,
                      bool includeAudio, const SourceInfo& info) {
    RenderPlan plan;
    plan.copyOnly = highlights.empty() && !sourceRange && includeAudio;
    plan.rangeStart = sourceRange ? sourceRange->start : CMTime::zero();
    plan.rangeEnd = sourceRange ? sourceRange->end() : info.duration;

    plan.highlights.assign(highlights.begin(), highlights.end());
    std::erase_if(plan.highlights, [&](const Highlight& highlight) {
        return highlight.timestamp < plan.rangeStart || highlight.timestamp > plan.rangeEnd;
    });
    std::ranges::stable_sort(plan.highlights, {}, [](const Highlight& h) { return h.timestamp.seconds(); });

    const bool hevc = info.videoCodec == fourCharCode("hvc1");
    const bool h264 = info.videoCodec == fourCharCode("avc1");
    plan.freezeCodec = hevc ? VideoCodec::hevc : VideoCodec::h264;
    plan.needsTransformInstructions = !info.preferredTransform.isIdentity();
    plan.passthrough = (hevc || h264) && !plan.needsTransformInstructions;
    return plan;
}

Timeline layoutTimeline(const RenderPlan& plan, std::span<const CMTime> freezeDurations) {
    Timeline timeline;
    timeline.segments.reserve(2 * plan.highlights.size() + 1);
    CMTime cursor = plan.rangeStart;
    CMTime output = CMTime::zero();
    auto playUntil = [&](const CMTime& end) {
        const CMTime duration = end - cursor;
        if (duration > CMTime::zero()) {
            timeline.segments.push_back({TimelineSegment::Kind::source, cursor, duration, output});
            output += duration;
        }
        cursor = end;
    };
    for (std::size_t i = 0; i < plan.highlights.size(); ++i) {
        playUntil(maximum(cursor, minimum(plan.highlights[i].timestamp, plan.rangeEnd)));
        timeline.segments.push_back(
            {TimelineSegment::Kind::freeze, CMTime::zero(), freezeDurations[i], output, i});
        output += freezeDurations[i];
    }
    playUntil(maximum(cursor, plan.rangeEnd));
    timeline.total = output;
    return timeline;
}

std::vector<TransformInstruction> transformInstructions(const Timeline& timeline, const SourceInfo& info) {
    std::vector<TransformInstruction> instructions;
    CMTime covered = CMTime::zero();
    auto turnUntil = [&](const CMTime& end) {
        if (end > covered) {
            instructions.push_back({CMTimeRange::fromStartToEnd(covered, end), info.preferredTransform});
        }
    };
    for (const TimelineSegment& segment : timeline.segments) {
        if (segment.kind == TimelineSegment::Kind::freeze) {
            turnUntil(segment.outputStart);
            instructions.push_back({{segment.outputStart, segment.duration}, AffineTransform{}});
            covered = segment.outputStart + segment.duration;
        }
    }
    turnUntil(timeline.total);
    return instructions;
}

double freezeProgress(std::size_t finished, std::size_t count) {
    return static_cast<double>(finished) / static_cast<double>(count) * 0.5;
}

double exportProgress(double fraction) {
    return 0.5 + 0.5 * fraction;
}

std::int64_t freezeFrameCount(const CMTime& totalDuration, const CMTime& frameDuration) {
    const double frames = std::round(totalDuration.seconds() / frameDuration.seconds());
    return std::max<std::int64_t>(1, static_cast<std::int64_t>(frames));
}

std::filesystem::path freezeClipName() {
    return "zv_freeze_" + Uuid::random().text() + ".mov";
}

} // namespace zelvra
