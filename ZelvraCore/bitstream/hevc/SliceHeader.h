// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/bitstream/hevc/NalType.h"
#include "ZelvraCore/bitstream/hevc/ParameterSets.h"

#include <optional>

namespace zelvra::hevc {

enum class SliceType : std::uint8_t { b = 0, p = 1, i = 2 };

/// A slice segment header (ITU-T H.265 clause 7.3.6.1), read completely up to the slice data, with the
/// positions of the elements that can be rewritten. Positions are payload bits after the NAL unit's header.
struct SliceHeader {
    NalType nalType = NalType::trailN;
    int temporalId = 0;
    bool firstInPicture = false;
    bool noOutputOfPriorPics = false;
    int ppsId = 0;
    bool dependent = false;
    std::uint32_t address = 0;     ///< slice_segment_address
    SliceType type = SliceType::i; ///< independent segments only, as all fields up to entryPoints
    bool picOutput = true;
    std::uint32_t pocLsb = 0;
    std::uint32_t entryPoints = 0;

    std::uint64_t ppsIdBegin = 0;
    std::uint64_t ppsIdEnd = 0;
    std::uint64_t afterSliceType = 0; ///< position of pic_output_flag, present or not; independent segments
                                      ///< only
    bool picOutputCoded = false;
    std::uint64_t headerBits = 0; ///< up to byte_alignment(), which is not included
    std::size_t dataOffset = 0;   ///< stored offset of the slice data in the NAL unit
};

/// Throws BitstreamError: corrupt, also if byte_alignment() is missing at the end; unsupported for slices of
/// other layers.
SliceHeader parseSliceHeader(bitstream::ByteView nal, const ParameterSets& sets);

/// The changes to a slice segment header. Unset fields stay as they are.
struct SliceEdits {
    std::optional<NalType> nalType = {};
    std::optional<int> ppsId; ///< its set must require the same header elements, except pic_output_flag
    std::optional<bool> picOutput = {}; ///< written into independent segments; the set must have
                                        ///< output_flag_present_flag
    bool keepPriorPictures = false;     ///< sets no_output_of_prior_pics_flag to 0 if it is present
};

/// The same slice segment with another header. Slice data starts on a byte and stays unchanged. The header is
/// first rewritten without edits as a check: if that does not reproduce the NAL unit, the header was misread,
/// and BitstreamError (unsupported) is thrown.
bitstream::Bytes rewriteSlice(bitstream::ByteView nal, const SliceHeader& header, const SliceEdits& edits);

} // namespace zelvra::hevc
