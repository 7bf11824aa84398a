// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/passthrough/video/SplicePlan.h"

#include "ZelvraCore/passthrough/CannotPassThrough.h"
#include "ZelvraCore/passthrough/video/FreezeClock.h"

#include <algorithm>
#include <limits>
#include <numeric>

namespace zelvra::passthrough {

namespace {

using Kind = PlannedSample::Kind;

constexpr std::int64_t longestRunSeconds = 20;
/// Hidden pictures that are given out all the same take this part of a frame together, so that a screen
/// hardly catches one.
constexpr std::int64_t briefShare = 256;
/// One could be held back until the next picture comes.
constexpr std::uint32_t copiesBeforeRun = 2;

/// A stretch of the source between two cuts, with what must be decoded around it.
struct SourcePiece {
    std::uint32_t firstRank = 0;
    std::uint32_t endRank = 0;
    std::vector<std::uint32_t> indexes; ///< in decode order, hidden ones included
    std::size_t hiddenBefore = 0;       ///< shown before the piece
    std::size_t hiddenAfter = 0;        ///< shown after it

    bool shows(std::uint32_t rank) const { return rank >= firstRank && rank < endRank; }
};

/// Plans one movie; lives for one call.
class SplicePlanner {
public:
    SplicePlanner(const SourcePictures& pictures, std::uint32_t timescale, const VideoCut& cut,
                  const SpliceRules& rules)
        : pictures_(pictures), timescale_(timescale), cut_(cut), rules_(rules) {}

    SamplePlan plan() {
        gatherPieces();
        refuseLongRuns();
        const FreezeClock clock(cut_, timescale_, factorForHidden());
        plan_.timescaleFactor = clock.factor();
        for (std::size_t k = 0; k <= cut_.freezes.size(); ++k) {
            if (const SourcePiece& piece = pieces_[k]; piece.firstRank < piece.endRank) {
                emitSource(k, clock.totalBefore(k));
            }
            if (k < cut_.freezes.size()) {
                emitFreeze(k, clock);
            }
        }
        emitLeadOut();
        finish(clock);
        return std::move(plan_);
    }

private:
    bool brief() const { return rules_.hiding == Hiding::brief; }

    std::int64_t scaled(std::int64_t mediaTime) const {
        return (mediaTime - cut_.start) * static_cast<std::int64_t>(plan_.timescaleFactor);
    }

    /// One piece before each freeze and one after the last; empty where freezes share a moment.
    void gatherPieces() {
        std::uint32_t rank = cut_.firstRank;
        for (std::size_t k = 0; k <= cut_.freezes.size(); ++k) {
            const std::uint32_t end = k < cut_.freezes.size() ? cut_.freezes[k].position : cut_.endRank;
            pieces_.push_back(pieceOf(rank, end));
            rank = end;
        }
    }

    SourcePiece pieceOf(std::uint32_t firstRank, std::uint32_t endRank) const {
        SourcePiece piece{.firstRank = firstRank, .endRank = endRank, .indexes = {}};
        if (firstRank == endRank) {
            return piece;
        }
        const std::uint32_t head = pictures_.syncBefore(pictures_.indexAt(firstRank), rules_.canResumeAt);
        std::uint32_t last = head;
        for (std::uint32_t rank = firstRank; rank < endRank; ++rank) {
            if (pictures_.indexAt(rank) < head) {
                throw CannotPassThrough("a picture of the range is decoded before its group starts");
            }
            last = std::max(last, pictures_.indexAt(rank));
        }
        for (std::uint32_t i = head; i <= last; ++i) {
            // Leading pictures refer to the group before, which is not decoded again. H.264 resumes at IDR
            // pictures, behind which there are none.
            const bool leads = !brief() && pictures_.presentationTime(i) < pictures_.presentationTime(head);
            const bool shown = piece.shows(pictures_.rankOf(i));
            if (shown || (!leads && !rules_.isDisposable(i))) {
                piece.indexes.push_back(i);
                piece.hiddenBefore += pictures_.rankOf(i) < firstRank ? 1 : 0;
                piece.hiddenAfter += pictures_.rankOf(i) >= endRank ? 1 : 0;
            }
        }
        return piece;
    }

    void refuseLongRuns() const {
        std::int64_t total = 0;
        for (const SourcePiece& piece : pieces_) {
            if (piece.hiddenBefore == 0) {
                continue;
            }
            const std::int64_t run =
                pictures_.timeAtRank(piece.firstRank) - pictures_.presentationTime(piece.indexes.front());
            if (run > longestRunSeconds * timescale_) {
                throw CannotPassThrough("its groups of pictures are too long");
            }
            total += run;
        }
        const std::int64_t whole = pictures_.endAtRank(pictures_.count() - 1) - pictures_.timeAtRank(0);
        if (2 * total > whole && cut_.freezes.size() > 1) {
            throw CannotPassThrough("more of it would have to be stored twice than once");
        }
    }

