// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/passthrough/video/SplicePlan.h"

#include "ZelvraCore/passthrough/CannotPassThrough.h"
#include "ZelvraCore/passthrough/video/FreezeClock.h"

#include <algorithm>
#include <limits>
#include <numeric>
#include <utility>

namespace zelvra::passthrough {

namespace {

using Kind = PlannedSample::Kind;
using Samples = std::vector<PlannedSample>;

constexpr std::int64_t longestRunSeconds = 20;
/// If hidden pictures are output nevertheless, all of a run together take this part of a frame, so that a
/// screen hardly shows one.
constexpr std::int64_t briefShare = 256;
/// A decoder could hold one back until the next picture comes.
constexpr std::uint32_t copiesBeforeRun = 2;

/// A stretch of the source between two cuts, with what must be decoded around it.
struct SourcePiece {
    std::uint32_t firstRank = 0;
    std::uint32_t endRank = 0;
    std::vector<std::uint32_t> indexes; ///< in decode order, hidden ones included
    std::size_t hiddenBefore = 0;       ///< of these, shown before the piece
    std::size_t hiddenAfter = 0;        ///< of these, shown after it

    bool isEmpty() const { return firstRank == endRank; }
    bool shows(std::uint32_t rank) const { return rank >= firstRank && rank < endRank; }
};

/// What a movie stores of the source: one piece before each freeze and one after the last. Pieces between
/// freezes at the same moment are empty.
class PieceFinder {
public:
    PieceFinder(const SourcePictures& pictures, const VideoCut& cut, const SpliceRules& rules)
        : pictures_(pictures), cut_(cut), rules_(rules) {}

    std::vector<SourcePiece> pieces() const {
        std::vector<SourcePiece> pieces;
        std::uint32_t rank = cut_.firstRank;
        for (std::size_t k = 0; k <= cut_.freezes.size(); ++k) {
            const std::uint32_t end = k < cut_.freezes.size() ? cut_.freezes[k].position : cut_.endRank;
            pieces.push_back(pieceOf(rank, end));
            rank = end;
        }
        return pieces;
    }

private:
    SourcePiece pieceOf(std::uint32_t firstRank, std::uint32_t endRank) const {
        SourcePiece piece{.firstRank = firstRank, .endRank = endRank, .indexes = {}};
        if (piece.isEmpty()) {
            return piece;
        }
        const auto [head, last] = pictures_.decodedFor(firstRank, endRank, rules_.canResumeAt);
        for (std::uint32_t i = head; i <= last; ++i) {
            // Leading pictures refer to the group before, which is not decoded again. H.264 resumes at IDR
            // pictures, which have none.
            const bool leads = rules_.hiding == Hiding::neverShown &&
                               pictures_.presentationTime(i) < pictures_.presentationTime(head);
            const bool shown = piece.shows(pictures_.rankOf(i));
            if (shown || (!leads && !rules_.isDisposable(i))) {
                piece.indexes.push_back(i);
                piece.hiddenBefore += pictures_.rankOf(i) < firstRank ? 1 : 0;
                piece.hiddenAfter += pictures_.rankOf(i) >= endRank ? 1 : 0;
            }
        }
        return piece;
    }

