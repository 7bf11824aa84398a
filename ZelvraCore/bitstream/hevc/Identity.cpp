// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/bitstream/hevc/Identity.h"

#include "ZelvraCore/bitstream/BitReader.h"
#include "ZelvraCore/bitstream/BitWriter.h"
#include "ZelvraCore/bitstream/BitstreamError.h"
#include "ZelvraCore/bitstream/EmulationPrevention.h"
#include "ZelvraCore/bitstream/NalUnits.h"

#include <algorithm>

namespace zelvra::hevc {

using bitstream::BitReader;
using bitstream::BitWriter;
using bitstream::Bytes;
using bitstream::ByteView;

namespace {

constexpr int vpsIdBits = 4;

/// Copies the rest of a parameter set's payload and closes it.
Bytes finish(ByteView nal, BitReader& reader, BitWriter& writer) {
    writer.copy(reader, reader.bitsBeforeStop());
    writer.trailingBits();
    return bitstream::withEmulationPrevention(nal.first(nalHeaderSize), writer.payload());
}

Bytes reidentifyVps(ByteView nal, const Identity& identity) {
    BitReader reader(nal.subspan(nalHeaderSize));
    BitWriter writer;
    reader.skip(vpsIdBits);
    writer.bits(static_cast<std::uint32_t>(identity.vpsId), vpsIdBits);
    return finish(nal, reader, writer);
}

Bytes reidentifySps(ByteView nal, const Identity& identity) {
    const Sps sps = parseSps(nal);
    BitReader reader(nal.subspan(nalHeaderSize));
    BitWriter writer;
    reader.skip(vpsIdBits);
    writer.bits(static_cast<std::uint32_t>(identity.vpsId), vpsIdBits);
    writer.copy(reader, sps.idBegin - reader.position());
    reader.skip(sps.idEnd - sps.idBegin);
    writer.ue(static_cast<std::uint32_t>(identity.spsId));
    return finish(nal, reader, writer);
}

Bytes reidentifyPps(ByteView nal, const Identity& identity) {
    const Pps pps = parsePps(nal);
    BitReader reader(nal.subspan(nalHeaderSize));
    BitWriter writer;
    reader.skip(pps.idsEnd);
    writer.ue(static_cast<std::uint32_t>(identity.ppsId));
    writer.ue(static_cast<std::uint32_t>(identity.spsId));
    return finish(nal, reader, writer);
}

void requireOneOfEach(const ParameterSets& own) {
    if (own.allVps().size() != 1 || own.allSps().size() != 1 || own.allPps().size() != 1) {
        throw bitstream::BitstreamError::unsupported(
            "the encoded freeze has several parameter sets of a kind");
    }
}

/// The requirements of both combined. A latency limit is kept only if the clip reorders no more than the
/// source.
SubLayerOrdering greaterOf(const SubLayerOrdering& own, const SubLayerOrdering& source) {
    SubLayerOrdering both;
    both.maxDecPicBuffering = std::max(own.maxDecPicBuffering, source.maxDecPicBuffering);
    both.maxNumReorder = std::max(own.maxNumReorder, source.maxNumReorder);
    both.maxLatencyIncreasePlus1 =
        own.maxNumReorder <= source.maxNumReorder ? source.maxLatencyIncreasePlus1 : 0;
    return both;
}

} // namespace

Bytes reidentify(ByteView nal, const ParameterSets& own, const Identity& identity) {
    requireOneOfEach(own);
    if (nal.size() < nalHeaderSize) {
        return {nal.begin(), nal.end()};
    }
    const NalType type = nalType(nal);
    if (isSlice(type)) {
        SliceEdits edits;
        edits.ppsId = identity.ppsId;
        edits.keepPriorPictures = true;
        return rewriteSlice(nal, parseSliceHeader(nal, own), edits);
    }
    switch (type) {
    case NalType::vps: return reidentifyVps(nal, identity);
    case NalType::sps: return reidentifySps(nal, identity);
    case NalType::pps: return reidentifyPps(nal, identity);
    default: return {nal.begin(), nal.end()};
    }
}

Bytes reidentifySample(ByteView sample, int nalLengthSize, const ParameterSets& own,
                       const Identity& identity) {
    Bytes renamed;
    for (const ByteView nal : bitstream::splitNalUnits(sample, nalLengthSize)) {
        if (nal.size() >= nalHeaderSize && !isParameterSet(nalType(nal))) {
            bitstream::appendNalUnit(renamed, reidentify(nal, own, identity), nalLengthSize);
        }
    }
    return renamed;
}

Bytes matchPictureBuffer(ByteView ownSps, const Sps& source) {
    // sps_video_parameter_set_id, sub-layers and nesting, then the profile before general_level_idc.
    constexpr std::uint64_t levelBegin = 8 + 88;
    constexpr int levelBits = 8;
    const Sps own = parseSps(ownSps);
    const SubLayerOrdering both = greaterOf(own.ordering.back(), source.ordering.back());
    BitReader reader(ownSps.subspan(nalHeaderSize));
    BitWriter writer;
    writer.copy(reader, levelBegin);
    reader.skip(levelBits);
    writer.bits(
        static_cast<std::uint32_t>(std::max(own.profileTierLevel.levelIdc, source.profileTierLevel.levelIdc)),
        levelBits);
    writer.copy(reader, own.orderingBegin - reader.position());
    reader.skip(own.orderingEnd - own.orderingBegin);
    writer.flag(false); // one entry applies to all sub-layers
    writer.ue(both.maxDecPicBuffering - 1);
    writer.ue(both.maxNumReorder);
    writer.ue(both.maxLatencyIncreasePlus1);
    return finish(ownSps, reader, writer);
}

HevcConfiguration reidentify(const HevcConfiguration& configuration, const Identity& identity,
                             const Sps& source) {
    const ParameterSets own(configuration);
    HevcConfiguration renamed = configuration;
    for (auto& array : renamed.arrays) {
        for (Bytes& nal : array.nals) {
            if (array.type == NalType::sps) {
                nal = matchPictureBuffer(nal, source);
            }
            nal = reidentify(nal, own, identity);
        }
    }
    const auto sourceLevel = static_cast<std::uint8_t>(source.profileTierLevel.levelIdc);
    renamed.levelIdc = std::max(renamed.levelIdc, sourceLevel);
    return renamed;
}

} // namespace zelvra::hevc
