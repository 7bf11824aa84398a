// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/media/reencode/PictureSchedule.h"

#include "ZelvraCore/records/ZVError.h"

#include <algorithm>
#include <numeric>

namespace zelvra {

namespace {

/// Beyond this timescale a picture that stands for minutes would have more ticks than an index can hold.
constexpr std::int64_t greatestTimescale = 10'000'000;

std::int32_t commonTimescale(std::int32_t source, std::int32_t freezes) {
    const std::int64_t common = std::lcm<std::int64_t>(source, freezes);
    return common <= greatestTimescale ? static_cast<std::int32_t>(common) : source;
}

class Scheduler {
public:
    Scheduler(const Composition& composition, const FrameIndex& frames, const CMTime& movieEnd)
        : composition_(composition), frames_(frames) {
        schedule_.timescale = commonTimescale(frames.timescale(), composition.frameDuration.timescale);
        schedule_.freezeStep =
            std::max<std::int64_t>(1, composition.frameDuration.converted(schedule_.timescale).value);
        start_ = sourceTicks(maximum(composition.start, CMTime::zero()));
        rangeEnd_ = std::max(start_, sourceTicks(minimum(composition.end, movieEnd)));
        visibleEnd_ = sourceTicks(frames.end());
        const bool waitsForSound = std::ranges::any_of(composition.freezes, [&](const auto& freeze) {
            return sourceTicks(freeze.moment) >= visibleEnd_;
        });
        end_ = std::max(start_, waitsForSound ? rangeEnd_ : std::min(rangeEnd_, visibleEnd_));
        first_ = indexAt(start_);
        endIndex_ = end_ > start_ ? indexAt(end_ - 1) + 1 : first_;
    }

    PictureSchedule run() {
        next_ = first_;
        cursor_ = start_;
        soundCursor_ = start_;
        for (std::size_t i = 0; i < composition_.freezes.size(); ++i) {
            const std::size_t position = positionOf(composition_.freezes[i]);
            playUntil(position);
            freeze(i);
        }
        playUntil(endIndex_);
        hearUntil(rangeEnd_);
        schedule_.end = at_;
        return std::move(schedule_);
    }

private:
    std::int64_t sourceTicks(const CMTime& time) const { return time.converted(frames_.timescale()).value; }
    std::size_t indexAt(std::int64_t ticks) const {
        return frames_.containing({ticks, frames_.timescale()})->index;
    }
    std::int64_t startOf(std::size_t index) const {
        return index == endIndex_ ? end_ : index == first_ ? start_ : frames_.frame(index).time.value;
    }
    std::int64_t outputTicks(std::int64_t ticks) const {
        return ticks * (schedule_.timescale / frames_.timescale());
    }

    /// Index of the source picture that the freeze comes before.
    std::size_t positionOf(const Composition::Freeze& freeze) const {
        const std::int64_t moment = sourceTicks(freeze.moment);
        return moment >= std::min(end_, visibleEnd_) ? endIndex_ : std::max(indexAt(moment), first_);
    }

    void playUntil(std::size_t index) {
        for (; next_ < index; ++next_) {
            schedule_.runs.push_back({at_ + outputTicks(startOf(next_) - cursor_), next_, 1, false});
        }
        at_ += outputTicks(startOf(index) - cursor_);
        cursor_ = startOf(index);
        hearUntil(cursor_);
    }

    void hearUntil(std::int64_t ticks) {
        if (ticks <= soundCursor_) {
            return;
        }
        const CMTime length(ticks - soundCursor_, frames_.timescale());
        std::vector<SoundPiece>& sound = schedule_.sound;
        if (!sound.empty() && sound.back().kind == SoundPiece::Kind::source) {
            sound.back().duration += length; // nothing has come between
        } else {
            sound.push_back({SoundPiece::Kind::source, {soundCursor_, frames_.timescale()}, length});
        }
        soundCursor_ = ticks;
    }

    void freeze(std::size_t index) {
        const std::int64_t frames = composition_.freezes[index].frames;
        schedule_.runs.push_back({at_, index, frames, true});
        const CMTime length(frames * schedule_.freezeStep, schedule_.timescale);
        schedule_.sound.push_back({SoundPiece::Kind::silence, CMTime::zero(), length});
        at_ += length.value;
    }

    const Composition& composition_;
    const FrameIndex& frames_;
    PictureSchedule schedule_;
    // On the source's timeline, in its ticks
    std::int64_t start_ = 0;
    std::int64_t rangeEnd_ = 0;
    std::int64_t visibleEnd_ = 0; ///< of the last picture's own length
    std::int64_t end_ = 0;        ///< of what is shown
    std::size_t first_ = 0;
    std::size_t endIndex_ = 0;
    // How far it has come
    std::size_t next_ = 0;
    std::int64_t cursor_ = 0;
    std::int64_t soundCursor_ = 0;
    std::int64_t at_ = 0; ///< in the output, in its ticks
};

} // namespace

std::int64_t PictureSchedule::pictureCount() const {
    std::int64_t count = 0;
    for (const Run& run : runs) {
        count += run.frames;
    }
    return count;
}

PictureSchedule schedulePictures(const Composition& composition, const FrameIndex& frames,
                                 const CMTime& movieEnd) {
    if (frames.empty() || !composition.start.isNumeric() || !composition.end.isNumeric()) {
        throw MediaError(MediaError::Cause::outOfRange, "the range holds no picture");
    }
    PictureSchedule schedule = Scheduler(composition, frames, movieEnd).run();
    if (schedule.runs.empty()) {
        throw MediaError(MediaError::Cause::outOfRange, "the range holds no picture");
    }
    return schedule;
}

} // namespace zelvra