    const SourcePictures& pictures_;
    const VideoCut& cut_;
    const SpliceRules& rules_;
};

void refuseLongRuns(const std::vector<SourcePiece>& pieces, const SourcePictures& pictures,
                    std::uint32_t timescale) {
    std::int64_t total = 0;
    for (const SourcePiece& piece : pieces) {
        if (piece.hiddenBefore == 0) {
            continue;
        }
        const std::int64_t run =
            pictures.timeAtRank(piece.firstRank) - pictures.presentationTime(piece.indexes.front());
        if (run > longestRunSeconds * timescale) {
            throw CannotPassThrough("its groups of pictures are too long");
        }
        total += run;
    }
    const std::int64_t whole = pictures.endAtRank(pictures.count() - 1) - pictures.timeAtRank(0);
    const bool severalFreezes = pieces.size() > 2;
    if (2 * total > whole && severalFreezes) {
        throw CannotPassThrough("more of it would have to be stored twice than once");
    }
}

/// Samples that are hidden before a piece's pictures, copies of a still included.
std::size_t hiddenBefore(const SourcePiece& piece, Hiding hiding) {
    return piece.hiddenBefore + (hiding == Hiding::brief && piece.hiddenBefore > 0 ? copiesBeforeRun : 0);
}

/// Hidden pictures take a tick each. All that come before a piece fit into the last frame of the freeze
/// there, all after it into the time of its last picture; if they are output, into a small part of these.
std::uint32_t factorForHidden(const std::vector<SourcePiece>& pieces, const SourcePictures& pictures,
                              std::uint32_t timescale, const VideoCut& cut, Hiding hiding) {
    const bool brief = hiding == Hiding::brief;
    const std::int64_t freezeFrame =
        cut.frameDuration.converted(static_cast<std::int32_t>(timescale), Rounding::down).value;
    std::int64_t factor = 1;
    const auto makeRoom = [&factor, brief](std::size_t hidden, std::int64_t ticks) {
        const std::int64_t needed = (static_cast<std::int64_t>(hidden) + 2) * (brief ? briefShare : 1);
        ticks = std::max<std::int64_t>(ticks, 1);
        factor = std::max(factor, (needed + ticks - 1) / ticks);
    };
    for (std::size_t k = 0; k < pieces.size(); ++k) {
        if (k > 0 || brief) {
            makeRoom(hiddenBefore(pieces[k], hiding), freezeFrame);
        }
        if (pieces[k].hiddenAfter > 0) {
            const std::int64_t lastFrame =
                cut.momentOf(pieces[k].endRank, pictures) - cut.momentOf(pieces[k].endRank - 1, pictures);
            makeRoom(pieces[k].hiddenAfter, std::min(freezeFrame, lastFrame));
        }
    }
    return static_cast<std::uint32_t>(
        std::min<std::int64_t>(factor, std::numeric_limits<std::int32_t>::max()));
}

/// Gives the samples of one movie their times; lives for one call. Each operation answers from the inputs and
/// from what it is given, and keeps nothing. Times are output ticks from the start of what is shown.
class SpliceTimes {
public:
    SpliceTimes(const SourcePictures& pictures, const VideoCut& cut, Hiding hiding,
                const std::vector<SourcePiece>& pieces, const FreezeClock& clock)
        : pictures_(pictures), cut_(cut), hiding_(hiding), pieces_(pieces), clock_(clock) {}

    /// The samples of a piece in decode order. Those that are hidden, copies of a still first, are decoded
    /// right before the first that is shown.
    Samples sourceSamples(std::size_t pieceNumber) const {
        const SourcePiece& piece = pieces_[pieceNumber];
        if (piece.isEmpty()) {
            return {};
        }
        const std::int64_t tickBefore = pieceNumber == 0 && !brief() ? naturalFrame(piece) : 1;
        const std::int64_t frozenBefore = clock_.totalBefore(pieceNumber);
        Samples samples = copiesBefore(pieceNumber);
        std::size_t firstShown = 0;
        std::uint32_t nextShownRank = piece.firstRank;
        for (const std::uint32_t index : piece.indexes) {
            PlannedSample sample;
            sample.index = index;
            sample.shown = piece.shows(pictures_.rankOf(index));
            sample.sync = sample.shown && pictures_.sample(index).sync;
            sample.startsRun = index == piece.indexes.front();
            if (sample.shown) {
                // In decode order the n-th picture decodes when the n-th is shown: the times increase, and
                // are evenly spaced.
                sample.presentationTime = shownTime(piece, index, frozenBefore);
                sample.decodeTime = shownTime(piece, pictures_.indexAt(nextShownRank), frozenBefore);
                firstShown = nextShownRank == piece.firstRank ? samples.size() : firstShown;
                ++nextShownRank;
            } else if (nextShownRank > piece.firstRank) {
                sample.decodeTime = samples.back().decodeTime + 1;
            }
            samples.push_back(sample);
        }
        for (std::size_t i = firstShown; i-- > 0;) {
            samples[i].decodeTime = samples[i + 1].decodeTime - tickBefore;
        }
        return withHiddenPresented(std::move(samples), pieceNumber, tickBefore);
    }

