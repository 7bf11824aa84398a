// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/passthrough/video/SourcePictures.h"

#include "ZelvraCore/passthrough/CannotPassThrough.h"

#include <algorithm>
#include <numeric>

namespace zelvra::passthrough {

SourcePictures::SourcePictures(std::span<const isobmff::Sample> samples)
    : samples_(samples), order_(samples.size()), rank_(samples.size()) {
    if (samples.empty()) {
        throw CannotPassThrough("the video track holds no pictures");
    }
    std::iota(order_.begin(), order_.end(), 0u);
    std::ranges::sort(order_, {}, [&](std::uint32_t i) { return samples_[i].presentationTime(); });
    for (std::uint32_t rank = 0; rank < count(); ++rank) {
        rank_[order_[rank]] = rank;
        if (rank > 0 && timeAtRank(rank) == timeAtRank(rank - 1)) {
            throw CannotPassThrough("two of its pictures are shown at the same time");
        }
    }
    for (const isobmff::Sample& sample : samples) {
        earlier_ = std::max(earlier_, -std::int64_t{sample.compositionOffset});
    }
}

std::int64_t SourcePictures::endAtRank(std::uint32_t rank) const {
    return rank + 1 < count() ? timeAtRank(rank + 1) : timeAtRank(rank) + samples_[order_[rank]].duration;
}

std::uint32_t SourcePictures::rankAfter(std::int64_t time) const {
    const auto after =
        std::ranges::upper_bound(order_, time, {}, [&](std::uint32_t i) { return presentationTime(i); });
    return static_cast<std::uint32_t>(after - order_.begin());
}

std::uint32_t SourcePictures::syncBefore(std::uint32_t index,
                                         const std::function<bool(std::uint32_t)>& suits) const {
    for (std::uint32_t i = index + 1; i-- > 0;) {
        if (samples_[i].sync && presentationTime(i) <= presentationTime(index) && (!suits || suits(i))) {
            return i;
        }
    }
    throw CannotPassThrough("no picture before the range can be decoded on its own");
}

SourcePictures::Samples SourcePictures::decodedFor(std::uint32_t firstRank, std::uint32_t endRank,
                                                   const std::function<bool(std::uint32_t)>& suits) const {
    const std::uint32_t head = syncBefore(indexAt(firstRank), suits);
    Samples samples{head, head};
    for (std::uint32_t rank = firstRank; rank < endRank; ++rank) {
        if (indexAt(rank) < head) {
            throw CannotPassThrough("a picture of the range is decoded before its group starts");
        }
        samples.last = std::max(samples.last, indexAt(rank));
    }
    return samples;
}

} // namespace zelvra::passthrough
