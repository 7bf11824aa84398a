#include "ZelvraCore/passthrough/ChunkLayout.h"

#include <algorithm>
#include <tuple>

namespace zelvra::passthrough {

namespace {

__extension__ using Wide = __int128;

/// Cuts one track into chunks that start at its own half seconds.
void appendChunks(const OutputTrack& track, std::size_t trackIndex, std::vector<OutputChunk>& chunks) {
    const auto halfSecond = [&track](const OutputSample& sample) {
        return 2 * sample.decodeTime / static_cast<std::int64_t>(track.timescale);
    };
    for (std::size_t first = 0; first < track.samples.size();) {
        OutputChunk chunk{trackIndex, first, 0, 0, 0};
        for (std::size_t i = first;
             i < track.samples.size() && halfSecond(track.samples[i]) == halfSecond(track.samples[first]);
             ++i) {
            chunk.samples += 1;
            chunk.bytes += track.samples[i].bytes.size;
        }
        first += chunk.samples;
        chunks.push_back(chunk);
    }
}

} // namespace

std::vector<OutputChunk> layOutChunks(const OutputMovie& movie) {
    std::vector<OutputChunk> chunks;
    for (std::size_t i = 0; i < movie.tracks.size(); ++i) {
        appendChunks(movie.tracks[i], i, chunks);
    }
    const auto startsBefore = [&movie](const OutputChunk& a, const OutputChunk& b) {
        const OutputTrack& trackA = movie.tracks[a.track];
        const OutputTrack& trackB = movie.tracks[b.track];
        const Wide left = Wide{trackA.samples[a.firstSample].decodeTime} * trackB.timescale;
        const Wide right = Wide{trackB.samples[b.firstSample].decodeTime} * trackA.timescale;
        return std::tie(left, a.track) < std::tie(right, b.track);
    };
    std::stable_sort(chunks.begin(), chunks.end(), startsBefore);
    std::uint64_t offset = 0;
    for (OutputChunk& chunk : chunks) {
        chunk.offset = offset;
        offset += chunk.bytes;
    }
    return chunks;
}

} // namespace zelvra::passthrough
