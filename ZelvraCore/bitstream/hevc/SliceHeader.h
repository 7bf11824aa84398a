// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/bitstream/hevc/NalType.h"
#include "ZelvraCore/bitstream/hevc/ParameterSets.h"

#include <optional>

namespace zelvra::hevc {

enum class SliceType : std::uint8_t { b = 0, p = 1, i = 2 };

/// A slice segment header (ITU-T H.265 clause 7.3.6.1), read whole up to the slice data, with the places of
/// the elements that are rewritten. Positions are payload bits after the NAL unit's header.
struct SliceHeader {
    NalType nalType = NalType::trailN;
    int temporalId = 0;
    bool firstInPicture = false;
    bool noOutputOfPriorPics = false;
    int ppsId = 0;
    bool dependent = false;
    std::uint32_t address = 0;     ///< slice_segment_address
    SliceType type = SliceType::i; ///< of independent segments, as all that follows up to entryPoints
    bool picOutput = true;
    std::uint32_t pocLsb = 0;
    std::uint32_t entryPoints = 0;

    std::uint64_t ppsIdBegin = 0;
    std::uint64_t ppsIdEnd = 0;
    std::uint64_t afterSliceType = 0; ///< where pic_output_flag is or would be; independent segments only
    bool picOutputCoded = false;
    std::uint64_t headerBits = 0; ///< up to byte_alignment(), which is not counted
    std::size_t dataOffset = 0;   ///< stored offset of the slice data in the NAL unit
};

/// Throws BitstreamError: corrupt, also where byte_alignment() is not found where it must be; unsupported for
/// slices of other layers.
SliceHeader parseSliceHeader(bitstream::ByteView nal, const ParameterSets& sets);

/// What to change in a slice segment header; what is empty stays.
struct SliceEdits {
    std::optional<NalType> nalType = {};
    std::optional<int>
        ppsId; ///< the set that it names must ask for the same elements, except pic_output_flag
    std::optional<bool> picOutput = {}; ///< written into independent segments; the set must have it present
    bool keepPriorPictures = false;     ///< no_output_of_prior_pics_flag = 0 where there is one
};

/// The same slice segment with another header: slice data stays byte by byte, as it starts on a byte. Without
/// edits the result is the NAL unit itself; where it would not be, the header cannot be trusted to mean what
/// was read, and BitstreamError (unsupported) is thrown.
bitstream::Bytes rewriteSlice(bitstream::ByteView nal, const SliceHeader& header, const SliceEdits& edits);

} // namespace zelvra::hevc
