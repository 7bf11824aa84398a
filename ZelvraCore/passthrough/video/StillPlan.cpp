// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/passthrough/video/StillPlan.h"

#include "ZelvraCore/passthrough/CannotPassThrough.h"
#include "ZelvraCore/passthrough/video/FreezeClock.h"

#include <algorithm>
#include <utility>

namespace zelvra::passthrough {

namespace {

using Kind = PlannedSample::Kind;
using PictureType = StillSite::PictureType;
using Samples = std::vector<PlannedSample>;

/// The hidden run takes a tick for each picture; all of it together should not last longer than one frame.
/// Between any two source samples there is a tick for the cover.
std::uint32_t factorForHidden(const SourcePictures& pictures, const VideoCut& cut, std::size_t run) {
    if (run == 0) {
        return 1;
    }
    const std::int64_t frame =
        std::max<std::int64_t>(pictures.endAtRank(cut.firstRank) - pictures.timeAtRank(cut.firstRank), 1);
    const auto ticks = static_cast<std::int64_t>(2 * run + 4);
    return static_cast<std::uint32_t>(std::max<std::int64_t>((ticks + frame - 1) / frame, 2));
}

PlannedSample coverSample() {
    PlannedSample cover;
    cover.kind = Kind::cover;
    cover.shown = false;
    return cover;
}

/// Gives the samples of one movie their times; lives for one call. Each operation answers from the inputs and
/// from what it is given, and keeps nothing.
class StillTimes {
public:
    StillTimes(const SourcePictures& pictures, const VideoCut& cut, const StillSites& sites,
               const FreezeClock& clock)
        : pictures_(pictures), cut_(cut), sites_(sites), clock_(clock) {}

    /// All samples but those of the hidden run. Time 0 is the start of the edit.
    Samples played() const {
        const std::size_t run = sites_.hiddenRun;
        Samples samples;
        std::size_t freeze = 0;
        for (std::size_t stored = run; stored <= sites_.stored.size(); ++stored) {
            if (sites_.cover && sites_.cover->storedBefore == stored && stored > run) {
                PlannedSample cover = coverSample();
                cover.decodeTime = samples.back().decodeTime + 1;
                samples.push_back(cover);
            }
            for (; freeze < sites_.freezes.size() && sites_.freezes[freeze].storedBefore == stored;
                 ++freeze) {
                appendTo(samples, stills(freeze));
            }
            if (stored < sites_.stored.size()) {
                samples.push_back(source(sites_.stored[stored], clock_.totalBefore(freeze)));
            }
        }
        if (sites_.leadOut) {
            samples.push_back(leadOut(samples.back().decodeTime));
        }
        return samples;
    }

    /// What is decoded before the first sample that is shown, a tick each from 0 on. Two copies of the first
    /// shown picture come before it: what a player that ignores edits shows at once.
    Samples hidden() const {
        Samples samples;
        const std::size_t run = sites_.hiddenRun;
        if (run == 0) {
            return samples;
        }
        for (std::uint32_t part = 0; part < 2; ++part) {
            PlannedSample still;
            still.kind = Kind::leadIn;
            still.shown = false;
            still.sync = part == 0;
            still.part = part;
            samples.push_back(still);
        }
        for (std::size_t i = 0; i < run; ++i) {
            PlannedSample sample;
            sample.shown = false;
            sample.index = sites_.stored[i];
            samples.push_back(sample);
        }
        if (sites_.cover->storedBefore == run) {
            samples.push_back(coverSample());
        }
        for (std::size_t i = 0; i < samples.size(); ++i) {
            samples[i].decodeTime = static_cast<std::int64_t>(i);
        }
        return samples;
    }

