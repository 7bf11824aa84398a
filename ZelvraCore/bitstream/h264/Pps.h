// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/bitstream/Bytes.h"
#include "ZelvraCore/records/ChromaFormat.h"

#include <array>
#include <optional>

namespace zelvra::h264 {

/// A picture parameter set (ITU-T H.264 clause 7.3.2.2). Several slice groups (flexible macroblock ordering)
/// are refused as unsupported: only the Baseline and Extended profiles have them, and no player here can
/// decode them.
struct Pps {
    bitstream::Bytes nal; ///< as stored, header byte included
    int id = 0;
    int spsId = 0;
    bool cabac = false;
    bool bottomFieldPicOrderPresent = false; ///< bottom_field_pic_order_in_frame_present_flag
    std::array<int, 2> defaultActiveRefs{1, 1};
    bool weightedPrediction = false;
    int weightedBipredictionIdc = 0;
    int initialQp = 26;
    int initialQs = 26;
    int chromaQpOffset = 0;
    int secondChromaQpOffset = 0;
    bool deblockingControlPresent = false;
    bool constrainedIntraPrediction = false;
    bool redundantPicCntPresent = false;
    bool transform8x8 = false;
    bool scalingMatrixPresent = false;

    std::uint64_t idsEnd = 0;    ///< payload bit after the two ids
    std::uint64_t commonEnd = 0; ///< payload bit after redundant_pic_cnt_present_flag
};

/// `chroma` is that of the sequence parameter set it refers to, as the number of scaling lists depends on it.
/// Throws BitstreamError.
Pps parsePps(bitstream::ByteView nal, ChromaFormat chroma = ChromaFormat::yuv420);

/// The same set with another id, referring to another sequence parameter set. With `flatFor`, flat scaling
/// lists are written explicitly, as many as this chroma format requires. This is needed if the sequence
/// parameter set has matrices that the slices were not coded with. Throws BitstreamError; unsupported if
/// `flatFor` is given and the set has matrices of its own.
bitstream::Bytes rewritePps(bitstream::ByteView nal, int newId, int newSpsId,
                            std::optional<ChromaFormat> flatFor = {});

} // namespace zelvra::h264
