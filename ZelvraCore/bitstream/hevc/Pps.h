// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/bitstream/Bytes.h"

#include <array>

namespace zelvra::hevc {

/// A picture parameter set (ITU-T H.265 clause 7.3.2.3): the elements that slice segment headers depend on.
/// Scaling lists and tile sizes are skipped. The multilayer, 3D and screen content extensions are
/// unsupported.
struct Pps {
    bitstream::Bytes nal; ///< as stored, header included
    int id = 0;
    int spsId = 0;
    bool dependentSegments = false;
    bool outputFlagPresent = false;
    int extraHeaderBits = 0;
    bool cabacInitPresent = false;
    std::array<std::uint32_t, 2> defaultActiveRefs{1, 1};
    bool chromaQpOffsetsPresent = false; ///< pps_slice_chroma_qp_offsets_present_flag
    bool weightedPrediction = false;
    bool weightedBiprediction = false;
    bool tiles = false;
    bool wavefronts = false; ///< entropy_coding_sync_enabled_flag
    bool loopFilterAcrossSlices = false;
    bool deblockingOverride = false;
    bool deblockingDisabled = false;
    bool listsModificationPresent = false;
    bool headerExtensionPresent = false;
    bool chromaQpOffsetListEnabled = false; ///< range extension

    std::uint64_t idsEnd = 0;     ///< payload bit after the two ids
    std::uint64_t outputFlag = 0; ///< payload bit of output_flag_present_flag
};

/// Throws BitstreamError.
Pps parsePps(bitstream::ByteView nal);

} // namespace zelvra::hevc
