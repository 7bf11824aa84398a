// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/isobmff/TrackTimeline.h"

#include "ZelvraCore/records/MediaError.h"
#include "ZelvraCore/records/WideInteger.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <span>

namespace zelvra::isobmff {

namespace {

/// Sample times and edit lengths stay below this, so that sums of a few cannot overflow.
constexpr std::int64_t latestTime = std::int64_t{1} << 60;

std::int64_t clampedTime(std::int64_t time) {
    return std::clamp(time, -latestTime, latestTime);
}

/// A length in ticks of the movie as ticks of the track, halves rounded up.
std::int64_t rescaled(std::uint64_t duration, std::uint32_t trackTimescale, std::uint32_t movieTimescale) {
    const WideInteger ticks =
        (WideInteger{duration} * trackTimescale * 2 + movieTimescale) / (WideInteger{movieTimescale} * 2);
    return static_cast<std::int64_t>(std::min<WideInteger>(ticks, latestTime));
}

bool startsEarlier(const ShownSample& a, const ShownSample& b) {
    return a.start < b.start;
}

/// An edit in ticks of the track. `start` is the end of the edits before it.
struct Cut {
    std::int64_t start = 0;
    std::int64_t duration = 0;
    std::int64_t mediaStart = 0;

    std::int64_t mediaEnd() const { return mediaStart + duration; }
    std::int64_t end() const { return start + duration; }
    bool shows(std::int64_t mediaTime) const { return mediaTime >= mediaStart && mediaTime < mediaEnd(); }
};

/// Places a track's samples on the timeline. The rules are those of libavformat (its `advanced_editlist`),
/// because every decoded picture gets its time from there:
/// - A picture is shown if its presentation time is within the edit. One that began earlier is not shown.
/// - The first such picture *in decode order* decodes at the edit's start; the others keep their distance to
///   it.
/// - Then the whole track moves so that its earliest picture appears at 0, or at the end of the leading empty
///   edits.
/// - An empty edit after a shown one is not a gap: it shows the media's beginning.
/// - The first edit of a sound track starts exactly, within a packet; a later one starts at the next packet.
/// - If all samples of a track are in fragments, its edits only move it and cut nothing away.
class Placement {
public:
    Placement(const Track& track, std::uint32_t movieTimescale)
        : track_(track),
          indexed_(track.samples.data(), track.samples.data() + track.indexedSamples),
          reordered_(std::any_of(indexed_.begin(), indexed_.end(),
                                 [](const Sample& sample) { return sample.compositionOffset != 0; })) {
        makeCuts(movieTimescale);
    }

    void place() {
        if (track_.edits.empty() || indexed_.empty()) {
            placeFrom(0);
            return;
        }
        for (std::size_t i = 0; i < cuts_.size(); ++i) {
            placeCut(cuts_[i], i == 0);
        }
        moveToStart();
        placeFrom(track_.indexedSamples);
        joinPieces();
    }

    std::vector<ShownPiece> pieces;
    std::vector<ShownSample> shown;

private:
    void makeCuts(std::uint32_t movieTimescale) {
        std::int64_t start = 0;
        for (const Edit& edit : track_.edits) {
            const std::int64_t duration = rescaled(edit.duration, track_.timescale, movieTimescale);
            if (edit.isEmpty() && cuts_.empty()) {
                leadingEmpty_ = clampedTime(leadingEmpty_ + duration);
            } else {
                cuts_.push_back({start, duration, clampedTime(edit.mediaTime)});
            }
            start = clampedTime(start + duration);
        }
    }

    /// Places samples that no edit cuts: all of them without an edit list, and those in fragments.
    void placeFrom(std::size_t first) {
        if (first == track_.samples.size()) {
            return;
        }
        const std::int64_t offset = cuts_.empty() ? -leadingEmpty_ : cuts_.front().mediaStart - leadingEmpty_;
        const std::size_t firstShown = shown.size();
        for (std::size_t i = first; i < track_.samples.size(); ++i) {
            show(i, track_.samples[i].presentationTime() - offset, track_.samples[i].duration);
        }
        closePiece(firstShown, offset, std::numeric_limits<std::int64_t>::max());
    }

    void placeCut(const Cut& cut, bool isFirst) {
        const std::size_t shownBefore = shown.size();
        const std::uint64_t visitedBefore = visited_;
        if (track_.isSound()) {
            placeSoundCut(cut, isFirst);
        } else {
            placePictureCut(cut);
        }
        if (shown.size() == shownBefore) {
            visitInVain(visited_ - visitedBefore);
        }
    }

    void placePictureCut(const Cut& cut) {
        const std::size_t firstShown = shown.size();
        std::optional<std::int64_t> offset; // media time that would be shown at presentation time 0
        bool waitsForTrailing = reordered_;
        for (std::size_t i = decodingStart(cut.mediaStart); i < indexed_.size(); ++i) {
            visit();
            const Sample& sample = indexed_[i];
            if (cut.shows(sample.presentationTime())) {
                offset = offset ? offset : sample.decodeTime - cut.start;
                show(i, sample.presentationTime() - *offset, sample.duration);
            }
            // The first sync sample after the end may still be followed, in decode order, by pictures shown
            // before it.
            if (sample.sync && sample.presentationTime() + sample.duration >= cut.mediaEnd()) {
                if (!waitsForTrailing) {
                    break;
                }
                waitsForTrailing = false;
            }
        }
        closePiece(firstShown, offset.value_or(0), cut.mediaEnd() - offset.value_or(0));
    }

