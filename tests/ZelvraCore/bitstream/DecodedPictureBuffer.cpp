// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/ZelvraCore/bitstream/DecodedPictureBuffer.h"

#include "ZelvraCore/bitstream/NalUnits.h"
#include "ZelvraCore/bitstream/h264/Levels.h"

#include <algorithm>

namespace zelvra::test {

namespace {

/// Frames the decoded picture buffer holds: what the stream says, else what its level allows
/// (max_dec_frame_buffering, ITU-T H.264 clause E.2.1, and MaxDpbFrames, A.3.1). At least 1.
int bufferFrames(const h264::Sps& sps) {
    if (sps.vui && sps.vui->maxDecFrameBuffering) {
        return std::max({1, *sps.vui->maxDecFrameBuffering, sps.maxNumRefFrames});
    }
    const int macroblocks = sps.widthInMacroblocks * sps.codedHeight() / 16;
    return std::clamp(h264::levelLimits(sps).maxDpbMacroblocks / macroblocks, 1, 16);
}

struct Frame {
    std::size_t index = 0;
    std::int64_t poc = 0;
    std::uint32_t frameNum = 0;
    std::optional<std::uint32_t> longTermIndex;
    bool isReference = false;
    bool waits = true; ///< for output
};

class Buffer {
public:
    BufferedOutput output;

    void store(const h264::Sps& sps, const h264::SliceHeader& slice, Frame frame) {
        size_ = static_cast<std::size_t>(bufferFrames(sps));
        frameNumRange_ = 1U << sps.frameNumBits;
        current_ = slice.frameNum;
        if (slice.idr || slice.resetsMemory()) {
            flush();
            frames_.clear();
        } else if (slice.isReference()) {
            mark(slice, std::max(1, sps.maxNumRefFrames), frame);
        }
        if (slice.isReference()) {
            storeReference(frame);
        } else {
            storeOrGiveOut(frame);
        }
    }

    void flush() {
        while (bump()) {
        }
    }

private:
    std::int64_t pictureNumber(const Frame& frame) const {
        return std::int64_t{frame.frameNum} - (frame.frameNum > current_ ? frameNumRange_ : 0);
    }

    void mark(const h264::SliceHeader& slice, int maxReferences, Frame& frame) {
        if (slice.memoryOperations.empty()) {
            slide(maxReferences);
        }
        for (const h264::MemoryOperation& each : slice.memoryOperations) {
            apply(each, frame);
        }
        removeUseless();
    }

    void slide(int maxReferences) {
        while (std::ranges::count(frames_, true, &Frame::isReference) >= maxReferences) {
            Frame* oldest = nullptr;
            for (Frame& each : frames_) {
                if (each.isReference && !each.longTermIndex &&
                    (oldest == nullptr || pictureNumber(each) < pictureNumber(*oldest))) {
                    oldest = &each;
                }
            }
            if (oldest == nullptr) {
                return;
            }
            oldest->isReference = false;
        }
    }

    void apply(const h264::MemoryOperation& operation, Frame& frame) {
        const std::int64_t number = std::int64_t{current_} - (std::int64_t{operation.first} + 1);
        for (Frame& each : frames_) {
            const bool shortTerm = each.isReference && !each.longTermIndex;
            switch (operation.operation) {
            case 1:
                each.isReference = each.isReference && !(shortTerm && pictureNumber(each) == number);
                break;
            case 2: each.isReference = each.isReference && each.longTermIndex != operation.first; break;
            case 3:
                if (shortTerm && pictureNumber(each) == number) {
                    each.longTermIndex = operation.second;
                }
                break;
            case 4:
                each.isReference = each.isReference && each.longTermIndex.value_or(0) <= operation.first;
                break;
            default: break;
            }
        }
        if (operation.operation == 6) {
            frame.longTermIndex = operation.first;
        }
    }

    void storeReference(const Frame& frame) {
        while (frames_.size() >= size_) {
            if (!bump()) {
                ++output.overflows;
                break;
            }
        }
        frames_.push_back(frame);
    }

    void storeOrGiveOut(const Frame& frame) {
        while (frames_.size() >= size_) {
            const Frame* first = firstWaiting();
            if (first == nullptr || first->poc > frame.poc) {
                output.order.push_back(frame.index);
                return;
            }
            bump();
        }
        frames_.push_back(frame);
    }

    Frame* firstWaiting() {
        Frame* first = nullptr;
        for (Frame& each : frames_) {
            if (each.waits && (first == nullptr || each.poc < first->poc)) {
                first = &each;
            }
        }
        return first;
    }

    bool bump() {
        Frame* first = firstWaiting();
        if (first == nullptr) {
            return false;
        }
        output.order.push_back(first->index);
        first->waits = false;
        removeUseless();
        return true;
    }

    void removeUseless() {
        std::erase_if(frames_, [](const Frame& each) { return !each.waits && !each.isReference; });
    }

    std::vector<Frame> frames_;
    std::size_t size_ = 1;
    std::uint32_t frameNumRange_ = 16;
    std::uint32_t current_ = 0;
};

} // namespace

BufferedOutput bufferOutput(const h264::ParameterSets& sets, int nalLengthSize,
                            const std::vector<bitstream::Bytes>& samples) {
    h264::PictureScanner scanner(sets, nalLengthSize);
    Buffer buffer;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const h264::PictureFacts facts = scanner.scan(samples[i]);
        buffer.output.frameNumGaps += facts.frameNumGap ? 1 : 0;
        for (const auto nal : bitstream::splitNalUnits(samples[i], nalLengthSize)) {
            if (!h264::isSlice(h264::nalType(nal))) {
                continue;
            }
            const auto slice = h264::parseSliceHeader(nal, scanner.parameterSets());
            buffer.store(scanner.parameterSets().sps(slice.spsId), slice,
                         {i, facts.poc, slice.frameNum, {}, slice.isReference(), true});
            break;
        }
    }
    buffer.flush();
    return buffer.output;
}

} // namespace zelvra::test
