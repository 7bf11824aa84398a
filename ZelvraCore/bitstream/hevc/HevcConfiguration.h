// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/bitstream/hevc/NalType.h"

#include <array>

namespace zelvra::hevc {

/// The decoder configuration record of an HEVC sample entry, the content of `hvcC` (ISO/IEC 14496-15 clause
/// 8.3.3.1). Parsing and serialising gives the same bytes, whatever the reserved bits hold. It does not look
/// into the parameter sets.
struct HevcConfiguration {
    struct Array {
        bool complete = false; ///< array_completeness: no such sets occur in samples
        bool reservedBit = false;
        NalType type = NalType::vps;
        std::vector<bitstream::Bytes> nals;

        bool operator==(const Array&) const = default;
    };

    std::uint8_t profile = 0; ///< general_profile_space, general_tier_flag, general_profile_idc
    std::uint32_t compatibilityFlags = 0;
    std::uint64_t constraintFlags = 0; ///< general_constraint_indicator_flags, 48 bits
    std::uint8_t levelIdc = 0;
    std::uint16_t spatialSegmentation = 0xF000; ///< 4 reserved bits, min_spatial_segmentation_idc
    std::uint8_t parallelism = 0xFC;            ///< 6 reserved bits, parallelismType
    std::uint8_t chroma = 0xFC;                 ///< 6 reserved bits, chroma_format_idc
    std::uint8_t lumaDepth = 0xF8;              ///< 5 reserved bits, bit_depth_luma_minus8
    std::uint8_t chromaDepth = 0xF8;            ///< 5 reserved bits, bit_depth_chroma_minus8
    std::uint16_t averageFrameRate = 0;         ///< in frames per 256 seconds, 0: unspecified
    std::uint8_t layersAndLength = 0x03;        ///< constantFrameRate, numTemporalLayers, temporalIdNested,
                                                ///< lengthSizeMinusOne
    std::vector<Array> arrays;
    bitstream::Bytes trailer; ///< bytes behind the arrays, which should not be there

    int nalLengthSize() const { return (layersAndLength & 3) + 1; }
    /// All parameter sets of one type, in order, as views into this record.
    std::vector<bitstream::ByteView> nalsOfType(NalType type) const;

    /// Throws BitstreamError: corrupt where lists go beyond the end, unsupported for other versions.
    static HevcConfiguration parse(bitstream::ByteView content);
    bitstream::Bytes serialise() const;

    /// Adds a parameter set to the array of its type (a new one, after those of lesser types, where there is
    /// none) unless it is there already. Throws BitstreamError (unsupported) where the record has no room.
    void add(bitstream::ByteView nal);

    bool operator==(const HevcConfiguration&) const = default;
};

/// The record of a source's stream into which pieces of another were spliced: what decoders must be ready for
/// is the greatest of both, what they may rely on is what holds for both. Parameter sets of `source` come
/// first, then those of `inserted`, then `more` (twins). Throws BitstreamError (unsupported) where chroma
/// format, bit depth or NAL length size differ, or where the record has no room.
HevcConfiguration mergeForSplice(const HevcConfiguration& source, const HevcConfiguration& inserted,
                                 const std::vector<bitstream::Bytes>& more);

} // namespace zelvra::hevc
