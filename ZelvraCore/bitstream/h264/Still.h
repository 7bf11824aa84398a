// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/bitstream/h264/SliceHeader.h"

#include <optional>
#include <string>

namespace zelvra::h264 {

/// Turns the first picture of a freeze clip, an IDR picture of our own encoder, into a picture of the
/// source's stream. The slice data stays; the header is rewritten for the source's sequence parameter set and
/// a picture parameter set of our own. The caller chooses that set's id and the still's position.

/// The header fields that differ between stills made from the same coded picture.
struct StillHeader {
    bool idr = false;
    int nalRefIdc = 0;          ///< not 0 for IDR pictures
    int ppsId = 0;              ///< of our picture parameter set in the source's stream
    std::uint32_t idrPicId = 0; ///< IDR only
    std::uint32_t frameNum = 0;
    std::uint32_t pocLsb = 0;                   ///< POC type 0; modulo the source's MaxPicOrderCntLsb
    std::array<std::int32_t, 2> deltaPoc{0, 0}; ///< POC type 1, unless always zero

    /// The header in the form that PictureOrder takes.
    SliceHeader asSlice() const;
};

/// Why slices coded for `own` cannot be decoded with `source`; `nullopt` if they can. Size, chroma, bit
/// depth, the kind of frames and the lossless switch must be the same.
std::optional<std::string> whyStillDoesNotFit(const Sps& own, const Pps& ownPps, const Sps& source);

/// One slice of the still. `idrSlice` is an I slice of an IDR picture coded with `own`. The still is a frame
/// (field_pic_flag 0). A reference still that is not IDR uses the sliding window for references. The bits of
/// the slice data stay: with CABAC they start on a byte again, with CAVLC they are shifted. Throws
/// BitstreamError; unsupported if `whyStillDoesNotFit` returns a reason.
bitstream::Bytes rewriteSlice(bitstream::ByteView idrSlice, const ParameterSets& own, const Sps& source,
                              const StillHeader& still);

} // namespace zelvra::h264
