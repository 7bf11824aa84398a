// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/bitstream/hevc/NalType.h"

#include <array>

namespace zelvra::hevc {

/// The decoder configuration record of an HEVC sample entry, which is the content of `hvcC` (ISO/IEC 14496-15
/// clause 8.3.3.1). Parsing and serialising preserves every byte, including reserved bits. It does not parse
/// the parameter sets.
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
    bitstream::Bytes trailer; ///< bytes after the arrays; valid records have none

    int nalLengthSize() const { return (layersAndLength & 3) + 1; }
    /// All parameter sets of one type, in order, as views into this record.
    std::vector<bitstream::ByteView> nalsOfType(NalType type) const;

    /// Throws BitstreamError: corrupt if lists go beyond the end, unsupported for other versions.
    static HevcConfiguration parse(bitstream::ByteView content);
    bitstream::Bytes serialise() const;

    /// Adds a parameter set to the array of its type unless it is there already. If there is no such array, a
    /// new one is inserted after those of lower types. Throws BitstreamError (unsupported) if the record has
    /// no room.
    void add(bitstream::ByteView nal);

    bool operator==(const HevcConfiguration&) const = default;
};

/// The record of a source's stream into which pieces of another were spliced. Requirements on the decoder are
/// the maximum of both; guarantees hold only if both give them. Parameter sets of `source` come first, then
/// those of `inserted`, then `more` (twins). Throws BitstreamError (unsupported) if chroma format, bit depth
/// or NAL length size differ, or if the record has no room.
HevcConfiguration mergeForSplice(const HevcConfiguration& source, const HevcConfiguration& inserted,
                                 const std::vector<bitstream::Bytes>& more);

} // namespace zelvra::hevc
