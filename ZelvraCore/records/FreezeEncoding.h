// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/records/ChromaFormat.h"

#include <cstdint>
#include <optional>

namespace zelvra {

/// What the encoder of a freeze clip must match so that its pictures can be part of the source's own coded
/// stream. The encoder chooses every field that is empty. Values as in ITU-T H.264 clause 7.4.2 and H.265
/// clause 7.4.3.
struct FreezeEncoding {
    /// The coded picture (whole macroblocks or coding blocks) and how much of it is cut away at each side, in
    /// luma samples. The picture is put into the coded one and its edges are repeated into the margins.
    struct CodedFrame {
        int width = 0;
        int height = 0;
        int cropLeft = 0;
        int cropTop = 0;
        int cropRight = 0;
        int cropBottom = 0;
    };
    std::optional<CodedFrame> codedFrame;
    std::optional<ChromaFormat> chroma;
    std::optional<int> bitDepth;

    // H.264 only
    std::optional<int> profileIdc;
    std::optional<int> levelIdc;
    bool cabac = true;
    bool transform8x8 = true;
    bool frameMbsOnly = true;      ///< false: frame pictures of a stream that may hold fields
    bool mbAdaptiveFields = false; ///< mb_adaptive_frame_field_flag of such a stream
    int parameterSetId = 0;        ///< seq_parameter_set_id and pic_parameter_set_id

    int leastQp = 0; ///< 1 if QP 0 would switch to lossless coding in the source's stream
    std::optional<std::uint64_t> mostFirstBytes; ///< greatest size of the first coded picture
};

} // namespace zelvra
