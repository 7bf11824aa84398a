// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/bitstream/hevc/Pps.h"

#include "ZelvraCore/bitstream/BitReader.h"
#include "ZelvraCore/bitstream/BitstreamError.h"
#include "ZelvraCore/bitstream/hevc/NalType.h"
#include "ZelvraCore/bitstream/hevc/ScalingLists.h"

namespace zelvra::hevc {

using bitstream::BitReader;
using bitstream::BitstreamError;

namespace {

void skipTiles(BitReader& reader) {
    constexpr std::uint32_t maxTilesAcross = 1023; // far above any level: 20 columns, 22 rows
    const std::uint32_t columns = reader.ue(maxTilesAcross);
    const std::uint32_t rows = reader.ue(maxTilesAcross);
    if (!reader.flag()) { // not uniformly spaced
        for (std::uint32_t i = 0; i < columns + rows; ++i) {
            reader.ue();
        }
    }
    reader.skip(1); // loop_filter_across_tiles_enabled_flag
}

void parseDeblocking(BitReader& reader, Pps& pps) {
    pps.deblockingOverride = reader.flag();
    pps.deblockingDisabled = reader.flag();
    if (!pps.deblockingDisabled) {
        reader.se();
        reader.se();
    }
}

void parseExtensions(BitReader& reader, Pps& pps, bool transformSkip) {
    const bool range = reader.flag();
    if (reader.bits(3) != 0) {
        throw BitstreamError::unsupported("the video uses extensions of HEVC that are not handled");
    }
    reader.skip(4); // pps_extension_4bits
    if (!range) {
        return;
    }
    if (transformSkip) {
        reader.ue(); // log2_max_transform_skip_block_size_minus2
    }
    reader.skip(1); // cross_component_prediction_enabled_flag
    pps.chromaQpOffsetListEnabled = reader.flag();
}

} // namespace

Pps parsePps(bitstream::ByteView nal) {
    if (nal.size() < nalHeaderSize || nalType(nal) != NalType::pps) {
        throw BitstreamError::corrupt("a parameter set of the video is of another kind");
    }
    if (layerId(nal) != 0) {
        throw BitstreamError::unsupported("the video has more than one layer");
    }
    BitReader reader(nal.subspan(nalHeaderSize));
    Pps pps;
    pps.nal.assign(nal.begin(), nal.end());
    pps.id = static_cast<int>(reader.ue(63));
    pps.spsId = static_cast<int>(reader.ue(15));
    pps.idsEnd = reader.position();
    pps.dependentSegments = reader.flag();
    pps.outputFlag = reader.position();
    pps.outputFlagPresent = reader.flag();
    pps.extraHeaderBits = static_cast<int>(reader.bits(3));
    reader.skip(1); // sign_data_hiding_enabled_flag
    pps.cabacInitPresent = reader.flag();
    for (std::uint32_t& refs : pps.defaultActiveRefs) {
        refs = reader.ue(14) + 1;
    }
    reader.se();    // init_qp_minus26
    reader.skip(1); // constrained_intra_pred_flag
    const bool transformSkip = reader.flag();
    if (reader.flag()) {
        reader.ue(); // diff_cu_qp_delta_depth
    }
    reader.se(); // pps_cb_qp_offset
    reader.se(); // pps_cr_qp_offset
    pps.chromaQpOffsetsPresent = reader.flag();
    pps.weightedPrediction = reader.flag();
    pps.weightedBiprediction = reader.flag();
    reader.skip(1); // transquant_bypass_enabled_flag
    pps.tiles = reader.flag();
    pps.wavefronts = reader.flag();
    if (pps.tiles) {
        skipTiles(reader);
    }
    pps.loopFilterAcrossSlices = reader.flag();
    if (reader.flag()) {
        parseDeblocking(reader, pps);
    }
    if (reader.flag()) {
        skipScalingLists(reader);
    }
    pps.listsModificationPresent = reader.flag();
    reader.ue(); // log2_parallel_merge_level_minus2
    pps.headerExtensionPresent = reader.flag();
    if (reader.flag()) {
        parseExtensions(reader, pps, transformSkip);
    }
    return pps;
}

} // namespace zelvra::hevc
