// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/passthrough/video/StillPlan.h"

#include "ZelvraCore/passthrough/CannotPassThrough.h"
#include "ZelvraCore/passthrough/video/FreezeClock.h"

#include <algorithm>
#include <set>

namespace zelvra::passthrough {

namespace {

using Kind = PlannedSample::Kind;
using Coding = StillSite::Coding;

/// Plans one movie; lives for one call. Times are source ticks until `place` scales them.
class StillPlanner {
public:
    StillPlanner(const SourcePictures& pictures, const VideoCut& cut, const TraitsOf& traitsOf)
        : pictures_(pictures), cut_(cut), traitsOf_(traitsOf) {
        keepSamples();
        findSites();
        findCover();
    }

    StillPlan plan(std::uint32_t timescale) {
        const std::uint32_t factor = factorForHidden();
        const FreezeClock clock(cut_, timescale, factor);
        factor_ = clock.factor();
        result_.samples.timescaleFactor = factor_;
        emitStream(clock);
        addLeadOut(clock);
        unmarkOpenGroups();
        prependHiddenRun();
        finish(clock);
        return std::move(result_);
    }

private:
    /// A stored source sample is shown, or is a reference of one that is.
    void keepSamples() {
        const std::uint32_t first = pictures_.indexAt(cut_.firstRank);
        const std::uint32_t head = pictures_.syncBefore(first);
        std::uint32_t last = head;
        for (std::uint32_t rank = cut_.firstRank; rank < cut_.endRank; ++rank) {
            last = std::max(last, pictures_.indexAt(rank));
            if (pictures_.indexAt(rank) < head) {
                throw CannotPassThrough("a picture of the range is decoded before its group starts");
            }
        }
        for (std::uint32_t i = head; i <= last; ++i) {
            // Leading pictures refer to the group before, which is not there.
            const bool leads = pictures_.presentationTime(i) < pictures_.presentationTime(head);
            if (isShown(i) || (!leads && traitsOf_(i).reference)) {
                kept_.push_back(i);
            }
        }
    }

    bool isShown(std::uint32_t index) const {
        const std::uint32_t rank = pictures_.rankOf(index);
        return rank >= cut_.firstRank && rank < cut_.endRank;
    }

    /// The stills of a freeze come right after the last kept sample that is shown before it. Positions never
    /// decrease, so one walk over the kept samples in the order of presentation serves all freezes.
    void findSites() {
        std::vector<std::pair<std::uint32_t, std::size_t>> byRank; // rank, place among the kept
        byRank.reserve(kept_.size());
        for (std::size_t k = 0; k < kept_.size(); ++k) {
            byRank.emplace_back(pictures_.rankOf(kept_[k]), k + 1);
        }
        std::ranges::sort(byRank);
        std::size_t walked = 0;
        std::size_t before = 0;
        for (const VideoCut::Freeze& freeze : cut_.freezes) {
            for (; walked < byRank.size() && byRank[walked].first < freeze.position; ++walked) {
                before = std::max(before, byRank[walked].second);
            }
            places_.push_back(before);
            result_.freezes.push_back(siteAt(before, freeze.position));
        }
    }

    /// Where pictures are hidden before the range, its first picture covers the last of them. It comes after
    /// all that is shown before it, as a freeze there would.
    void findCover() {
        if (hiddenRunLength() == 0) {
            return;
        }
        for (std::size_t k = 0; k < kept_.size(); ++k) {
            if (isAhead(kept_[k])) {
                coverPlace_ = k + 1;
            }
        }
        result_.cover = siteAt(coverPlace_, cut_.firstRank);
    }

    bool isAhead(std::uint32_t index) const { return pictures_.rankOf(index) < cut_.firstRank; }