    /// Samples that are hidden in front of a piece's pictures, copies of a still included.
    std::size_t hiddenBefore(const SourcePiece& piece) const {
        return piece.hiddenBefore + (brief() && piece.hiddenBefore > 0 ? copiesBeforeRun : 0);
    }

    /// The source's ticks that the last picture of a piece is shown for.
    std::int64_t lastFrame(const SourcePiece& piece) const {
        const std::uint32_t rank = piece.endRank - 1;
        return cut_.momentOf(piece.endRank, pictures_) - cut_.momentOf(rank, pictures_);
    }

    /// Hidden pictures take a tick each; all that stand before a piece fit into the last frame of the freeze
    /// there, all behind it into its last picture's time, or into a small part of either.
    std::uint32_t factorForHidden() const {
        const std::int64_t freezeFrame =
            cut_.frameDuration.converted(static_cast<std::int32_t>(timescale_), Rounding::down).value;
        std::int64_t factor = 1;
        const auto makeRoom = [&factor, this](std::size_t hidden, std::int64_t ticks) {
            const std::int64_t needed = (static_cast<std::int64_t>(hidden) + 2) * (brief() ? briefShare : 1);
            ticks = std::max<std::int64_t>(ticks, 1);
            factor = std::max(factor, (needed + ticks - 1) / ticks);
        };
        for (std::size_t k = 0; k < pieces_.size(); ++k) {
            if (k > 0 || brief()) {
                makeRoom(hiddenBefore(pieces_[k]), freezeFrame);
            }
            if (pieces_[k].hiddenAfter > 0) {
                makeRoom(pieces_[k].hiddenAfter, std::min(freezeFrame, lastFrame(pieces_[k])));
            }
        }
        return static_cast<std::uint32_t>(
            std::min<std::int64_t>(factor, std::numeric_limits<std::int32_t>::max()));
    }

    /// What a hidden picture at the range's start lasts: nobody sees it, and nothing presses.
    std::int64_t naturalFrame(const SourcePiece& piece) const {
        const std::int64_t frame =
            pictures_.endAtRank(piece.firstRank) - pictures_.timeAtRank(piece.firstRank);
        return std::max<std::int64_t>(frame, 1) * plan_.timescaleFactor;
    }

    void emitSource(std::size_t pieceNumber, std::int64_t frozenBefore) {
        const SourcePiece& piece = pieces_[pieceNumber];
        const std::int64_t tickBefore = pieceNumber == 0 && !brief() ? naturalFrame(piece) : 1;
        const std::size_t base = plan_.samples.size();
        emitCopies(pieceNumber);
        std::size_t firstShown = 0;
        std::uint32_t nextShownRank = piece.firstRank;
        for (const std::uint32_t index : piece.indexes) {
            PlannedSample sample;
            sample.index = index;
            sample.shown = piece.shows(pictures_.rankOf(index));
            sample.sync = sample.shown && pictures_.sample(index).sync;
            sample.startsRun = index == piece.indexes.front();
            sample.presentationTime = sample.shown ? shownTime(piece, index, frozenBefore) : 0;
            if (sample.shown) {
                // In decode order the n-th picture decodes when the n-th is shown: monotonous, and evenly
                // spaced.
                sample.decodeTime = shownTime(piece, pictures_.indexAt(nextShownRank), frozenBefore);
                firstShown = nextShownRank == piece.firstRank ? plan_.samples.size() : firstShown;
                ++nextShownRank;
            } else if (nextShownRank > piece.firstRank) {
                sample.decodeTime = plan_.samples.back().decodeTime + 1;
            }
            plan_.samples.push_back(sample);
        }
        for (std::size_t k = firstShown; k-- > base;) {
            plan_.samples[k].decodeTime = plan_.samples[k + 1].decodeTime - tickBefore;
        }
        presentHidden(pieceNumber, base, frozenBefore, tickBefore);
    }

    /// Copies of the still that is on screen before a hidden run; of the first shown picture at the very
    /// start.
    void emitCopies(std::size_t pieceNumber) {
        if (!brief() || pieces_[pieceNumber].hiddenBefore == 0) {
            return;
        }
        const std::uint32_t parts =
            pieceNumber == 0 ? 0 : static_cast<std::uint32_t>(framesOf(pieceNumber - 1).size());
        for (std::uint32_t copy = 0; copy < copiesBeforeRun; ++copy) {
            PlannedSample still;
            still.kind = pieceNumber == 0 ? Kind::leadIn : Kind::freeze;
            still.shown = false;
            still.index = pieceNumber == 0 ? 0 : static_cast<std::uint32_t>(pieceNumber - 1);
            still.part = parts + copy;
            plan_.samples.push_back(still);
        }
    }

