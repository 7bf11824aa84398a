// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/bitstream/h264/Sps.h"

#include "ZelvraCore/bitstream/BitReader.h"
#include "ZelvraCore/bitstream/BitstreamError.h"
#include "ZelvraCore/bitstream/VideoSignal.h"
#include "ZelvraCore/bitstream/h264/NalType.h"
#include "ZelvraCore/bitstream/h264/ScalingLists.h"

#include <algorithm>
#include <array>

namespace zelvra::h264 {

using bitstream::BitReader;
using bitstream::BitstreamError;

namespace {

/// Far above the largest level (1055 macroblocks), and small enough for all arithmetic on sizes.
constexpr std::uint32_t maxMacroblocksAcross = 4096;

bool hasChromaFields(int profileIdc) {
    constexpr std::array profiles{100, 110, 122, 244, 44, 83, 86, 118, 128, 138, 139, 134, 135};
    return std::ranges::find(profiles, profileIdc) != profiles.end();
}

void parseChroma(BitReader& reader, Sps& sps) {
    sps.chroma = static_cast<ChromaFormat>(reader.ue(3));
    if (sps.chroma == ChromaFormat::yuv444) {
        sps.separateColourPlanes = reader.flag();
    }
    sps.lumaBitDepth = static_cast<int>(8 + reader.ue(6));
    sps.chromaBitDepth = static_cast<int>(8 + reader.ue(6));
    sps.losslessAtQpZero = reader.flag();
    sps.scalingMatrixPresent = reader.flag();
    if (sps.scalingMatrixPresent) {
        skipScalingLists(reader, scalingListCount(sps.chroma == ChromaFormat::yuv444, true));
    }
}

void parsePictureOrder(BitReader& reader, Sps& sps) {
    sps.frameNumBits = static_cast<int>(reader.ue(12) + 4);
    sps.pocType = static_cast<int>(reader.ue(2));
    if (sps.pocType == 0) {
        sps.pocLsbBits = static_cast<int>(reader.ue(12) + 4);
    } else if (sps.pocType == 1) {
        sps.deltaPicOrderAlwaysZero = reader.flag();
        sps.offsetForNonRefPic = reader.se();
        sps.offsetForTopToBottomField = reader.se();
        const std::uint32_t count = reader.ue(255);
        for (std::uint32_t i = 0; i < count; ++i) {
            sps.offsetsForRefFrame.push_back(reader.se());
        }
    }
}

struct CropUnit {
    int x;
    int y;
};

CropUnit cropUnit(const Sps& sps) {
    const bool halfWidth = sps.chroma == ChromaFormat::yuv420 || sps.chroma == ChromaFormat::yuv422;
    const bool halfHeight = sps.chroma == ChromaFormat::yuv420;
    return {halfWidth ? 2 : 1, (halfHeight ? 2 : 1) * (sps.frameMbsOnly ? 1 : 2)};
}

void parseFrame(BitReader& reader, Sps& sps) {
    sps.widthInMacroblocks = static_cast<int>(reader.ue(maxMacroblocksAcross - 1) + 1);
    sps.heightInMapUnits = static_cast<int>(reader.ue(maxMacroblocksAcross - 1) + 1);
    sps.frameMbsOnly = reader.flag();
    if (!sps.frameMbsOnly) {
        sps.mbAdaptiveFrameField = reader.flag();
    }
    sps.direct8x8Inference = reader.flag();
    if (!reader.flag()) {
        return;
    }
    const auto width = static_cast<std::uint32_t>(sps.codedWidth());
    const auto height = static_cast<std::uint32_t>(sps.codedHeight());
    sps.crop.left = reader.ue(width);
    sps.crop.right = reader.ue(width);
    sps.crop.top = reader.ue(height);
    sps.crop.bottom = reader.ue(height);
    const auto unit = cropUnit(sps);
    if ((sps.crop.left + sps.crop.right) * static_cast<std::uint32_t>(unit.x) >= width ||
        (sps.crop.top + sps.crop.bottom) * static_cast<std::uint32_t>(unit.y) >= height) {
        throw BitstreamError::corrupt("the video's cropping leaves nothing of the picture");
    }
}

void skipHrd(BitReader& reader) {
    const std::uint32_t count = reader.ue(31) + 1;
    reader.skip(8);
    for (std::uint32_t i = 0; i < count; ++i) {
        reader.ue();
        reader.ue();
        reader.skip(1);
    }
    reader.skip(20);
}

/// Reads bitstream_restriction, whose last field is max_dec_frame_buffering.
int parseMaxDecFrameBuffering(BitReader& reader) {
    reader.skip(1);
    for (int i = 0; i < 5; ++i) {
        reader.ue();
    }
    return static_cast<int>(reader.ue(16));
}

Vui parseVui(BitReader& reader) {
    Vui vui;
    vui.fullRange = bitstream::parseFullRange(reader);
    if (reader.flag()) {
        reader.skip(65); // num_units_in_tick, time_scale, fixed_frame_rate_flag
    }
    bool hrdPresent = false;
    for (int i = 0; i < 2; ++i) {
        if (reader.flag()) {
            skipHrd(reader);
            hrdPresent = true;
        }
    }
    if (hrdPresent) {
        reader.skip(1); // low_delay_hrd_flag
    }
    reader.skip(1); // pic_struct_present_flag
    if (reader.flag()) {
        vui.maxDecFrameBuffering = parseMaxDecFrameBuffering(reader);
    }
    return vui;
}

} // namespace

Sps parseSps(bitstream::ByteView nal) {
    if (nal.empty() || nalType(nal) != NalType::sps) {
        throw BitstreamError::corrupt("the video's sequence parameter set is of another kind");
    }
    BitReader reader(nal.subspan(1));
    Sps sps;
    sps.nal.assign(nal.begin(), nal.end());
    sps.profileIdc = static_cast<int>(reader.bits(8));
    sps.constraintFlags = static_cast<std::uint8_t>(reader.bits(8));
    sps.levelIdc = static_cast<int>(reader.bits(8));
    sps.id = static_cast<int>(reader.ue(31));
    if (hasChromaFields(sps.profileIdc)) {
        parseChroma(reader, sps);
    }
    parsePictureOrder(reader, sps);
    sps.maxNumRefFrames = static_cast<int>(reader.ue(16));
    sps.gapsInFrameNumAllowed = reader.flag();
    parseFrame(reader, sps);
    if (reader.flag()) {
        sps.vui = parseVui(reader);
    }
    return sps;
}

FreezeEncoding::CodedFrame Sps::codedFrame() const {
    const CropUnit unit = cropUnit(*this);
    FreezeEncoding::CodedFrame frame;
    frame.width = codedWidth();
    frame.height = codedHeight();
    frame.cropLeft = static_cast<int>(crop.left) * unit.x;
    frame.cropRight = static_cast<int>(crop.right) * unit.x;
    frame.cropTop = static_cast<int>(crop.top) * unit.y;
    frame.cropBottom = static_cast<int>(crop.bottom) * unit.y;
    return frame;
}

bool Sps::isLevel1b() const {
    constexpr std::uint8_t constraintSet3 = 0x10;
    const bool writtenAs11 = profileIdc == 66 || profileIdc == 77 || profileIdc == 88;
    return levelIdc == 9 || (writtenAs11 && levelIdc == 11 && (constraintFlags & constraintSet3) != 0);
}

} // namespace zelvra::h264