    StillSite siteAt(std::size_t place, std::uint32_t position) const {
        StillSite site;
        if (place > 0) {
            site.decodedBefore = kept_[place - 1];
            site.shownBefore = pictures_.indexAt(position - 1);
        }
        if (position < pictures_.count()) {
            site.shownAfter = pictures_.indexAt(position);
        }
        const bool beforeIdr = position < cut_.endRank && traitsOf_(*site.shownAfter).idr;
        site.coding = beforeIdr ? Coding::idr : place == 0 ? Coding::recovery : Coding::inserted;
        if (site.coding != Coding::inserted) {
            site.head = site.shownAfter;
        }
        return site;
    }

    /// Kept samples that are decoded before anything is shown.
    std::size_t hiddenRunLength() const {
        std::size_t run = 0;
        while (run < kept_.size() && !isShown(kept_[run]) && (places_.empty() || places_.front() > run)) {
            ++run;
        }
        return run;
    }

    /// The hidden run takes a tick for each picture; all of it together should not last longer than one
    /// frame. Between any two source samples there is a tick for the cover.
    std::uint32_t factorForHidden() const {
        const std::size_t run = hiddenRunLength();
        if (run == 0) {
            return 1;
        }
        const std::uint32_t rank = cut_.firstRank;
        const std::int64_t frame =
            std::max<std::int64_t>(pictures_.endAtRank(rank) - pictures_.timeAtRank(rank), 1);
        const auto ticks = static_cast<std::int64_t>(2 * run + 4);
        return static_cast<std::uint32_t>(std::max<std::int64_t>((ticks + frame - 1) / frame, 2));
    }

    /// Output ticks from the start of what is shown, freezes left out.
    std::int64_t scaled(std::int64_t mediaTime) const { return (mediaTime - cut_.start) * factor_; }

    /// Where the first picture appears later than the range starts, it and all that is decoded up to it move
    /// there.
    std::int64_t decodeTime(std::uint32_t index) const {
        const std::uint32_t first = pictures_.indexAt(cut_.firstRank);
        const std::int64_t gap = std::max<std::int64_t>(pictures_.presentationTime(first) - cut_.start, 0);
        return pictures_.decodeTime(index) - (index <= first ? gap : 0);
    }

    std::int64_t presentationTime(std::uint32_t index) const {
        return pictures_.rankOf(index) == cut_.firstRank ? cut_.start : pictures_.presentationTime(index);
    }

    void emitStream(const FreezeClock& clock) {
        std::size_t freeze = 0;
        const std::size_t run = hiddenRunLength();
        for (std::size_t place = run; place <= kept_.size(); ++place) {
            if (place == coverPlace_ && place > run) {
                PlannedSample cover = coverSample();
                cover.decodeTime = result_.samples.samples.back().decodeTime + 1;
                result_.samples.samples.push_back(cover);
            }
            for (; freeze < places_.size() && places_[freeze] == place; ++freeze) {
                emitFreeze(clock, freeze);
            }
            if (place < kept_.size()) {
                emitSource(clock, kept_[place], clock.totalBefore(freeze));
            }
        }
    }

    void emitSource(const FreezeClock& clock, std::uint32_t index, std::int64_t frozenBefore) {
        const bool shown = isShown(index);
        const std::uint32_t rank = pictures_.rankOf(index);
        PlannedSample sample;
        sample.shown = shown;
        sample.sync = shown && pictures_.sample(index).sync;
        sample.index = index;
        sample.decodeTime = scaled(decodeTime(index)) + frozenBefore;
        sample.presentationTime =
            scaled(presentationTime(index)) + (rank >= cut_.firstRank ? clock.totalUpTo(rank) : 0);
        result_.samples.samples.push_back(sample);
    }