    Samples freezeSamples(std::size_t freeze) const {
        const std::int64_t start =
            scaled(cut_.momentOf(cut_.freezes[freeze].position, pictures_)) + clock_.totalBefore(freeze);
        Samples samples;
        for (const std::int64_t frame : framesOf(freeze)) {
            PlannedSample sample;
            sample.kind = Kind::freeze;
            sample.sync = frame == 0 || brief();
            sample.index = static_cast<std::uint32_t>(freeze);
            sample.part = static_cast<std::uint32_t>(samples.size());
            sample.decodeTime = sample.presentationTime = start + clock_.atFrame(frame);
            samples.push_back(sample);
        }
        return samples;
    }

    /// Empty if it is not needed. References that are shown after the end are decoded, and a player that
    /// ignores edits would stop on the last of them.
    Samples leadOut(const Samples& before) const {
        if (!brief() || pieces_.back().hiddenAfter == 0) {
            return {};
        }
        PlannedSample still;
        still.kind = Kind::leadOut;
        still.shown = false;
        still.decodeTime = before.back().decodeTime + 1;
        for (const PlannedSample& sample : before) {
            still.presentationTime = std::max(still.presentationTime, sample.presentationTime + 1);
        }
        return {still};
    }

    /// Delays the presentation so that nothing is shown before it is decoded, and starts decoding at 0.
    SamplePlan planOf(Samples samples) const {
        std::int64_t delay = 0;
        for (const PlannedSample& sample : samples) {
            delay = std::max(delay, sample.decodeTime - sample.presentationTime);
        }
        const std::int64_t first = samples.front().decodeTime;
        const PlannedSample* before = nullptr;
        for (PlannedSample& sample : samples) {
            sample.decodeTime -= first;
            sample.presentationTime += delay - first;
            if (before && sample.decodeTime <= before->decodeTime) {
                throw CannotPassThrough("its pictures' times leave no room for a freeze");
            }
            before = &sample;
        }
        samples.front().sync = true;
        SamplePlan plan;
        plan.timescaleFactor = clock_.factor();
        plan.editStart = delay - first;
        plan.editDuration = scaled(cut_.end) + clock_.total();
        plan.mediaDuration = std::max(samples.back().decodeTime + 1, plan.editStart + plan.editDuration);
        plan.samples = std::move(samples);
        return plan;
    }

private:
    bool brief() const { return hiding_ == Hiding::brief; }

    std::int64_t scaled(std::int64_t mediaTime) const {
        return (mediaTime - cut_.start) * std::int64_t{clock_.factor()};
    }

    /// What a hidden picture at the range's start lasts: hidden, so its duration is free.
    std::int64_t naturalFrame(const SourcePiece& piece) const {
        const std::int64_t frame =
            pictures_.endAtRank(piece.firstRank) - pictures_.timeAtRank(piece.firstRank);
        return std::max<std::int64_t>(frame, 1) * clock_.factor();
    }

    /// Copies of the still that is on screen before a hidden run; at the very start, of the first shown
    /// picture.
    Samples copiesBefore(std::size_t pieceNumber) const {
        if (!brief() || pieces_[pieceNumber].hiddenBefore == 0) {
            return {};
        }
        const bool atStart = pieceNumber == 0;
        PlannedSample still;
        still.kind = atStart ? Kind::leadIn : Kind::freeze;
        still.shown = false;
        still.index = atStart ? 0 : static_cast<std::uint32_t>(pieceNumber - 1);
        still.part = atStart ? 0 : static_cast<std::uint32_t>(framesOf(pieceNumber - 1).size());
        Samples copies(copiesBeforeRun, still);
        for (std::uint32_t copy = 0; copy < copiesBeforeRun; ++copy) {
            copies[copy].part += copy;
        }
        return copies;
    }