    std::int64_t shownTime(const SourcePiece& piece, std::uint32_t index, std::int64_t frozenBefore) const {
        const std::uint32_t rank = pictures_.rankOf(index);
        const std::int64_t time =
            rank == piece.firstRank ? cut_.momentOf(rank, pictures_) : pictures_.presentationTime(index);
        return scaled(time) + frozenBefore;
    }

    /// Hidden pictures keep their order: those of before right ahead of the piece, those of after at its very
    /// end; behind it where nothing else comes and they would be seen.
    void presentHidden(std::size_t pieceNumber, std::size_t base, std::int64_t frozenBefore,
                       std::int64_t tickBefore) {
        const SourcePiece& piece = pieces_[pieceNumber];
        const std::int64_t start = scaled(cut_.momentOf(piece.firstRank, pictures_)) + frozenBefore;
        const std::int64_t end = scaled(cut_.momentOf(piece.endRank, pictures_)) + frozenBefore;
        const bool behindTheEnd =
            brief() && piece.endRank == cut_.endRank && pieceNumber + 1 == pieces_.size();
        std::vector<std::size_t> hidden;
        for (std::size_t k = base; k < plan_.samples.size(); ++k) {
            if (!plan_.samples[k].shown) {
                hidden.push_back(k);
            }
        }
        std::ranges::stable_sort(hidden, {}, [&](std::size_t k) {
            const PlannedSample& sample = plan_.samples[k];
            return sample.kind == Kind::source ? std::int64_t{pictures_.rankOf(sample.index)} : -1;
        });
        const auto before = static_cast<std::int64_t>(hiddenBefore(piece));
        const auto count = static_cast<std::int64_t>(hidden.size());
        for (std::int64_t place = 0; place < count; ++place) {
            const std::int64_t after = behindTheEnd ? end + place - before : end - (count - place);
            plan_.samples[hidden[static_cast<std::size_t>(place)]].presentationTime =
                place < before ? start - (before - place) * tickBefore : after;
        }
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

    void emitFreeze(std::size_t freeze, const FreezeClock& clock) {
        const std::int64_t start =
            scaled(cut_.momentOf(cut_.freezes[freeze].position, pictures_)) + clock.totalBefore(freeze);
        std::uint32_t part = 0;
        for (const std::int64_t frame : framesOf(freeze)) {
            PlannedSample sample;
            sample.kind = Kind::freeze;
            sample.sync = frame == 0 || brief();
            sample.index = static_cast<std::uint32_t>(freeze);
            sample.part = part++;
            sample.decodeTime = sample.presentationTime = start + clock.atFrame(frame);
            plan_.samples.push_back(sample);
        }
    }

    /// References that follow the end are decoded, and a player that ignores edits would rest on the last of
    /// them.
    void emitLeadOut() {
        if (!brief() || pieces_.back().hiddenAfter == 0) {
            return;
        }
        PlannedSample still;
        still.kind = Kind::leadOut;
        still.shown = false;
        still.decodeTime = plan_.samples.back().decodeTime + 1;
        for (const PlannedSample& sample : plan_.samples) {
            still.presentationTime = std::max(still.presentationTime, sample.presentationTime + 1);
        }
        plan_.samples.push_back(still);
    }

    /// Delays the presentation so that nothing is shown before it is decoded, and starts decoding at 0.
    void finish(const FreezeClock& clock) {
        std::int64_t delay = 0;
        for (const PlannedSample& sample : plan_.samples) {
            delay = std::max(delay, sample.decodeTime - sample.presentationTime);
        }
        const std::int64_t first = plan_.samples.front().decodeTime;
        const PlannedSample* before = nullptr;
        for (PlannedSample& sample : plan_.samples) {
            sample.decodeTime -= first;
            sample.presentationTime += delay - first;
            if (before && sample.decodeTime <= before->decodeTime) {
                throw CannotPassThrough("its pictures' times leave no room for a freeze");
            }
            before = &sample;
        }
        plan_.samples.front().sync = true;
        plan_.editStart = delay - first;
        plan_.editDuration = scaled(cut_.end) + clock.total();
        plan_.mediaDuration =
            std::max(plan_.samples.back().decodeTime + 1, plan_.editStart + plan_.editDuration);
    }

    const SourcePictures& pictures_;
    const std::uint32_t timescale_;
    const VideoCut& cut_;
    const SpliceRules& rules_;
    std::vector<SourcePiece> pieces_;
    SamplePlan plan_;
};

} // namespace

SamplePlan planSplice(const SourcePictures& pictures, std::uint32_t timescale, const VideoCut& cut,
                      const SpliceRules& rules) {
    return SplicePlanner(pictures, timescale, cut, rules).plan();
}

} // namespace zelvra::passthrough