    void emitFreeze(const FreezeClock& clock, std::size_t freeze) {
        const std::size_t place = places_[freeze];
        const std::uint32_t next = place < kept_.size() ? kept_[place] : kept_.back() + 1;
        const std::int64_t nextDecode =
            next < pictures_.count() ? decodeTime(next)
                                     : decodeTime(kept_.back()) + pictures_.sample(kept_.back()).duration;
        const std::int64_t moment = cut_.momentOf(cut_.freezes[freeze].position, pictures_);
        const std::int64_t decode = scaled(std::min(nextDecode, moment)) + clock.totalBefore(freeze);
        const std::int64_t presentation = scaled(moment) + clock.totalBefore(freeze);
        const Coding coding = result_.freezes[freeze].coding;
        std::uint32_t part = 0;
        for (const std::int64_t frame : stillFrames(cut_.freezes[freeze].frames, cut_.frameDuration)) {
            PlannedSample still;
            still.kind = Kind::freeze;
            still.index = static_cast<std::uint32_t>(freeze);
            still.sync = coding == Coding::idr || (coding == Coding::recovery && freeze == 0 && part == 0);
            still.part = part++;
            still.decodeTime = decode + clock.atFrame(frame);
            still.presentationTime = presentation + clock.atFrame(frame);
            result_.samples.samples.push_back(still);
        }
    }

    /// References that follow the end are decoded, and a player that ignores edits would rest on the last of
    /// them.
    void addLeadOut(const FreezeClock& clock) {
        const auto beyond = [&](std::uint32_t i) { return pictures_.rankOf(i) >= cut_.endRank; };
        if (std::ranges::none_of(kept_, beyond)) {
            return;
        }
        const auto latest = std::ranges::max(kept_, {}, [&](std::uint32_t i) { return pictures_.rankOf(i); });
        StillSite site;
        site.decodedBefore = kept_.back();
        site.shownBefore = latest;
        result_.leadOut = site;

        const std::int64_t frame = std::max<std::int64_t>(
            pictures_.endAtRank(cut_.endRank - 1) - pictures_.timeAtRank(cut_.endRank - 1), 1);
        PlannedSample still;
        still.kind = Kind::leadOut;
        still.shown = false;
        still.decodeTime = result_.samples.samples.back().decodeTime + frame * factor_;
        still.presentationTime =
            std::max(still.decodeTime, scaled(pictures_.presentationTime(latest) + frame) + clock.total());
        result_.samples.samples.push_back(still);
    }

    /// A player that seeks to a sync sample which is not an IDR gives out no still that is shown before it.
    void unmarkOpenGroups() {
        std::set<std::uint32_t> unmarked;
        for (const StillSite& site : result_.freezes) {
            if (site.coding == Coding::idr || !site.shownAfter) {
                continue;
            }
            unmarked.insert(*site.shownAfter);
            // Decoded before the still, shown after it: walk back over what the reordering can span.
            for (std::uint32_t i = site.decodedBefore.value_or(0); i > 0; --i) {
                if (pictures_.sample(i).sync) {
                    if (pictures_.rankOf(i) >= pictures_.rankOf(*site.shownAfter)) {
                        unmarked.insert(i);
                    }
                    break;
                }
            }
        }
        for (PlannedSample& sample : result_.samples.samples) {
            if (sample.kind == Kind::source && unmarked.contains(sample.index) &&
                !traitsOf_(sample.index).idr) {
                sample.sync = false;
            }
        }
    }

    static PlannedSample coverSample() {
        PlannedSample cover;
        cover.kind = Kind::cover;
        cover.shown = false;
        return cover;
    }

    /// What is decoded before the first sample that is shown, a tick each. Two copies of the first shown
    /// picture come before it: what a player that ignores edits shows at once.
    std::vector<PlannedSample> hiddenRun() {
        std::vector<PlannedSample> hidden;
        const std::size_t run = hiddenRunLength();
        if (run == 0) {
            return hidden;
        }
        StillSite site;
        site.head = kept_.front();
        site.coding = traitsOf_(kept_.front()).idr ? Coding::idr : Coding::recovery;
        result_.leadIn = site;
        for (std::uint32_t part = 0; part < 2; ++part) {
            PlannedSample still;
            still.kind = Kind::leadIn;
            still.shown = false;
            still.sync = part == 0;
            still.part = part;
            hidden.push_back(still);
        }
        for (std::size_t k = 0; k < run; ++k) {
            PlannedSample sample;
            sample.shown = false;
            sample.index = kept_[k];
            hidden.push_back(sample);
        }
        if (coverPlace_ == run) {
            hidden.push_back(coverSample());
        }
        for (std::size_t i = 0; i < hidden.size(); ++i) {
            hidden[i].decodeTime = static_cast<std::int64_t>(i);
        }
        return hidden;
    }