    std::int64_t shownTime(const SourcePiece& piece, std::uint32_t index, std::int64_t frozenBefore) const {
        const std::uint32_t rank = pictures_.rankOf(index);
        const std::int64_t time =
            rank == piece.firstRank ? cut_.momentOf(rank, pictures_) : pictures_.presentationTime(index);
        return scaled(time) + frozenBefore;
    }

    /// Hidden pictures keep their order. Those that are shown before the piece come right before it, those
    /// that are shown after it come at its very end. In the last piece they come after its end, so that they
    /// are not seen.
    Samples withHiddenPresented(Samples samples, std::size_t pieceNumber, std::int64_t tickBefore) const {
        const SourcePiece& piece = pieces_[pieceNumber];
        const std::int64_t frozenBefore = clock_.totalBefore(pieceNumber);
        const std::int64_t start = scaled(cut_.momentOf(piece.firstRank, pictures_)) + frozenBefore;
        const std::int64_t end = scaled(cut_.momentOf(piece.endRank, pictures_)) + frozenBefore;
        const bool afterTheEnd =
            brief() && piece.endRank == cut_.endRank && pieceNumber + 1 == pieces_.size();
        std::vector<std::size_t> hidden;
        for (std::size_t i = 0; i < samples.size(); ++i) {
            if (!samples[i].shown) {
                hidden.push_back(i);
            }
        }
        std::ranges::stable_sort(hidden, {}, [&](std::size_t i) {
            return samples[i].kind == Kind::source ? std::int64_t{pictures_.rankOf(samples[i].index)} : -1;
        });
        const auto before = static_cast<std::int64_t>(hiddenBefore(piece, hiding_));
        const auto count = static_cast<std::int64_t>(hidden.size());
        for (std::int64_t n = 0; n < count; ++n) {
            const std::int64_t after = afterTheEnd ? end + n - before : end - (count - n);
            samples[hidden[static_cast<std::size_t>(n)]].presentationTime =
                n < before ? start - (before - n) * tickBefore : after;
        }
        return samples;
    }

    /// Frames of a freeze that are stored.
    std::vector<std::int64_t> framesOf(std::size_t freeze) const {
        const std::int64_t count = cut_.freezes[freeze].frames;
        if (brief()) {
            return stillFrames(count, cut_.frameDuration);
        }
        std::vector<std::int64_t> frames(static_cast<std::size_t>(count));
        std::iota(frames.begin(), frames.end(), std::int64_t{0});
        return frames;
    }

    const SourcePictures& pictures_;
    const VideoCut& cut_;
    Hiding hiding_;
    const std::vector<SourcePiece>& pieces_;
    const FreezeClock& clock_;
};

} // namespace

SamplePlan planSplice(const SourcePictures& pictures, std::uint32_t timescale, const VideoCut& cut,
                      const SpliceRules& rules) {
    const std::vector<SourcePiece> pieces = PieceFinder(pictures, cut, rules).pieces();
    refuseLongRuns(pieces, pictures, timescale);
    const FreezeClock clock(cut, timescale, factorForHidden(pieces, pictures, timescale, cut, rules.hiding));
    const SpliceTimes times(pictures, cut, rules.hiding, pieces, clock);
    Samples samples;
    for (std::size_t k = 0; k < pieces.size(); ++k) {
        appendTo(samples, times.sourceSamples(k));
        if (k < cut.freezes.size()) {
            appendTo(samples, times.freezeSamples(k));
        }
    }
    appendTo(samples, times.leadOut(samples));
    return times.planOf(std::move(samples));
}

} // namespace zelvra::passthrough
