// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/bitstream/Bytes.h"
#include "ZelvraCore/records/ChromaFormat.h"
#include "ZelvraCore/records/FreezeEncoding.h"

#include <optional>

namespace zelvra::h264 {

/// The part of the video usability information that affects colours and output order (ITU-T H.264 annex E).
struct Vui {
    bool fullRange = false;
    std::optional<int> maxDecFrameBuffering; ///< of bitstream_restriction
};

/// A sequence parameter set (ITU-T H.264 clause 7.3.2.1.1): the layout of pictures and the coding of their
/// order counts. Scaling lists are skipped, not kept.
struct Sps {
    struct CropInUnits {
        std::uint32_t left = 0;
        std::uint32_t right = 0;
        std::uint32_t top = 0;
        std::uint32_t bottom = 0;
    };

    bitstream::Bytes nal; ///< as stored, header byte included
    int profileIdc = 0;
    std::uint8_t constraintFlags = 0; ///< constraint_set0_flag is the highest bit
    int levelIdc = 0;
    int id = 0;
    ChromaFormat chroma = ChromaFormat::yuv420;
    bool separateColourPlanes = false;
    int lumaBitDepth = 8;
    int chromaBitDepth = 8;
    bool losslessAtQpZero = false; ///< qpprime_y_zero_transform_bypass_flag
    bool scalingMatrixPresent = false;
    int frameNumBits = 4;
    int pocType = 0;
    int pocLsbBits = 4;                   ///< POC type 0
    bool deltaPicOrderAlwaysZero = false; ///< POC type 1, as are the offsets
    std::int32_t offsetForNonRefPic = 0;
    std::int32_t offsetForTopToBottomField = 0;
    std::vector<std::int32_t> offsetsForRefFrame;
    int maxNumRefFrames = 0;
    bool gapsInFrameNumAllowed = false;
    int widthInMacroblocks = 0;
    int heightInMapUnits = 0;
    bool frameMbsOnly = true;
    bool mbAdaptiveFrameField = false;
    bool direct8x8Inference = false;
    CropInUnits crop;
    std::optional<Vui> vui;

    int codedWidth() const { return widthInMacroblocks * 16; }
    int codedHeight() const { return heightInMapUnits * 16 * (frameMbsOnly ? 1 : 2); }
    /// The size of the coded frame and the margins that the cropping rectangle removes, in luma samples.
    FreezeEncoding::CodedFrame codedFrame() const;
    /// Level 1b of table A-1, which some profiles write as 1.1 with constraint_set3_flag.
    bool isLevel1b() const;
};

/// Throws BitstreamError.
Sps parseSps(bitstream::ByteView nal);

} // namespace zelvra::h264
