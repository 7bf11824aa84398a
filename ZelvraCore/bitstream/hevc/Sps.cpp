// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/bitstream/hevc/Sps.h"

#include "ZelvraCore/bitstream/BitReader.h"
#include "ZelvraCore/bitstream/BitstreamError.h"
#include "ZelvraCore/bitstream/VideoSignal.h"
#include "ZelvraCore/bitstream/hevc/NalType.h"
#include "ZelvraCore/bitstream/hevc/ScalingLists.h"
#include "ZelvraCore/bitstream/hevc/ShortTermRefs.h"

#include <algorithm>
#include <array>

namespace zelvra::hevc {

using bitstream::BitReader;
using bitstream::BitstreamError;

namespace {

constexpr std::uint32_t subLayerLimit = 7;
/// Above the largest level (8444 samples in version 2, 16888 later), and small enough for all arithmetic.
constexpr std::uint32_t maxSamplesAcross = 0x7FFF;

void requireKind(bitstream::ByteView nal, NalType type) {
    if (nal.size() < nalHeaderSize || nalType(nal) != type) {
        throw BitstreamError::corrupt("a parameter set of the video is of another kind");
    }
    if (layerId(nal) != 0) {
        throw BitstreamError::unsupported("the video has more than one layer");
    }
}

/// Multiview, scalable, 3D and screen content profiles.
bool isUnsupportedProfile(int profileIdc) {
    constexpr std::array profiles{6, 7, 8, 9, 10, 11};
    return std::ranges::find(profiles, profileIdc) != profiles.end();
}

ProfileTierLevel parseProfileTierLevel(BitReader& reader, int maxSubLayers) {
    ProfileTierLevel general;
    general.profileSpace = static_cast<int>(reader.bits(2));
    general.highTier = reader.flag();
    general.profileIdc = static_cast<int>(reader.bits(5));
    general.compatibilityFlags = reader.bits(32);
    general.constraintFlags = reader.longBits(48);
    general.levelIdc = static_cast<int>(reader.bits(8));
    if (maxSubLayers == 1) {
        return general;
    }
    constexpr int profileBits = 88;
    constexpr int levelBits = 8;
    std::uint64_t subLayerBits = 0;
    for (int i = 0; i < maxSubLayers - 1; ++i) {
        subLayerBits += reader.flag() ? profileBits : 0;
        subLayerBits += reader.flag() ? levelBits : 0;
    }
    reader.skip(2 * static_cast<std::uint64_t>(9 - maxSubLayers)); // reserved_zero_2bits, for each missing
                                                                   // sub-layer up to eight
    reader.skip(subLayerBits);
    return general;
}

void parseConformanceWindow(BitReader& reader, Sps& sps) {
    const bool halfWidth = sps.chroma == ChromaFormat::yuv420 || sps.chroma == ChromaFormat::yuv422;
    const bool halfHeight = sps.chroma == ChromaFormat::yuv420;
    const auto side = [&](int size, bool half) {
        return static_cast<int>(reader.ue(static_cast<std::uint32_t>(size))) * (half ? 2 : 1);
    };
    sps.conformanceWindow.left = side(sps.width, halfWidth);
    sps.conformanceWindow.right = side(sps.width, halfWidth);
    sps.conformanceWindow.top = side(sps.height, halfHeight);
    sps.conformanceWindow.bottom = side(sps.height, halfHeight);
    if (sps.conformanceWindow.left + sps.conformanceWindow.right >= sps.width ||
        sps.conformanceWindow.top + sps.conformanceWindow.bottom >= sps.height) {
        throw BitstreamError::corrupt("the video's cropping leaves nothing of the picture");
    }
}

void parseFormat(BitReader& reader, Sps& sps) {
    sps.chroma = static_cast<ChromaFormat>(reader.ue(3));
    if (sps.chroma == ChromaFormat::yuv444) {
        sps.separateColourPlanes = reader.flag();
    }
    sps.width = static_cast<int>(reader.ue(maxSamplesAcross));
    sps.height = static_cast<int>(reader.ue(maxSamplesAcross));
    if (sps.width == 0 || sps.height == 0) {
        throw BitstreamError::corrupt("the video's pictures are empty");
    }
    if (reader.flag()) {
        parseConformanceWindow(reader, sps);
    }
    sps.lumaBitDepth = static_cast<int>(8 + reader.ue(8));
    sps.chromaBitDepth = static_cast<int>(8 + reader.ue(8));
    sps.pocLsbBits = static_cast<int>(4 + reader.ue(12));
}

void parseOrdering(BitReader& reader, Sps& sps) {
    sps.orderingBegin = reader.position();
    const bool forEach = reader.flag();
    SubLayerOrdering ordering;
    for (int i = 0; i < sps.maxSubLayers; ++i) {
        if (i == 0 || forEach) {
            ordering.maxDecPicBuffering = reader.ue(15) + 1;
            ordering.maxNumReorder = reader.ue(15);
            ordering.maxLatencyIncreasePlus1 = reader.ue();
        }
        sps.ordering.push_back(ordering);
    }
    sps.orderingEnd = reader.position();
}

void parseBlocks(BitReader& reader, Sps& sps) {
    sps.log2MinCodingBlock = static_cast<int>(reader.ue(3) + 3);
    sps.log2CodingTree = sps.log2MinCodingBlock + static_cast<int>(reader.ue(3));
    for (int i = 0; i < 4; ++i) {
        reader.ue(); // transform block sizes and hierarchy depths
    }
    if (reader.flag() && reader.flag()) {
        skipScalingLists(reader);
    }
    reader.skip(1); // amp_enabled_flag
    sps.sampleAdaptiveOffset = reader.flag();
    if (reader.flag()) { // pcm_enabled_flag
        reader.skip(8);
        reader.ue();
        reader.ue();
        reader.skip(1);
    }
}

void parseReferences(BitReader& reader, Sps& sps) {
    const std::uint32_t sets = reader.ue(64);
    for (std::uint32_t i = 0; i < sets; ++i) {
        sps.shortTermRefs.push_back(parseShortTermRefs(reader, sps.shortTermRefs, false));
    }
    sps.longTermRefsPresent = reader.flag();
    if (sps.longTermRefsPresent) {
        const std::uint32_t count = reader.ue(32);
        for (std::uint32_t i = 0; i < count; ++i) {
            reader.skip(static_cast<std::uint64_t>(sps.pocLsbBits));
            sps.longTermRefUsed.push_back(reader.flag());
        }
    }
    sps.temporalMotionPrediction = reader.flag();
    reader.skip(1); // strong_intra_smoothing_enabled_flag
}

void skipSubLayerHrd(BitReader& reader, std::uint32_t cpbCount, bool subPicture) {
    for (std::uint32_t i = 0; i < cpbCount; ++i) {
        for (int k = 0; k < (subPicture ? 4 : 2); ++k) {
            reader.ue();
        }
        reader.skip(1);
    }
}

/// hrd_parameters() with the common part, clause E.2.2.
void skipHrd(BitReader& reader, int maxSubLayers) {
    const bool nal = reader.flag();
    const bool vcl = reader.flag();
    bool subPicture = false;
    if (nal || vcl) {
        subPicture = reader.flag();
        reader.skip(subPicture ? 19 + 8 + 4 + 15 : 8 + 15);
    }
    for (int i = 0; i < maxSubLayers; ++i) {
        const bool fixedGenerally = reader.flag();
        const bool fixedInSequence = fixedGenerally || reader.flag();
        bool lowDelay = false;
        if (fixedInSequence) {
            reader.ue(); // elemental_duration_in_tc_minus1
        } else {
            lowDelay = reader.flag();
        }
        const std::uint32_t cpbCount = lowDelay ? 1 : reader.ue(31) + 1;
        if (nal) {
            skipSubLayerHrd(reader, cpbCount, subPicture);
        }
        if (vcl) {
            skipSubLayerHrd(reader, cpbCount, subPicture);
        }
    }
}

void skipTiming(BitReader& reader, int maxSubLayers) {
    reader.skip(64); // units in a tick, time scale
    if (reader.flag()) {
        reader.ue(); // vui_num_ticks_poc_diff_one_minus1
    }
    if (reader.flag()) {
        skipHrd(reader, maxSubLayers);
    }
}

Vui parseVui(BitReader& reader, int maxSubLayers) {
    Vui vui;
    vui.fullRange = bitstream::parseFullRange(reader);
    reader.skip(1); // neutral_chroma_indication_flag
    vui.fieldSequence = reader.flag();
    reader.skip(1);      // frame_field_info_present_flag
    if (reader.flag()) { // default display window
        for (int i = 0; i < 4; ++i) {
            reader.ue();
        }
    }
    if (reader.flag()) {
        skipTiming(reader, maxSubLayers);
    }
    if (reader.flag()) {
        reader.skip(3);
        for (int i = 0; i < 5; ++i) {
            reader.ue();
        }
    }
    return vui;
}

void refuseOtherExtensions(BitReader& reader) {
    if (!reader.flag()) {
        return;
    }
    reader.skip(1); // sps_range_extension_flag
    if (reader.bits(3) != 0) {
        throw BitstreamError::unsupported("the video uses extensions of HEVC that are not handled");
    }
}

} // namespace

Vps parseVps(bitstream::ByteView nal) {
    requireKind(nal, NalType::vps);
    BitReader reader(nal.subspan(nalHeaderSize));
    Vps vps;
    vps.nal.assign(nal.begin(), nal.end());
    vps.id = static_cast<int>(reader.bits(4));
    reader.skip(2); // base layer flags
    vps.maxLayers = static_cast<int>(reader.bits(6) + 1);
    vps.maxSubLayers = static_cast<int>(reader.bits(3) + 1);
    return vps;
}

Sps parseSps(bitstream::ByteView nal) {
    requireKind(nal, NalType::sps);
    BitReader reader(nal.subspan(nalHeaderSize));
    Sps sps;
    sps.nal.assign(nal.begin(), nal.end());
    sps.vpsId = static_cast<int>(reader.bits(4));
    const std::uint32_t subLayers = reader.bits(3) + 1;
    if (subLayers > subLayerLimit) {
        throw BitstreamError::corrupt("the video has too many temporal layers");
    }
    sps.maxSubLayers = static_cast<int>(subLayers);
    sps.temporalIdNesting = reader.flag();
    sps.profileTierLevel = parseProfileTierLevel(reader, sps.maxSubLayers);
    if (isUnsupportedProfile(sps.profileTierLevel.profileIdc)) {
        throw BitstreamError::unsupported("the video is of a profile of HEVC that is not handled");
    }
    sps.idBegin = reader.position();
    sps.id = static_cast<int>(reader.ue(15));
    sps.idEnd = reader.position();
    parseFormat(reader, sps);
    parseOrdering(reader, sps);
    parseBlocks(reader, sps);
    parseReferences(reader, sps);
    if (reader.flag()) {
        sps.vui = parseVui(reader, sps.maxSubLayers);
    }
    refuseOtherExtensions(reader);
    return sps;
}

int Sps::pictureSizeInTreeBlocks() const {
    const auto across = [&](int samples) { return (samples + (1 << log2CodingTree) - 1) >> log2CodingTree; };
    return across(width) * across(height);
}

FreezeEncoding::CodedFrame Sps::codedFrame() const {
    FreezeEncoding::CodedFrame frame;
    frame.width = width;
    frame.height = height;
    frame.cropLeft = conformanceWindow.left;
    frame.cropTop = conformanceWindow.top;
    frame.cropRight = conformanceWindow.right;
    frame.cropBottom = conformanceWindow.bottom;
    return frame;
}

} // namespace zelvra::hevc
