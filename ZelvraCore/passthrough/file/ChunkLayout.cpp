// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/passthrough/file/ChunkLayout.h"

#include "ZelvraCore/records/WideInteger.h"

#include <optional>

namespace zelvra::passthrough {

namespace {

/// Gives the movie's samples one by one, in the order of the file.
class FileOrder {
public:
    explicit FileOrder(const OutputMovie& movie) : movie_(movie), next_(movie.tracks.size()) {}

    /// The track whose sample comes next; `nullopt` at the end.
    std::optional<std::size_t> next() {
        const std::optional<std::size_t> chosen = choose();
        if (chosen) {
            last_ = upcoming(*chosen).bytes;
            ++next_[*chosen];
        }
        return chosen;
    }

private:
    std::optional<std::size_t> choose() const {
        std::optional<std::size_t> earliest;
        for (std::size_t track = 0; track < next_.size(); ++track) {
            if (isLeft(track) && (!earliest || isBefore(track, *earliest))) {
                earliest = track;
            }
        }
        for (std::size_t track = 0; track < next_.size(); ++track) {
            if (isLeft(track) && continuesLast(track) && !isFarAhead(track, *earliest)) {
                return track;
            }
        }
        return earliest;
    }

    bool isLeft(std::size_t track) const { return next_[track] < movie_.tracks[track].samples.size(); }
    const OutputSample& upcoming(std::size_t track) const {
        return movie_.tracks[track].samples[next_[track]];
    }

    bool continuesLast(std::size_t track) const {
        const StoredBytes& bytes = upcoming(track).bytes;
        return bytes.store == last_.store && bytes.offset == last_.offset + last_.size;
    }

    /// The decode time of a track's next sample, in ticks of both tracks' timescales multiplied.
    WideInteger time(std::size_t track, std::size_t other) const {
        return WideInteger{upcoming(track).decodeTime} * movie_.tracks[other].timescale;
    }

    bool isBefore(std::size_t a, std::size_t b) const { return time(a, b) < time(b, a); }

    /// By more than half a second.
    bool isFarAhead(std::size_t a, std::size_t b) const {
        const WideInteger second = WideInteger{movie_.tracks[a].timescale} * movie_.tracks[b].timescale;
        return 2 * (time(a, b) - time(b, a)) > second;
    }

    const OutputMovie& movie_;
    std::vector<std::size_t> next_; ///< of each track, the first sample that was not given yet
    StoredBytes last_;
};

/// Chunks are short even if nothing is stored between them: players read them as a whole.
bool isInSameHalfSecond(const OutputTrack& track, std::size_t a, std::size_t b) {
    const auto halfSecond = [&track](const OutputSample& sample) {
        return 2 * sample.decodeTime / static_cast<std::int64_t>(track.timescale);
    };
    return halfSecond(track.samples[a]) == halfSecond(track.samples[b]);
}

} // namespace

std::vector<OutputChunk> layOutChunks(const OutputMovie& movie) {
    std::size_t samples = 0;
    for (const OutputTrack& track : movie.tracks) {
        samples += track.samples.size();
    }
    std::vector<OutputChunk> chunks;
    chunks.reserve(samples); // unused capacity takes no memory; growing would need twice as much
    std::vector<std::uint32_t> dealt(movie.tracks.size());
    FileOrder order(movie);
    while (const std::optional<std::size_t> track = order.next()) {
        const std::uint32_t sample = dealt[*track]++;
        if (chunks.empty() || chunks.back().track != *track ||
            !isInSameHalfSecond(movie.tracks[*track], chunks.back().firstSample, sample)) {
            const std::uint64_t offset = chunks.empty() ? 0 : chunks.back().offset + chunks.back().bytes;
            chunks.push_back({static_cast<std::uint32_t>(*track), sample, 0, offset, 0});
        }
        chunks.back().samples += 1;
        chunks.back().bytes += movie.tracks[*track].samples[sample].bytes.size;
    }
    return chunks;
}

} // namespace zelvra::passthrough