    void placeSoundCut(const Cut& cut, bool isFirst) {
        const std::size_t firstShown = shown.size();
        std::optional<std::int64_t> offset;
        const auto containing = std::upper_bound(
            indexed_.begin(), indexed_.end(), cut.mediaStart,
            [](std::int64_t time, const Sample& sample) { return time < sample.decodeTime; });
        const auto first = containing == indexed_.begin() ? containing : containing - 1;
        visit(warmUpPackets(cut, first));
        for (auto sample = first; sample != indexed_.end() && sample->decodeTime < cut.mediaEnd(); ++sample) {
            visit();
            std::int64_t time = sample->decodeTime;
            std::int64_t duration = sample->duration;
            if (time < cut.mediaStart) {
                if (time + duration <= cut.mediaStart || !(isFirst || track_.uniform)) {
                    continue;
                }
                duration -= cut.mediaStart - time;
                time = cut.mediaStart;
            }
            offset = offset ? offset : time - cut.start;
            show(static_cast<std::size_t>(sample - indexed_.begin()), time - *offset, duration);
        }
        closePiece(firstShown, offset.value_or(0), cut.end());
    }

    /// libavformat also goes through the packets of the second before each edit, for the decoder to warm up.
    std::uint64_t warmUpPackets(const Cut& cut, std::span<const Sample>::iterator first) const {
        const std::int64_t start = cut.mediaStart - static_cast<std::int64_t>(track_.timescale);
        const auto warmUp =
            std::lower_bound(indexed_.begin(), first, start, [](const Sample& sample, std::int64_t time) {
                return sample.decodeTime < time;
            });
        return static_cast<std::uint64_t>(first - warmUp);
    }

    /// The sync sample from which decoding starts for an edit that starts at `mediaTime`.
    std::size_t decodingStart(std::int64_t mediaTime) {
        auto sample = std::upper_bound(
            indexed_.begin(), indexed_.end(), mediaTime,
            [](std::int64_t time, const Sample& candidate) { return time < candidate.decodeTime; });
        while (sample != indexed_.begin()) {
            visit();
            --sample;
            if (sample->sync && (!reordered_ || sample->presentationTime() <= mediaTime)) {
                return static_cast<std::size_t>(sample - indexed_.begin());
            }
        }
        return 0;
    }

    void show(std::size_t sample, std::int64_t start, std::int64_t duration) {
        const auto piece = static_cast<std::uint32_t>(pieces.size());
        shown.push_back({static_cast<std::uint32_t>(sample), piece, start, duration});
    }

    /// Makes a piece of the samples placed since `firstShown`.
    void closePiece(std::size_t firstShown, std::int64_t offset, std::int64_t end) {
        const auto begin = shown.begin() + static_cast<std::ptrdiff_t>(firstShown);
        if (begin == shown.end()) {
            return;
        }
        std::stable_sort(begin, shown.end(), startsEarlier);
        for (auto sample = begin; sample + 1 != shown.end(); ++sample) {
            sample->duration = (sample + 1)->start - sample->start;
        }
        ShownSample& last = shown.back();
        last.duration = end > last.start ? std::min(last.duration, end - last.start) : 0;
        pieces.push_back({begin->start, last.end() - begin->start, begin->start + offset});
    }

    void moveToStart() {
        if (!track_.isVideo() || shown.empty()) {
            return;
        }
        const auto earliest = std::min_element(shown.begin(), shown.end(), startsEarlier);
        const std::int64_t late = earliest->start - leadingEmpty_;
        if (late <= 0) {
            return;
        }
        for (ShownSample& sample : shown) {
            sample.start -= late;
        }
        for (ShownPiece& piece : pieces) {
            piece.start -= late;
        }
    }

    /// If the delays of two pieces differ, the start of the later one may overlap the end of the earlier one.
    void joinPieces() {
        for (std::size_t i = 0; i + 1 < pieces.size(); ++i) {
            const std::int64_t room = std::max<std::int64_t>(0, pieces[i + 1].start - pieces[i].start);
            pieces[i].duration = std::min(pieces[i].duration, room);
        }
        std::stable_sort(shown.begin(), shown.end(), startsEarlier);
        for (std::size_t i = 0; i + 1 < shown.size(); ++i) {
            shown[i].duration = std::min(shown[i].duration, shown[i + 1].start - shown[i].start);
        }
    }

    /// Counts visited samples. An edit list may show samples several times; a hostile one would do so
    /// without end.
    void visit(std::uint64_t samples = 1) {
        constexpr std::uint64_t always = std::uint64_t{1} << 20;
        constexpr std::uint64_t maxRepetitions = 16;
        visited_ += samples;
        if (visited_ > always + maxRepetitions * indexed_.size()) {
            throw MediaError(MediaError::Cause::unsupported, "its edit list shows the same media too often");
        }
    }

    /// Counts samples that an edit visits without showing one. The time of a seek in libavformat grows with
    /// the square of their number.
    void visitInVain(std::uint64_t samples) {
        constexpr std::uint64_t most = std::uint64_t{1} << 15;
        visitedInVain_ += samples;
        if (visitedInVain_ > most) {
            throw MediaError(MediaError::Cause::unsupported, "too many of its edits show nothing");
        }
    }

    const Track& track_;
    std::span<const Sample> indexed_;
    bool reordered_;
    std::vector<Cut> cuts_;
    std::int64_t leadingEmpty_ = 0;
    std::uint64_t visited_ = 0;
    std::uint64_t visitedInVain_ = 0;
};

} // namespace

TrackTimeline::TrackTimeline(const Track& track, std::uint32_t movieTimescale) {
    Placement placement(track, movieTimescale);
    placement.place();
    pieces_ = std::move(placement.pieces);
    shown_ = std::move(placement.shown);
}

std::int64_t TrackTimeline::end() const {
    return pieces_.empty() ? 0 : pieces_.back().end();
}

} // namespace zelvra::isobmff
