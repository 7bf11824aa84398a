// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/bitstream/h264/Pps.h"

#include "ZelvraCore/bitstream/BitReader.h"
#include "ZelvraCore/bitstream/BitWriter.h"
#include "ZelvraCore/bitstream/BitstreamError.h"
#include "ZelvraCore/bitstream/EmulationPrevention.h"
#include "ZelvraCore/bitstream/h264/NalType.h"
#include "ZelvraCore/bitstream/h264/ScalingLists.h"

namespace zelvra::h264 {

using bitstream::BitReader;
using bitstream::BitstreamError;
using bitstream::BitWriter;

namespace {

/// One list of equal entries: the first is 16, and a next scale of 0 repeats it to the end.
void writeFlatList(BitWriter& writer) {
    writer.flag(true);
    writer.se(16 - 8);
    writer.se(0 - 16);
}

/// The elements after the common part, with all lists flat.
void writeFlatEnd(BitWriter& writer, const Pps& pps, ChromaFormat chroma) {
    writer.flag(pps.transform8x8);
    writer.flag(true);
    const int count = scalingListCount(chroma == ChromaFormat::yuv444, pps.transform8x8);
    for (int i = 0; i < count; ++i) {
        writeFlatList(writer);
    }
    writer.se(pps.secondChromaQpOffset);
}

} // namespace

Pps parsePps(bitstream::ByteView nal, ChromaFormat chroma) {
    if (nal.empty() || nalType(nal) != NalType::pps) {
        throw BitstreamError::corrupt("the video's picture parameter set is of another kind");
    }
    BitReader reader(nal.subspan(1));
    Pps pps;
    pps.nal.assign(nal.begin(), nal.end());
    pps.id = static_cast<int>(reader.ue(255));
    pps.spsId = static_cast<int>(reader.ue(31));
    pps.idsEnd = reader.position();
    pps.cabac = reader.flag();
    pps.bottomFieldPicOrderPresent = reader.flag();
    if (reader.ue() != 0) {
        throw BitstreamError::unsupported("the video's pictures are cut into slice groups");
    }
    for (int& refs : pps.defaultActiveRefs) {
        refs = static_cast<int>(reader.ue(31) + 1);
    }
    pps.weightedPrediction = reader.flag();
    pps.weightedBipredictionIdc = static_cast<int>(reader.bits(2));
    pps.initialQp = 26 + reader.se();
    pps.initialQs = 26 + reader.se();
    pps.chromaQpOffset = reader.se();
    pps.deblockingControlPresent = reader.flag();
    pps.constrainedIntraPrediction = reader.flag();
    pps.redundantPicCntPresent = reader.flag();
    pps.commonEnd = reader.position();
    pps.secondChromaQpOffset = pps.chromaQpOffset;
    if (reader.moreData()) {
        pps.transform8x8 = reader.flag();
        pps.scalingMatrixPresent = reader.flag();
        if (pps.scalingMatrixPresent) {
            skipScalingLists(reader, scalingListCount(chroma == ChromaFormat::yuv444, pps.transform8x8));
        }
        pps.secondChromaQpOffset = reader.se();
    }
    return pps;
}

bitstream::Bytes rewritePps(bitstream::ByteView nal, int newId, int newSpsId,
                            std::optional<ChromaFormat> flatFor) {
    const Pps pps = parsePps(nal, flatFor.value_or(ChromaFormat::yuv420));
    if (flatFor && pps.scalingMatrixPresent) {
        throw BitstreamError::unsupported("the encoded freeze has scaling matrices of its own");
    }
    BitReader reader(nal.subspan(1));
    reader.skip(pps.idsEnd);
    BitWriter writer;
    writer.ue(static_cast<std::uint32_t>(newId));
    writer.ue(static_cast<std::uint32_t>(newSpsId));
    if (flatFor) {
        writer.copy(reader, pps.commonEnd - pps.idsEnd);
        writeFlatEnd(writer, pps, *flatFor);
    } else {
        writer.copy(reader, reader.bitsBeforeStop());
    }
    writer.trailingBits();
    return bitstream::withEmulationPrevention(nal.first(1), writer.payload());
}

} // namespace zelvra::h264
