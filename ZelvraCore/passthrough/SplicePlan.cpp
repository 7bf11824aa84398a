#include "ZelvraCore/passthrough/SplicePlan.h"

#include "ZelvraCore/passthrough/CannotPassThrough.h"
#include "ZelvraCore/passthrough/FreezeClock.h"

#include <algorithm>

namespace zelvra::passthrough {

namespace {

using Kind = PlannedSample::Kind;

constexpr std::int64_t longestRunSeconds = 20;

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
                  const IsDisposable& isDisposable)
        : pictures_(pictures), timescale_(timescale), cut_(cut), isDisposable_(isDisposable) {}

    SamplePlan plan() {
        gatherPieces();
        refuseLongRuns();
        const FreezeClock clock(cut_, timescale_, factorForHidden());
        plan_.timescaleFactor = clock.factor();
        for (std::size_t k = 0; k <= cut_.freezes.size(); ++k) {
            if (const SourcePiece& piece = pieces_[k]; piece.firstRank < piece.endRank) {
                emitSource(piece, clock.totalBefore(k), k == 0);
            }
            if (k < cut_.freezes.size()) {
                emitFreeze(k, clock);
            }
        }
        finish(clock);
        return std::move(plan_);
    }

private:
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
        const std::uint32_t head = pictures_.syncBefore(pictures_.indexAt(firstRank));
        std::uint32_t last = head;
        for (std::uint32_t rank = firstRank; rank < endRank; ++rank) {
            if (pictures_.indexAt(rank) < head) {
                throw CannotPassThrough("a picture of the range is decoded before its group starts");
            }
            last = std::max(last, pictures_.indexAt(rank));
        }
        for (std::uint32_t i = head; i <= last; ++i) {
            // Leading pictures refer to the group before, which is not decoded again.
            const bool leads = pictures_.presentationTime(i) < pictures_.presentationTime(head);
            const bool shown = piece.shows(pictures_.rankOf(i));
            if (shown || (!leads && !isDisposable_(i))) {
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

    /// Hidden pictures take a tick each, and all of a piece's together less than a frame.
    std::uint32_t factorForHidden() const {
        std::size_t most = 0;
        for (std::size_t k = 0; k < pieces_.size(); ++k) {
            most = std::max({most, k > 0 ? pieces_[k].hiddenBefore : 0, pieces_[k].hiddenAfter});
        }
        const std::int64_t frame = std::max<std::int64_t>(
            cut_.frameDuration.converted(static_cast<std::int32_t>(timescale_), Rounding::down).value, 1);
        return static_cast<std::uint32_t>((static_cast<std::int64_t>(most + 2) + frame - 1) / frame);
    }

    /// What a hidden picture at the range's start lasts: nobody sees it, and nothing presses.
    std::int64_t naturalFrame(const SourcePiece& piece) const {
        const std::int64_t frame =
            pictures_.endAtRank(piece.firstRank) - pictures_.timeAtRank(piece.firstRank);
        return std::max<std::int64_t>(frame, 1) * plan_.timescaleFactor;
    }

    void emitSource(const SourcePiece& piece, std::int64_t frozenBefore, bool firstPiece) {
        const std::int64_t start = scaled(cut_.momentOf(piece.firstRank, pictures_)) + frozenBefore;
        const std::int64_t end = scaled(cut_.momentOf(piece.endRank, pictures_)) + frozenBefore;
        const std::int64_t tickBefore = firstPiece ? naturalFrame(piece) : 1;
        const std::size_t base = plan_.samples.size();
        std::size_t firstShown = 0;
        std::uint32_t nextShownRank = piece.firstRank;
        for (std::size_t k = 0; k < piece.indexes.size(); ++k) {
            PlannedSample sample;
            sample.index = piece.indexes[k];
            sample.shown = piece.shows(pictures_.rankOf(sample.index));
            sample.sync = sample.shown && pictures_.sample(sample.index).sync;
            sample.startsRun = k == 0;
            sample.presentationTime = sample.shown ? shownTime(piece, sample.index, frozenBefore) : 0;
            if (sample.shown) {
                // In decode order the n-th picture decodes when the n-th is shown: monotonous, and evenly
                // spaced.
                sample.decodeTime = shownTime(piece, pictures_.indexAt(nextShownRank), frozenBefore);
                firstShown = nextShownRank == piece.firstRank ? k : firstShown;
                ++nextShownRank;
            } else if (nextShownRank > piece.firstRank) {
                sample.decodeTime = plan_.samples.back().decodeTime + 1;
            }
            plan_.samples.push_back(sample);
        }
        for (std::size_t k = firstShown; k-- > 0;) {
            plan_.samples[base + k].decodeTime = plan_.samples[base + k + 1].decodeTime - tickBefore;
        }
        presentHidden(piece, base, start, end, tickBefore);
    }

    std::int64_t shownTime(const SourcePiece& piece, std::uint32_t index, std::int64_t frozenBefore) const {
        const std::uint32_t rank = pictures_.rankOf(index);
        const std::int64_t time =
            rank == piece.firstRank ? cut_.momentOf(rank, pictures_) : pictures_.presentationTime(index);
        return scaled(time) + frozenBefore;
    }

    /// Hidden pictures keep their order: those of before right ahead of the piece, those of after at its very
    /// end.
    void presentHidden(const SourcePiece& piece, std::size_t base, std::int64_t start, std::int64_t end,
                       std::int64_t tickBefore) {
        std::vector<std::size_t> hidden;
        for (std::size_t k = 0; k < piece.indexes.size(); ++k) {
            if (!plan_.samples[base + k].shown) {
                hidden.push_back(base + k);
            }
        }
        std::ranges::sort(hidden, {},
                          [&](std::size_t s) { return pictures_.rankOf(plan_.samples[s].index); });
        for (std::size_t k = 0; k < hidden.size(); ++k) {
            const auto place = static_cast<std::int64_t>(k);
            const auto before = static_cast<std::int64_t>(piece.hiddenBefore);
            plan_.samples[hidden[k]].presentationTime =
                place < before ? start - (before - place) * tickBefore
                               : end - (static_cast<std::int64_t>(hidden.size()) - place);
        }
    }

    void emitFreeze(std::size_t freeze, const FreezeClock& clock) {
        const std::int64_t start =
            scaled(cut_.momentOf(cut_.freezes[freeze].position, pictures_)) + clock.totalBefore(freeze);
        for (std::int64_t frame = 0; frame < cut_.freezes[freeze].frames; ++frame) {
            PlannedSample sample;
            sample.kind = Kind::freeze;
            sample.sync = frame == 0;
            sample.index = static_cast<std::uint32_t>(freeze);
            sample.part = static_cast<std::uint32_t>(frame);
            sample.decodeTime = sample.presentationTime = start + clock.atFrame(frame);
            plan_.samples.push_back(sample);
        }
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
    const IsDisposable& isDisposable_;
    std::vector<SourcePiece> pieces_;
    SamplePlan plan_;
};

} // namespace

SamplePlan planSplice(const SourcePictures& pictures, std::uint32_t timescale, const VideoCut& cut,
                      const IsDisposable& isDisposable) {
    return SplicePlanner(pictures, timescale, cut, isDisposable).plan();
}

} // namespace zelvra::passthrough
