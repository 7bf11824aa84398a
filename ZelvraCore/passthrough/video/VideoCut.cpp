// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/passthrough/video/VideoCut.h"

#include "ZelvraCore/passthrough/CannotPassThrough.h"

#include <algorithm>

namespace zelvra::passthrough {

VideoCut cutVideo(const SourcePictures& pictures, const VisiblePictures& visible, std::int64_t start,
                  std::int64_t end, std::span<const FreezeMoment> freezes, const CMTime& frameDuration) {
    const auto rankShownAt = [&](std::int64_t time) {
        return std::clamp(pictures.rankAfter(time), visible.firstRank + 1, visible.endRank) - 1;
    };
    // Where sound outlasts the picture, a freeze there waits for it: the last picture stays on until then.
    const bool freezesPastLast = std::ranges::any_of(
        freezes, [&](const FreezeMoment& freeze) { return freeze.moment >= visible.end; });
    VideoCut cut;
    cut.start = start;
    cut.end = freezesPastLast ? end : std::min(end, visible.end);
    if (visible.firstRank >= visible.endRank || std::min(cut.end, visible.end) <= cut.start) {
        throw CannotPassThrough("the range holds no picture");
    }
    cut.firstRank = rankShownAt(start);
    cut.endRank = std::max(rankShownAt(cut.end - 1), cut.firstRank) + 1;
    cut.frameDuration = frameDuration;
    cut.freezes.reserve(freezes.size());
    for (const FreezeMoment& freeze : freezes) {
        const bool afterAll = freeze.moment >= std::min(cut.end, visible.end);
        cut.freezes.push_back(
            {afterAll ? cut.endRank : std::max(rankShownAt(freeze.moment), cut.firstRank), freeze.frames});
    }
    return cut;
}

} // namespace zelvra::passthrough
