// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/render/PictureSchedule.h"

#include <numeric>

namespace zelvra {

namespace {

/// With a greater timescale, a picture that is shown for minutes would have more ticks than an index can
/// hold.
constexpr std::int64_t greatestTimescale = 10'000'000;

std::int32_t commonTimescale(std::int32_t source, std::int32_t freezes) {
    const std::int64_t common = std::lcm<std::int64_t>(source, freezes);
    return common <= greatestTimescale ? static_cast<std::int32_t>(common) : source;
}

} // namespace

std::int64_t PictureSchedule::pictureCount() const {
    std::int64_t count = 0;
    for (const Run& run : runs) {
        count += run.frames;
    }
    return count;
}

std::int64_t PictureSchedule::ticksOfFrame(std::int64_t number) const {
    return CMTime(frameDuration.value * number, frameDuration.timescale).converted(timescale).value;
}

PictureSchedule schedulePictures(const Timeline& timeline, const FrameIndex& frames,
                                 const CMTime& frameDuration) {
    PictureSchedule schedule;
    schedule.timescale = commonTimescale(frames.timescale(), frameDuration.timescale);
    schedule.frameDuration = frameDuration;
    const auto ticks = [&](const CMTime& time) { return time.converted(schedule.timescale).value; };
    for (const TimelineSegment& segment : timeline.segments) {
        if (segment.kind == TimelineSegment::Kind::freeze) {
            schedule.runs.push_back({ticks(segment.outputStart), segment.highlightIndex,
                                     freezeFrameCount(segment.duration, frameDuration), true});
            continue;
        }
        for (std::size_t index = segment.firstPicture; index < segment.endPicture; ++index) {
            const bool first = index == segment.firstPicture;
            const CMTime shown = first ? segment.sourceStart : frames.frame(index).time;
            schedule.runs.push_back({ticks(segment.outputStart + (shown - segment.sourceStart)), index});
        }
    }
    schedule.end = ticks(timeline.total);
    schedule.sound = timeline.sound;
    if (!schedule.sound.empty() && schedule.sound.back().kind == SoundPiece::Kind::source) {
        CMTime& duration = schedule.sound.back().duration;
        duration = duration.converted(frames.timescale());
    }
    return schedule;
}

} // namespace zelvra
