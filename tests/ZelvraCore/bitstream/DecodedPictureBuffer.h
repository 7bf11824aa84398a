// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/bitstream/h264/PictureScanner.h"

#include <vector>

namespace zelvra::test {

/// What a decoder that follows the standard to the letter does with a stream of H.264 frames: the output
/// order of the decoded picture buffer (ITU-T H.264 clause C.4, "bumping"), run on headers alone. No player
/// here works exactly so; a stream that passes is right for all that do.
struct BufferedOutput {
    std::vector<std::size_t> order; ///< indexes of samples as they come out
    int overflows = 0;              ///< pictures for which there was no room
    int frameNumGaps = 0;           ///< pictures before which frames are missing, by frame_num
};

/// `samples` are in decode order, with NAL units behind lengths of `nalLengthSize` bytes. Frames only.
BufferedOutput bufferOutput(const h264::ParameterSets& sets, int nalLengthSize,
                            const std::vector<bitstream::Bytes>& samples);

} // namespace zelvra::test
