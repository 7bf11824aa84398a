// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/bitstream/h264/PictureScanner.h"

#include <vector>

namespace zelvra::test {

/// The result of a decoder that follows the standard exactly for a stream of H.264 frames. It runs the output
/// order of the decoded picture buffer (ITU-T H.264 clause C.4, "bumping") on headers alone. No player works
/// exactly like this, but a stream that passes is correct for all players that follow the standard.
struct BufferedOutput {
    std::vector<std::size_t> order; ///< indexes of samples in output order
    int overflows = 0;              ///< pictures for which there was no room
    int frameNumGaps = 0;           ///< pictures before which frames are missing, according to frame_num
};

/// `samples` are in decode order; each NAL unit follows its length of `nalLengthSize` bytes. Frames only.
BufferedOutput bufferOutput(const h264::ParameterSets& sets, int nalLengthSize,
                            const std::vector<bitstream::Bytes>& samples);

} // namespace zelvra::test