    /// The hidden run, then what is played, moved to after it.
    SamplePlan joined(const Samples& hidden, Samples played) const {
        std::int64_t earliest = played.front().decodeTime;
        for (const PlannedSample& sample : played) {
            earliest = std::min({earliest, sample.decodeTime, sample.presentationTime});
        }
        SamplePlan plan;
        plan.timescaleFactor = clock_.factor();
        plan.editStart = static_cast<std::int64_t>(hidden.size()) - earliest;
        for (PlannedSample& sample : played) {
            sample.decodeTime += plan.editStart;
            sample.presentationTime += plan.editStart;
        }
        plan.samples = std::move(played);
        plan.samples.insert(plan.samples.begin(), hidden.begin(), hidden.end());
        plan.samples.front().sync = true;
        return plan;
    }

    /// Presents what precedes the range as early as it is decoded, a tick each, so that the cover is shown
    /// for most of the time that a player may spend there. The first `run` samples are hidden.
    SamplePlan withEarlyHidden(SamplePlan plan, std::size_t run) const {
        const std::vector<std::size_t> ahead = aheadOfRange(plan.samples, run);
        std::int64_t time = -1;
        for (const std::size_t i : ahead) {
            time = std::max(time + 1, plan.samples[i].decodeTime);
            plan.samples[i].presentationTime = time;
        }
        // If they need longer than until the range starts, all that is shown waits for them.
        const std::int64_t delay = std::max<std::int64_t>(time + 1 - plan.editStart, 0);
        std::vector<bool> waits(plan.samples.size(), true);
        for (const std::size_t i : ahead) {
            waits[i] = false;
        }
        for (std::size_t i = 0; i < plan.samples.size(); ++i) {
            plan.samples[i].presentationTime += waits[i] ? delay : 0;
        }
        plan.editStart += delay;
        return plan;
    }

    SamplePlan finished(SamplePlan plan) const {
        const PlannedSample* before = nullptr;
        for (const PlannedSample& sample : plan.samples) {
            if (sample.presentationTime < sample.decodeTime ||
                (before && sample.decodeTime <= before->decodeTime)) {
                throw CannotPassThrough("its pictures' times leave no room for a freeze");
            }
            before = &sample;
        }
        plan.editDuration = scaled(cut_.end) + clock_.total();
        const std::int64_t last =
            std::max<std::int64_t>(pictures_.sample(sites_.stored.back()).duration, 1) * clock_.factor();
        plan.mediaDuration =
            std::max(plan.samples.back().decodeTime + last, plan.editStart + plan.editDuration);
        return plan;
    }

private:
    /// Output ticks from the start of what is shown, freezes left out.
    std::int64_t scaled(std::int64_t mediaTime) const {
        return (mediaTime - cut_.start) * std::int64_t{clock_.factor()};
    }

    /// If the first picture appears later than the range starts, it and all that is decoded up to it move to
    /// the range's start.
    std::int64_t decodeTime(std::uint32_t index) const {
        const std::uint32_t first = pictures_.indexAt(cut_.firstRank);
        const std::int64_t gap = std::max<std::int64_t>(pictures_.presentationTime(first) - cut_.start, 0);
        return pictures_.decodeTime(index) - (index <= first ? gap : 0);
    }

    std::int64_t presentationTime(std::uint32_t index) const {
        return pictures_.rankOf(index) == cut_.firstRank ? cut_.start : pictures_.presentationTime(index);
    }

    PlannedSample source(std::uint32_t index, std::int64_t frozenBefore) const {
        const std::uint32_t rank = pictures_.rankOf(index);
        PlannedSample sample;
        sample.shown = rank >= cut_.firstRank && rank < cut_.endRank;
        sample.sync = sample.shown && pictures_.sample(index).sync && !sites_.notSync.contains(index);
        sample.index = index;
        sample.decodeTime = scaled(decodeTime(index)) + frozenBefore;
        sample.presentationTime =
            scaled(presentationTime(index)) + (rank >= cut_.firstRank ? clock_.totalUpTo(rank) : 0);
        return sample;
    }

