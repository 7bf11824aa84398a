// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/bitstream/h264/Still.h"

#include "ZelvraCore/bitstream/BitReader.h"
#include "ZelvraCore/bitstream/BitWriter.h"
#include "ZelvraCore/bitstream/BitstreamError.h"
#include "ZelvraCore/bitstream/EmulationPrevention.h"

namespace zelvra::h264 {

using bitstream::BitReader;
using bitstream::BitstreamError;
using bitstream::BitWriter;

namespace {

constexpr int highProfile = 100;

void writeMarking(BitWriter& writer, const StillHeader& still) {
    if (still.nalRefIdc == 0) {
        return;
    }
    if (still.idr) {
        writer.flag(false); // no_output_of_prior_pics_flag
        writer.flag(false); // long_term_reference_flag
    } else {
        writer.flag(false); // adaptive_ref_pic_marking_mode_flag
    }
}

void writePictureOrder(BitWriter& writer, const Pps& ownPps, const Sps& source, const StillHeader& still) {
    if (source.pocType == 0) {
        writer.bits(still.pocLsb, source.pocLsbBits);
        if (ownPps.bottomFieldPicOrderPresent) {
            writer.se(0);
        }
    } else if (source.pocType == 1 && !source.deltaPicOrderAlwaysZero) {
        writer.se(still.deltaPoc[0]);
        if (ownPps.bottomFieldPicOrderPresent) {
            writer.se(still.deltaPoc[1]);
        }
    }
}

void writeHeader(BitWriter& writer, const SliceHeader& own, const Pps& ownPps, const Sps& source,
                 const StillHeader& still) {
    writer.ue(own.firstMacroblock);
    writer.ue(static_cast<std::uint32_t>(own.type) + (own.sameTypeInPicture ? 5 : 0));
    writer.ue(static_cast<std::uint32_t>(still.ppsId));
    writer.bits(still.frameNum, source.frameNumBits);
    if (!source.frameMbsOnly) {
        writer.flag(false); // field_pic_flag
    }
    if (still.idr) {
        writer.ue(still.idrPicId);
    }
    writePictureOrder(writer, ownPps, source, still);
    if (ownPps.redundantPicCntPresent) {
        writer.ue(own.redundantPicCnt);
    }
    writeMarking(writer, still);
    writer.se(own.qpDelta);
    if (own.deblocking) {
        writer.ue(own.deblocking->disableIdc);
        if (own.deblocking->disableIdc != 1) {
            writer.se(own.deblocking->alphaOffsetDiv2);
            writer.se(own.deblocking->betaOffsetDiv2);
        }
    }
}

/// Copies everything after the header; `reader` is at its beginning. CABAC data may be followed by zero words
/// after the closing bits. They are kept, because they count towards a decoder's rate.
void copySliceData(BitWriter& writer, BitReader& reader, bool cabac) {
    if (cabac) {
        reader.skipToByteBoundary();
        writer.alignWithOnes();
        writer.copy(reader, reader.bitsLeft());
    } else {
        writer.copy(reader, reader.bitsBeforeStop());
        writer.trailingBits();
    }
}

} // namespace

SliceHeader StillHeader::asSlice() const {
    SliceHeader slice;
    slice.idr = idr;
    slice.nalRefIdc = nalRefIdc;
    slice.ppsId = ppsId;
    slice.idrPicId = idrPicId;
    slice.frameNum = frameNum;
    slice.pocLsb = pocLsb;
    slice.deltaPoc = deltaPoc;
    return slice;
}

std::optional<std::string> whyStillDoesNotFit(const Sps& own, const Pps& ownPps, const Sps& source) {
    if (own.codedWidth() != source.codedWidth() || own.codedHeight() != source.codedHeight()) {
        return "the encoded freeze is not of the video's size";
    }
    if (own.chroma != source.chroma || own.lumaBitDepth != source.lumaBitDepth ||
        own.chromaBitDepth != source.chromaBitDepth) {
        return "the encoded freeze is not of the video's colour format";
    }
    if (own.separateColourPlanes || source.separateColourPlanes) {
        return "the video's colour planes are coded apart";
    }
    if (own.frameMbsOnly != source.frameMbsOnly || own.mbAdaptiveFrameField != source.mbAdaptiveFrameField) {
        return "the encoded freeze is not interlaced as the video is";
    }
    if (own.losslessAtQpZero && !source.losslessAtQpZero) {
        return "the encoded freeze may be lossless, which the video may not";
    }
    if (own.scalingMatrixPresent) {
        return "the encoded freeze has scaling matrices of its own";
    }
    const bool cabacAllowed = source.profileIdc != 66 && source.profileIdc != 88;
    if ((ownPps.cabac && !cabacAllowed) || (ownPps.transform8x8 && source.profileIdc < highProfile)) {
        return "the encoded freeze uses tools that the video's profile has not";
    }
    return std::nullopt;
}

bitstream::Bytes rewriteSlice(bitstream::ByteView idrSlice, const ParameterSets& own, const Sps& source,
                              const StillHeader& still) {
    const SliceHeader header = parseSliceHeader(idrSlice, own);
    const Pps& ownPps = own.pps(header.ppsId);
    if (!header.idr || header.type != SliceType::i || header.fieldPicture) {
        throw BitstreamError::unsupported("the encoded freeze does not begin with an intra frame");
    }
    if (const auto reason = whyStillDoesNotFit(own.sps(header.spsId), ownPps, source)) {
        throw BitstreamError::unsupported(*reason);
    }

    BitWriter writer;
    writeHeader(writer, header, ownPps, source, still);
    BitReader reader(idrSlice.subspan(1));
    reader.skip(header.headerBits);
    copySliceData(writer, reader, ownPps.cabac);
    const NalType type = still.idr ? NalType::idrSlice : NalType::slice;
    const bitstream::Bytes nalHeader{
        static_cast<std::uint8_t>(still.nalRefIdc << 5 | static_cast<int>(type))};
    return bitstream::withEmulationPrevention(nalHeader, writer.payload());
}

} // namespace zelvra::h264
