// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/bitstream/Bytes.h"

namespace zelvra::h264 {

/// The decoder configuration record of an H.264 sample entry, which is the content of `avcC` (ISO/IEC
/// 14496-15 clause 5.3.3.1). Parsing and serialising preserves every byte, including reserved bits and the
/// trailer. It does not parse the parameter sets.
struct AvcConfiguration {
    std::uint8_t profile = 0;
    std::uint8_t compatibility = 0;
    std::uint8_t level = 0;
    int nalLengthSize = 4;
    std::vector<bitstream::Bytes> spsNals;
    std::vector<bitstream::Bytes> ppsNals;
    /// The unparsed bytes after the parameter sets. For High and above these are chroma format, bit depths
    /// and sequence parameter set extensions. Some writers leave them out.
    bitstream::Bytes trailer;
    std::uint8_t reservedBeforeLengthSize = 0xFC; ///< as read, so that writing preserves it
    std::uint8_t reservedBeforeSpsCount = 0xE0;

    /// Throws BitstreamError: corrupt if lists go beyond the end, unsupported for other versions.
    static AvcConfiguration parse(bitstream::ByteView content);
    bitstream::Bytes serialise() const;

    /// Adds a parameter set after the others of its kind unless it is there already. Throws BitstreamError
    /// (unsupported) if the record has no room: 31 sequence, 255 picture parameter sets of up to 65535 bytes.
    void addSps(bitstream::ByteView nal);
    void addPps(bitstream::ByteView nal);

    bool operator==(const AvcConfiguration&) const = default;
};

} // namespace zelvra::h264