    /// Puts the hidden run in front of all that is planned so far, which moves behind it.
    void prependHiddenRun() {
        const std::vector<PlannedSample> hidden = hiddenRun();
        auto& samples = result_.samples.samples;
        std::int64_t earliest = samples.front().decodeTime;
        for (const PlannedSample& sample : samples) {
            earliest = std::min({earliest, sample.decodeTime, sample.presentationTime});
        }
        const std::int64_t shift = static_cast<std::int64_t>(hidden.size()) - earliest;
        for (PlannedSample& sample : samples) {
            sample.decodeTime += shift;
            sample.presentationTime += shift;
        }
        result_.samples.editStart = shift;
        samples.insert(samples.begin(), hidden.begin(), hidden.end());
        samples.front().sync = true;
        if (result_.cover) {
            presentAhead(hidden.size());
        }
    }

    /// Presents what lies before the range as early as it is decoded, a tick each, so that the cover stands
    /// for most of the time that a player may spend there.
    void presentAhead(std::size_t run) {
        auto& samples = result_.samples.samples;
        std::vector<std::size_t> ahead;
        for (std::size_t i = 0; i < samples.size(); ++i) {
            const bool isHidden = !samples[i].shown && samples[i].kind == Kind::source;
            if (i < run || samples[i].kind == Kind::cover || (isHidden && isAhead(samples[i].index))) {
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
        std::int64_t time = -1;
        for (const std::size_t i : ahead) {
            time = std::max(time + 1, samples[i].decodeTime);
            samples[i].presentationTime = time;
        }
        // Where they need longer than until the range starts, all that is shown waits for them.
        const std::int64_t delay = std::max<std::int64_t>(time + 1 - result_.samples.editStart, 0);
        std::vector<bool> waits(samples.size(), true);
        for (const std::size_t i : ahead) {
            waits[i] = false;
        }
        for (std::size_t i = 0; i < samples.size(); ++i) {
            samples[i].presentationTime += waits[i] ? delay : 0;
        }
        result_.samples.editStart += delay;
    }

    void finish(const FreezeClock& clock) {
        SamplePlan& plan = result_.samples;
        plan.editDuration = scaled(cut_.end) + clock.total();
        const PlannedSample* before = nullptr;
        for (const PlannedSample& sample : plan.samples) {
            if (sample.presentationTime < sample.decodeTime ||
                (before && sample.decodeTime <= before->decodeTime)) {
                throw CannotPassThrough("its pictures' times leave no room for a freeze");
            }
            before = &sample;
        }
        const std::uint32_t last = kept_.back();
        plan.mediaDuration =
            std::max(plan.samples.back().decodeTime +
                         std::max<std::int64_t>(pictures_.sample(last).duration, 1) * factor_,
                     plan.editStart + plan.editDuration);
    }

    const SourcePictures& pictures_;
    const VideoCut& cut_;
    const TraitsOf& traitsOf_;
    std::vector<std::uint32_t> kept_; ///< indexes of the stored source samples, in decode order
    std::vector<std::size_t> places_; ///< for each freeze: how many kept samples are decoded before it
    std::size_t coverPlace_ = 0;      ///< the same for the cover
    std::uint32_t factor_ = 1;
    StillPlan result_;
};

} // namespace

StillPlan planStills(const SourcePictures& pictures, std::uint32_t timescale, const VideoCut& cut,
                     const TraitsOf& traitsOf) {
    return StillPlanner(pictures, cut, traitsOf).plan(timescale);
}

} // namespace zelvra::passthrough
