// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/bitstream/hevc/SliceHeader.h"

#include "ZelvraCore/bitstream/BitReader.h"
#include "ZelvraCore/bitstream/BitWriter.h"
#include "ZelvraCore/bitstream/BitstreamError.h"
#include "ZelvraCore/bitstream/ByteCursor.h"
#include "ZelvraCore/bitstream/EmulationPrevention.h"
#include "ZelvraCore/bitstream/hevc/ShortTermRefs.h"

#include <algorithm>
#include <bit>

namespace zelvra::hevc {

using bitstream::BitReader;
using bitstream::BitstreamError;
using bitstream::BitWriter;

namespace {

/// Number of bits for values below `count`: Ceil(Log2(count)).
int bitsFor(std::uint32_t count) {
    return count <= 1 ? 0 : std::bit_width(count - 1);
}

class Parser {
public:
    Parser(bitstream::ByteView nal, const ParameterSets& sets)
        : reader_(nal.subspan(nalHeaderSize)), sets_(sets) {
        header_.nalType = nalType(nal);
        header_.temporalId = temporalId(nal);
    }

    SliceHeader parse() {
        header_.firstInPicture = reader_.flag();
        if (isIrap(header_.nalType)) {
            header_.noOutputOfPriorPics = reader_.flag();
        }
        header_.ppsIdBegin = reader_.position();
        header_.ppsId = static_cast<int>(reader_.ue(63));
        header_.ppsIdEnd = reader_.position();
        const Pps& pps = sets_.pps(header_.ppsId);
        const Sps& sps = sets_.sps(pps.spsId);
        parseAddress(sps, pps);
        if (!header_.dependent) {
            parseIndependent(sps, pps);
        }
        parseEnd(pps);
        return header_;
    }

private:
    void parseAddress(const Sps& sps, const Pps& pps) {
        if (header_.firstInPicture) {
            return;
        }
        header_.dependent = pps.dependentSegments && reader_.flag();
        const auto blocks = static_cast<std::uint32_t>(sps.pictureSizeInTreeBlocks());
        header_.address = reader_.bits(bitsFor(blocks));
    }

    void parseIndependent(const Sps& sps, const Pps& pps) {
        reader_.skip(static_cast<std::uint64_t>(pps.extraHeaderBits));
        header_.type = static_cast<SliceType>(reader_.ue(2));
        header_.afterSliceType = reader_.position();
        header_.picOutputCoded = pps.outputFlagPresent;
        if (pps.outputFlagPresent) {
            header_.picOutput = reader_.flag();
        }
        if (sps.separateColourPlanes) {
            reader_.skip(2);
        }
        if (!isIdr(header_.nalType)) {
            parseReferencePictures(sps);
        }
        if (sps.sampleAdaptiveOffset) {
            const bool luma = reader_.flag();
            const bool chroma = sps.hasChromaArrays() && reader_.flag();
            adaptiveOffset_ = luma || chroma;
        }
        if (header_.type != SliceType::i) {
            skipInterPrediction(sps, pps);
        }
        skipQuantisation(pps);
        skipDeblocking(pps);
    }

    void parseReferencePictures(const Sps& sps) {
        header_.pocLsb = reader_.bits(sps.pocLsbBits);
        if (!reader_.flag()) {
            countUsed(parseShortTermRefs(reader_, sps.shortTermRefs, true));
        } else {
            const auto sets = static_cast<std::uint32_t>(sps.shortTermRefs.size());
            const std::uint32_t index = reader_.bits(bitsFor(sets));
            if (index >= sets) {
                throw BitstreamError::corrupt("a picture of the video names references that are not there");
            }
            countUsed(sps.shortTermRefs[index]);
        }
        if (sps.longTermRefsPresent) {
            skipLongTermRefs(sps);
        }
        temporalMotion_ = sps.temporalMotionPrediction && reader_.flag();
    }

