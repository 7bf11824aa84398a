// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/bitstream/h264/NalType.h"
#include "ZelvraCore/bitstream/h264/ParameterSets.h"

#include <array>

namespace zelvra::h264 {

enum class SliceType : std::uint8_t { p = 0, b = 1, i = 2, sp = 3, si = 4 };

/// One memory_management_control_operation with its arguments in the order of the syntax; unused ones are 0.
struct MemoryOperation {
    int operation = 0;
    std::uint32_t first = 0;
    std::uint32_t second = 0;
};

/// The deblocking filter of a slice, if its header sets it.
struct Deblocking {
    std::uint32_t disableIdc = 0;
    std::int32_t alphaOffsetDiv2 = 0;
    std::int32_t betaOffsetDiv2 = 0;
};

/// A whole slice header (ITU-T H.264 clause 7.3.3). Reference list modifications and prediction weights are
/// skipped, not kept. The defaults are those of an absent element, so a caller can build a header by hand and
/// pass it to PictureOrder for a picture that does not exist yet.
struct SliceHeader {
    bool idr = false;
    int nalRefIdc = 0;
    std::uint32_t firstMacroblock = 0;
    SliceType type = SliceType::i;
    bool sameTypeInPicture = false; ///< slice_type was coded as 5...9
    int ppsId = 0;
    int spsId = 0;
    std::uint32_t frameNum = 0;
    bool fieldPicture = false;
    bool bottomField = false;
    std::uint32_t idrPicId = 0;
    std::uint32_t pocLsb = 0;
    std::int32_t deltaPocBottom = 0;
    std::array<std::int32_t, 2> deltaPoc{0, 0};
    std::uint32_t redundantPicCnt = 0;
    std::array<std::uint32_t, 2> activeRefs{0, 0};
    bool noOutputOfPriorPics = false;
    bool longTermReference = false;
    std::vector<MemoryOperation> memoryOperations = {};
    std::int32_t qpDelta = 0;
    std::optional<Deblocking> deblocking = {};
    std::uint64_t headerBits =
        0; ///< payload bits up to the end of the header, after the NAL unit's header byte

    bool isReference() const { return nalRefIdc != 0; }
    /// Whether it contains memory_management_control_operation 5, which removes all references and restarts
    /// the picture order.
    bool resetsMemory() const;
};

/// Reads the header of a slice NAL unit (type 1 or 5). Throws BitstreamError; data partitions and slices of
/// other layers are unsupported.
SliceHeader parseSliceHeader(bitstream::ByteView nal, const ParameterSets& sets);

} // namespace zelvra::h264
