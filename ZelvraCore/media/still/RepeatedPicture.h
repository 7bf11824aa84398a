// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/bitstream/Bytes.h"
#include "ZelvraCore/records/VideoCodec.h"

#include <cstdint>
#include <span>
#include <vector>

namespace zelvra::media {

/// NAL units without start codes or lengths, in order: a coded picture, or parameter sets.
using NalUnits = std::vector<bitstream::Bytes>;

/// In the byte stream format (Annex B of ITU-T H.264 and H.265).
bitstream::Bytes byteStreamOf(const NalUnits& nals);

/// A coded picture that copies every sample from the picture before it. All of it is "skip", so the same bits
/// repeat any picture any number of times. Only the numbers in its slice headers (frame_num and the picture
/// order count) depend on its place. So it is encoded once and renumbered for each place.
class RepeatedPicture {
public:
    /// `picture` is encoded with the parameter sets, has one reference, the picture before, and is a
    /// reference itself. Throws BitstreamError if its headers cannot be read.
    RepeatedPicture(VideoCodec codec, const NalUnits& parameterSets, NalUnits picture);

    /// The picture that is the `place`-th after a sync picture, 1 being right after it. Its order count steps
    /// as the encoder's does: by 2 in H.264, by 1 in HEVC.
    NalUnits at(std::int64_t place) const;

private:
    /// A number in a slice header.
    struct Field {
        std::uint64_t position = 0; ///< payload bits after the NAL unit's header
        int bits = 0;
        std::int64_t step = 1;
    };

    void locateH264(const NalUnits& parameterSets);
    void locateHevc(const NalUnits& parameterSets);
    bitstream::Bytes renumbered(const bitstream::Bytes& nal, std::span<const Field> fields,
                                std::int64_t place) const;

    std::size_t headerSize_;
    NalUnits slices_;
    std::vector<std::vector<Field>> fields_; ///< of each slice, in order
};

} // namespace zelvra::media
