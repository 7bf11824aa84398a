// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/RenderPlan.h"

#include <algorithm>
#include <cmath>

namespace zelvra {

namespace {

/// Lays out one timeline; lives for one call. Times are on the source's timeline, in ticks of its pictures,
/// unless they are named otherwise.
class TimelineLayout {
public:
    TimelineLayout(const RenderPlan& plan, const SourceInfo& info, const FrameIndex& frames)
        : plan_(plan), info_(info), frames_(frames), soundEnd_(clamped(plan.rangeEnd)) {
        start_ = ticks(clamped(plan.rangeStart));
        end_ = maximum(start_, soundEnd_.converted(frames_.timescale(), Rounding::up));
        const bool freezesInTail = std::ranges::any_of(
            plan.highlights, [this](const Highlight& h) { return ticks(h.timestamp) >= frames_.end(); });
        if (!freezesInTail) {
            end_ = maximum(start_, minimum(end_, frames_.end()));
        }
        cursor_ = start_;
    }

    Timeline run() {
        for (std::size_t i = 0; i < plan_.highlights.size(); ++i) {
            const CMTime moment = freezeMoment(plan_.highlights[i].timestamp);
            playUntil(moment, moment);
            freeze(i);
        }
        playUntil(end_, soundEnd_);
        return std::move(timeline_);
    }

private:
    CMTime clamped(const CMTime& time) const {
        return minimum(maximum(time, CMTime::zero()), info_.duration);
    }
    /// The tick within which a time is. Some movies have only one tick for each picture, so another tick may
    /// be of another picture.
    CMTime ticks(const CMTime& time) const { return time.converted(frames_.timescale(), Rounding::down); }

    /// When a freeze interrupts the source.
    CMTime freezeMoment(const CMTime& timestamp) const {
        const CMTime moment = minimum(ticks(timestamp), end_);
        const bool afterPictures = moment >= minimum(end_, frames_.end());
        return maximum(cursor_, afterPictures ? moment : appearance(*frames_.containing(moment)));
    }

    /// The time at which a picture of the range appears on screen.
    CMTime appearance(const FrameIndex::Frame& picture) const {
        return picture.index > frames_.containing(start_)->index ? picture.time : start_;
    }

    /// Goes on from the cursor, with the pictures until the one time, with the sound until the other.
    void playUntil(const CMTime& pictureEnd, const CMTime& soundEnd) {
        if (soundEnd > cursor_) {
            timeline_.sound.push_back({SoundPiece::Kind::source, cursor_, soundEnd - cursor_});
        }
        if (pictureEnd <= cursor_) {
            return;
        }
        const CMTime lastTick = pictureEnd - CMTime(1, frames_.timescale());
        timeline_.segments.push_back({.kind = TimelineSegment::Kind::source,
                                      .sourceStart = cursor_,
                                      .duration = pictureEnd - cursor_,
                                      .outputStart = timeline_.total,
                                      .firstPicture = frames_.containing(cursor_)->index,
                                      .endPicture = frames_.containing(lastTick)->index + 1});
        timeline_.total += pictureEnd - cursor_;
        cursor_ = pictureEnd;
    }

    void freeze(std::size_t index) {
        const std::int64_t count = freezeFrameCount(plan_.highlights[index].duration, info_.frameDuration);
        const CMTime length(info_.frameDuration.value * count, info_.frameDuration.timescale);
        timeline_.segments.push_back({.kind = TimelineSegment::Kind::freeze,
                                      .sourceStart = CMTime::zero(),
                                      .duration = length,
                                      .outputStart = timeline_.total,
                                      .highlightIndex = index});
        timeline_.sound.push_back({SoundPiece::Kind::silence, CMTime::zero(), length});
        timeline_.total += length;
    }

    const RenderPlan& plan_;
    const SourceInfo& info_;
    const FrameIndex& frames_;
    CMTime soundEnd_; ///< exact
    CMTime start_;
    CMTime end_;    ///< of the pictures
    CMTime cursor_; ///< what is before it is laid out
    Timeline timeline_{{}, CMTime::zero(), {}};
};

} // namespace

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
    plan.passthrough = (hevc || h264) && info.preferredTransform.isIdentity();
    return plan;
}

Timeline layoutTimeline(const RenderPlan& plan, const SourceInfo& info, const FrameIndex& frames) {
    if (frames.empty() || !plan.rangeStart.isNumeric() || !plan.rangeEnd.isNumeric()) {
        return {{}, CMTime::zero(), {}};
    }
    return TimelineLayout(plan, info, frames).run();
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
