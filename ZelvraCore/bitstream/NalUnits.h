// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/bitstream/Bytes.h"

#include <optional>

namespace zelvra::bitstream {

/// NAL units as they are stored in samples of a movie file: each follows its length, which takes 1, 2 or 4
/// bytes, big-endian (ISO/IEC 14496-15 clause 5.3.3).

/// The NAL units of a sample, in order, as views into it. Empty ones are left out. Throws BitstreamError
/// (corrupt) if a length goes beyond the sample's end, (unsupported) for a length size other than 1, 2, 4.
std::vector<ByteView> splitNalUnits(ByteView sample, int lengthSize);

/// Walks over the NAL units at the start of a sample, for callers that read only part of it. Nothing is
/// thrown: a unit whose length goes beyond the end of `bytes` is cut there, empty ones are left out.
class NalUnitWalk {
public:
    /// `bytes` outlive this. `lengthSize` 1 to 4; any other walks over nothing.
    NalUnitWalk(ByteView bytes, int lengthSize);

    /// `nullopt` when no unit is left.
    std::optional<ByteView> next();

private:
    ByteView rest_;
    std::size_t lengthSize_;
};

/// Appends the length of a NAL unit and the NAL unit. Throws BitstreamError (unsupported) if the length does
/// not fit in `lengthSize` bytes.
void appendNalUnit(Bytes& sample, ByteView nal, int lengthSize);

template <class NalUnitRange>
Bytes joinNalUnits(const NalUnitRange& nals, int lengthSize) {
    Bytes sample;
    for (const auto& nal : nals) {
        appendNalUnit(sample, nal, lengthSize);
    }
    return sample;
}

} // namespace zelvra::bitstream