    void countUsed(const ShortTermRefs& refs) {
        usedRefs_ +=
            static_cast<std::uint32_t>(std::ranges::count(refs.entries, true, &ShortTermRefs::Entry::used));
    }

    void skipLongTermRefs(const Sps& sps) {
        constexpr std::uint32_t maxRefs = 33;
        const auto candidates = static_cast<std::uint32_t>(sps.longTermRefUsed.size());
        const std::uint32_t fromSet = candidates > 0 ? reader_.ue(maxRefs) : 0;
        const std::uint32_t count = fromSet + reader_.ue(maxRefs);
        for (std::uint32_t i = 0; i < count; ++i) {
            bool used = false;
            if (i < fromSet) {
                const std::uint32_t index = reader_.bits(bitsFor(candidates));
                if (index >= candidates) {
                    throw BitstreamError::corrupt("a picture names references that are not there");
                }
                used = sps.longTermRefUsed[index];
            } else {
                reader_.skip(static_cast<std::uint64_t>(sps.pocLsbBits));
                used = reader_.flag();
            }
            usedRefs_ += used ? 1 : 0;
            if (reader_.flag()) {
                reader_.ue(); // delta_poc_msb_cycle_lt
            }
        }
    }

    void skipInterPrediction(const Sps& sps, const Pps& pps) {
        const bool bidirectional = header_.type == SliceType::b;
        const std::size_t lists = bidirectional ? 2 : 1;
        std::array<std::uint32_t, 2> active = pps.defaultActiveRefs;
        if (reader_.flag()) {
            for (std::size_t list = 0; list < lists; ++list) {
                active[list] = reader_.ue(14) + 1;
            }
        }
        if (pps.listsModificationPresent && usedRefs_ > 1) {
            for (std::size_t list = 0; list < lists; ++list) {
                if (reader_.flag()) {
                    reader_.skip(std::uint64_t{active[list]} * static_cast<unsigned>(bitsFor(usedRefs_)));
                }
            }
        }
        if (bidirectional) {
            reader_.skip(1); // mvd_l1_zero_flag
        }
        if (pps.cabacInitPresent) {
            reader_.skip(1);
        }
        if (temporalMotion_) {
            const bool fromList0 = !bidirectional || reader_.flag();
            if (active[fromList0 ? 0 : 1] > 1) {
                reader_.ue(); // collocated_ref_idx
            }
        }
        if (bidirectional ? pps.weightedBiprediction : pps.weightedPrediction) {
            skipWeights(sps, active, lists);
        }
        reader_.ue(4); // five_minus_max_num_merge_cand
    }

    void skipWeights(const Sps& sps, const std::array<std::uint32_t, 2>& active, std::size_t lists) {
        const bool chroma = sps.hasChromaArrays();
        reader_.ue(7);
        if (chroma) {
            reader_.se();
        }
        for (std::size_t list = 0; list < lists; ++list) {
            const int count = static_cast<int>(active[list]);
            const std::uint32_t lumaFlags = reader_.bits(count);
            const std::uint32_t chromaFlags = chroma ? reader_.bits(count) : 0;
            // Weight and offset of luma, and of both chroma planes.
            const int numbers = 2 * std::popcount(lumaFlags) + 4 * std::popcount(chromaFlags);
            for (int i = 0; i < numbers; ++i) {
                reader_.se();
            }
        }
    }

    void skipQuantisation(const Pps& pps) {
        reader_.se(); // slice_qp_delta
        if (pps.chromaQpOffsetsPresent) {
            reader_.se();
            reader_.se();
        }
        if (pps.chromaQpOffsetListEnabled) {
            reader_.skip(1); // cu_chroma_qp_offset_enabled_flag
        }
    }

    void skipDeblocking(const Pps& pps) {
        bool disabled = pps.deblockingDisabled;
        if (pps.deblockingOverride && reader_.flag()) {
            disabled = reader_.flag();
            if (!disabled) {
                reader_.se();
                reader_.se();
            }
        }
        if (pps.loopFilterAcrossSlices && (adaptiveOffset_ || !disabled)) {
            reader_.skip(1); // slice_loop_filter_across_slices_enabled_flag
        }
    }

