// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/bitstream/h264/PictureOrder.h"

#include "ZelvraCore/bitstream/BitstreamError.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <numeric>

namespace zelvra::h264 {

namespace {

/// Counts are 32-bit numbers (clause 8.2.1).
constexpr std::int64_t maxCount = std::numeric_limits<std::int32_t>::max();

/// The count that decides a picture's output position, from the counts of its two fields.
std::int64_t countOf(const SliceHeader& slice, std::int64_t top, std::int64_t bottom) {
    if (!slice.fieldPicture) {
        return std::min(top, bottom);
    }
    return slice.bottomField ? bottom : top;
}

} // namespace

std::int64_t PictureOrder::next(const Sps& sps, const SliceHeader& slice) {
    const Counts counts = sps.pocType == 0 ? nextOfType0(sps, slice) : nextByFrameNum(sps, slice);
    const bool reset = slice.resetsMemory();
    noteReferenceFrameNum(sps, slice, reset);
    return reset ? 0 : countOf(slice, counts.top, counts.bottom);
}

PictureOrder::Counts PictureOrder::nextOfType0(const Sps& sps, const SliceHeader& slice) {
    if (slice.idr) {
        previousMsb_ = 0;
        previousLsb_ = 0;
    }
    const std::int64_t range = std::int64_t{1} << sps.pocLsbBits;
    const std::int64_t lsb = slice.pocLsb;
    std::int64_t msb = previousMsb_;
    if (lsb < previousLsb_ && previousLsb_ - lsb >= range / 2) {
        msb += range;
    } else if (lsb > previousLsb_ && lsb - previousLsb_ > range / 2) {
        msb -= range;
    }
    const Counts counts{msb + lsb, msb + lsb + (slice.fieldPicture ? 0 : slice.deltaPocBottom)};
    if (slice.isReference()) {
        const bool reset = slice.resetsMemory();
        previousMsb_ = reset ? 0 : msb;
        previousLsb_ = lsb;
        if (reset) {
            previousLsb_ = slice.fieldPicture ? 0 : counts.top - std::min(counts.top, counts.bottom);
        }
    }
    return counts;
}

PictureOrder::Counts PictureOrder::nextByFrameNum(const Sps& sps, const SliceHeader& slice) {
    std::int64_t offset = previousFrameNumOffset_;
    if (slice.idr) {
        offset = 0;
    } else if (previousFrameNum_ > slice.frameNum) {
        offset += std::int64_t{1} << sps.frameNumBits;
    }
    const bool reset = slice.resetsMemory();
    previousFrameNumOffset_ = reset ? 0 : offset;
    previousFrameNum_ = reset ? 0 : slice.frameNum;

    const std::int64_t absolute = offset + slice.frameNum;
    if (sps.pocType == 2) {
        const std::int64_t count = slice.idr ? 0 : 2 * absolute - (slice.isReference() ? 0 : 1);
        return {count, count};
    }
    const std::int64_t expected = expectedOfType1(sps, slice, absolute);
    const std::int64_t top = expected + slice.deltaPoc[0];
    // A single bottom field has its delta in the first element; the second element is for frames.
    return {top, top + sps.offsetForTopToBottomField + (slice.fieldPicture ? 0 : slice.deltaPoc[1])};
}

std::int64_t PictureOrder::expectedOfType1(const Sps& sps, const SliceHeader& slice,
                                           std::int64_t absoluteFrameNum) {
    const auto& offsets = sps.offsetsForRefFrame;
    const auto cycleLength = static_cast<std::int64_t>(offsets.size());
    std::int64_t frames = cycleLength == 0 ? 0 : absoluteFrameNum;
    if (!slice.isReference() && frames > 0) {
        --frames;
    }
    std::int64_t expected = slice.isReference() ? 0 : sps.offsetForNonRefPic;
    if (frames > 0) {
        const auto sumOf = [&](std::int64_t count) {
            return std::accumulate(offsets.begin(), offsets.begin() + count, std::int64_t{0});
        };
        const std::int64_t cycles = (frames - 1) / cycleLength;
        const std::int64_t perCycle = sumOf(cycleLength);
        if (perCycle != 0 && cycles > maxCount / std::abs(perCycle)) {
            throw bitstream::BitstreamError::corrupt("the order of the video's pictures is out of range");
        }
        expected += cycles * perCycle + sumOf((frames - 1) % cycleLength + 1);
    }
    return expected;
}

void PictureOrder::noteReferenceFrameNum(const Sps& sps, const SliceHeader& slice, bool reset) {
    const std::uint32_t range = 1U << sps.frameNumBits;
    const std::uint32_t after = (previousReferenceFrameNum_ + 1) % range;
    if (slice.isReference()) {
        previousReferenceFrameNum_ = reset ? 0 : slice.frameNum;
    } else if (slice.frameNum != previousReferenceFrameNum_ && slice.frameNum != after) {
        // Frames are missing. Decoders invent references up to this frame_num (clause 8.2.5.2).
        previousReferenceFrameNum_ = (slice.frameNum + range - 1) % range;
    }
}

} // namespace zelvra::h264
