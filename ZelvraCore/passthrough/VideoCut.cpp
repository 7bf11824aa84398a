#include "ZelvraCore/passthrough/VideoCut.h"

#include "ZelvraCore/passthrough/CannotPassThrough.h"

#include <algorithm>

namespace zelvra::passthrough {

namespace {

/// Rank of the picture on screen at `time`; the first one where nothing is yet.
std::uint32_t rankShownAt(const SourcePictures& pictures, std::int64_t time) {
    const std::uint32_t after = pictures.rankAfter(time);
    return after > 0 ? after - 1 : 0;
}

} // namespace

VideoCut cutVideo(const SourcePictures& pictures, std::int64_t start, std::int64_t end,
                  std::span<const FreezeMoment> freezes, const CMTime& frameDuration) {
    VideoCut cut;
    cut.start = start;
    // Where sound outlasts the picture, a freeze there waits for it: the last picture stays on until then.
    const std::int64_t lastEnd = pictures.endAtRank(pictures.count() - 1);
    const bool freezesPastLast =
        std::ranges::any_of(freezes, [&](const FreezeMoment& freeze) { return freeze.moment >= lastEnd; });
    cut.end = freezesPastLast ? end : std::min(end, lastEnd);
    if (cut.end <= cut.start || lastEnd <= cut.start) {
        throw CannotPassThrough("the range holds no picture");
    }
    cut.firstRank = rankShownAt(pictures, start);
    cut.endRank = std::max(pictures.rankAfter(cut.end - 1), cut.firstRank + 1);
    cut.frameDuration = frameDuration;
    cut.freezes.reserve(freezes.size());
    for (const FreezeMoment& freeze : freezes) {
        const std::uint32_t position = freeze.moment >= std::min(cut.end, lastEnd)
                                           ? cut.endRank
                                           : std::max(rankShownAt(pictures, freeze.moment), cut.firstRank);
        cut.freezes.push_back({position, freeze.frames});
    }
    return cut;
}

} // namespace zelvra::passthrough