    void parseEnd(const Pps& pps) {
        if (pps.tiles || pps.wavefronts) {
            header_.entryPoints = reader_.ue();
            if (header_.entryPoints > 0) {
                const std::uint32_t offsetBits = reader_.ue(31) + 1;
                reader_.skip(std::uint64_t{header_.entryPoints} * offsetBits);
            }
        }
        if (pps.headerExtensionPresent) {
            reader_.skip(8 * std::uint64_t{reader_.ue(256)});
        }
        header_.headerBits = reader_.position();
        bool aligned = reader_.flag();
        while (!reader_.byteAligned()) {
            aligned = !reader_.flag() && aligned;
        }
        if (!aligned) {
            throw BitstreamError::corrupt("a slice of the video does not begin where its header ends");
        }
        header_.dataOffset = nalHeaderSize + reader_.storedOffset();
    }

    BitReader reader_;
    const ParameterSets& sets_;
    SliceHeader header_;
    std::uint32_t usedRefs_ = 0; ///< NumPicTotalCurr
    bool temporalMotion_ = false;
    bool adaptiveOffset_ = false;
};

bitstream::Bytes nalHeaderWith(bitstream::ByteView nal, const std::optional<NalType>& type) {
    bitstream::Bytes header(nal.begin(), nal.begin() + nalHeaderSize);
    if (type) {
        header[0] = static_cast<std::uint8_t>((header[0] & 0x81) | static_cast<int>(*type) << 1);
    }
    return header;
}

/// The bytes before the slice data.
bitstream::Bytes rewriteHeader(bitstream::ByteView nal, const SliceHeader& header, const SliceEdits& edits) {
    BitReader reader(nal.subspan(nalHeaderSize));
    BitWriter writer;
    const auto copyTo = [&](std::uint64_t position) { writer.copy(reader, position - reader.position()); };

    copyTo(1);
    if (isIrap(header.nalType)) {
        writer.flag(reader.flag() && !edits.keepPriorPictures);
    }
    if (edits.ppsId) {
        writer.ue(static_cast<std::uint32_t>(*edits.ppsId));
        reader.skip(header.ppsIdEnd - reader.position());
    }
    if (edits.picOutput && !header.dependent) {
        copyTo(header.afterSliceType);
        writer.flag(*edits.picOutput);
        if (header.picOutputCoded) {
            reader.skip(1);
        }
    }
    copyTo(header.headerBits);
    writer.trailingBits();

    bitstream::Bytes rewritten = nalHeaderWith(nal, edits.nalType);
    bitstream::appendWithEmulationPrevention(rewritten, writer.payload());
    return rewritten;
}

} // namespace

SliceHeader parseSliceHeader(bitstream::ByteView nal, const ParameterSets& sets) {
    if (nal.size() <= nalHeaderSize) {
        throw BitstreamError::corrupt("a slice of the video is empty");
    }
    if (layerId(nal) != 0) {
        throw BitstreamError::unsupported("the video has more than one layer");
    }
    return Parser(nal, sets).parse();
}

bitstream::Bytes rewriteSlice(bitstream::ByteView nal, const SliceHeader& header, const SliceEdits& edits) {
    const bitstream::ByteView coded = nal.first(header.dataOffset);
    if (!std::ranges::equal(rewriteHeader(nal, header, {}), coded)) {
        throw BitstreamError::unsupported("the headers of the video's slices are written unusually");
    }
    // The header's last byte contains the closing one bit, so no run of zeros extends into the slice data.
    // The emulation prevention of the slice data stays correct.
    bitstream::Bytes rewritten = rewriteHeader(nal, header, edits);
    bitstream::append(rewritten, nal.subspan(header.dataOffset));
    return rewritten;
}

} // namespace zelvra::hevc