    Samples stills(std::size_t freeze) const {
        const std::vector<std::uint32_t>& stored = sites_.stored;
        const StillSite& site = sites_.freezes[freeze];
        const std::uint32_t next =
            site.storedBefore < stored.size() ? stored[site.storedBefore] : stored.back() + 1;
        const std::int64_t nextDecode =
            next < pictures_.count() ? decodeTime(next)
                                     : decodeTime(stored.back()) + pictures_.sample(stored.back()).duration;
        const std::int64_t moment = cut_.momentOf(cut_.freezes[freeze].position, pictures_);
        const std::int64_t decode = scaled(std::min(nextDecode, moment)) + clock_.totalBefore(freeze);
        const std::int64_t presentation = scaled(moment) + clock_.totalBefore(freeze);
        const bool firstOfStream = site.pictureType == PictureType::recoveryPoint && freeze == 0;
        Samples samples;
        for (const std::int64_t frame : stillFrames(cut_.freezes[freeze].frames, cut_.frameDuration)) {
            PlannedSample still;
            still.kind = Kind::freeze;
            still.index = static_cast<std::uint32_t>(freeze);
            still.part = static_cast<std::uint32_t>(samples.size());
            still.sync = site.pictureType == PictureType::idr || (firstOfStream && still.part == 0);
            still.decodeTime = decode + clock_.atFrame(frame);
            still.presentationTime = presentation + clock_.atFrame(frame);
            samples.push_back(still);
        }
        return samples;
    }

    /// References that are shown after the end are decoded, and a player that ignores edits would stop on the
    /// last of them.
    PlannedSample leadOut(std::int64_t decodedBefore) const {
        const std::uint32_t rank = cut_.endRank - 1;
        const std::int64_t frame =
            std::max<std::int64_t>(pictures_.endAtRank(rank) - pictures_.timeAtRank(rank), 1);
        const std::int64_t latest = pictures_.presentationTime(*sites_.leadOut->shownBefore);
        PlannedSample still;
        still.kind = Kind::leadOut;
        still.shown = false;
        still.decodeTime = decodedBefore + frame * clock_.factor();
        still.presentationTime = std::max(still.decodeTime, scaled(latest + frame) + clock_.total());
        return still;
    }

    /// The samples that are presented before the range, in the order of presentation.
    std::vector<std::size_t> aheadOfRange(const Samples& samples, std::size_t run) const {
        std::vector<std::size_t> ahead;
        for (std::size_t i = 0; i < samples.size(); ++i) {
            const bool isHidden = !samples[i].shown && samples[i].kind == Kind::source;
            if (i < run || samples[i].kind == Kind::cover ||
                (isHidden && pictures_.rankOf(samples[i].index) < cut_.firstRank)) {
                ahead.push_back(i);
            }
        }
        std::ranges::stable_sort(ahead, {}, [&](std::size_t i) -> std::int64_t {
            switch (samples[i].kind) {
            case Kind::leadIn: return -1;
            case Kind::cover: return cut_.firstRank;
            default: return pictures_.rankOf(samples[i].index);
            }
        });
        return ahead;
    }

    const SourcePictures& pictures_;
    const VideoCut& cut_;
    const StillSites& sites_;
    const FreezeClock& clock_;
};

} // namespace

StillPlan planStills(const SourcePictures& pictures, std::uint32_t timescale, const VideoCut& cut,
                     const TraitsOf& traitsOf) {
    StillSites sites = findStillSites(pictures, cut, traitsOf);
    const FreezeClock clock(cut, timescale, factorForHidden(pictures, cut, sites.hiddenRun));
    const StillTimes times(pictures, cut, sites, clock);
    const Samples hidden = times.hidden();
    SamplePlan plan = times.joined(hidden, times.played());
    if (sites.cover) {
        plan = times.withEarlyHidden(std::move(plan), hidden.size());
    }
    return {times.finished(std::move(plan)), std::move(sites)};
}

} // namespace zelvra::passthrough
