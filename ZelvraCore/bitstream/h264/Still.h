// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/bitstream/h264/SliceHeader.h"

#include <optional>
#include <string>

namespace zelvra::h264 {

/// Turning the first picture of a freeze clip, an IDR picture of our own encoder, into a picture of the
/// source's stream: the same slice data behind a header written for the source's sequence parameter set and a
/// picture parameter set of our own. What that picture parameter set is called and where the still stands is
/// for the caller to decide.

/// What differs between the stills that are made of one coded picture.
struct StillHeader {
    bool idr = false;
    int nalRefIdc = 0;          ///< not 0 for IDR pictures
    int ppsId = 0;              ///< of our picture parameter set in the source's stream
    std::uint32_t idrPicId = 0; ///< IDR only
    std::uint32_t frameNum = 0;
    std::uint32_t pocLsb = 0;                   ///< POC type 0; modulo the source's MaxPicOrderCntLsb
    std::array<std::int32_t, 2> deltaPoc{0, 0}; ///< POC type 1, unless always zero

    /// The header as PictureOrder wants it.
    SliceHeader asSlice() const;
};

/// Why slices coded for `own` cannot be decoded with `source`; empty where they can. Size, chroma, bit depth,
/// the kind of frames and the lossless switch must be the same.
std::optional<std::string> whyStillDoesNotFit(const Sps& own, const Pps& ownPps, const Sps& source);

/// One slice of the still. `idrSlice` is an I slice of an IDR picture coded with `own`. The still is a frame
/// (field_pic_flag 0). A reference still that is not IDR slides the window of references. Slice data keeps
/// its bits: with CABAC it starts on a byte again, with CAVLC it shifts. Throws BitstreamError; unsupported
/// where `whyStillDoesNotFit`.
bitstream::Bytes rewriteSlice(bitstream::ByteView idrSlice, const ParameterSets& own, const Sps& source,
                              const StillHeader& still);

} // namespace zelvra::h264
