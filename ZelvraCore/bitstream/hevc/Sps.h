// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/bitstream/Bytes.h"
#include "ZelvraCore/records/ChromaFormat.h"
#include "ZelvraCore/records/FreezeEncoding.h"

#include <optional>

namespace zelvra::hevc {

/// The general part of profile_tier_level() (ITU-T H.265 clause 7.3.3).
struct ProfileTierLevel {
    int profileSpace = 0;
    bool highTier = false;
    int profileIdc = 0;
    std::uint32_t compatibilityFlags = 0; ///< general_profile_compatibility_flag[0] is the highest bit
    std::uint64_t constraintFlags = 0;    ///< the 48 bits from general_progressive_source_flag on
    int levelIdc = 0;
};

/// A short-term reference picture set (clause 7.4.8): distances in picture order, the negative ones first,
/// each half nearest first.
struct ShortTermRefs {
    struct Entry {
        std::int32_t deltaPoc = 0;
        bool used = false; ///< by the current picture, not only by later ones
    };
    std::vector<Entry> entries;
};

/// The requirements of one temporal sub-layer on the decoded picture buffer.
struct SubLayerOrdering {
    std::uint32_t maxDecPicBuffering = 1; ///< pictures, the current one included
    std::uint32_t maxNumReorder = 0;
    std::uint32_t maxLatencyIncreasePlus1 = 0; ///< 0 = no limit
};

/// The part of the video usability information (annex E) that decides whether and how freezes fit.
struct Vui {
    bool fullRange = false;
    bool fieldSequence = false; ///< field_seq_flag: pictures are fields
};

/// A video parameter set (clause 7.3.2.1). Only its ids and layers are needed.
struct Vps {
    bitstream::Bytes nal;
    int id = 0;
    int maxLayers = 1;
    int maxSubLayers = 1;
};

/// A sequence parameter set (clause 7.3.2.2). Scaling lists are skipped, not kept. Sets of other layers and
/// of the multilayer, 3D and screen content extensions are unsupported.
struct Sps {
    struct Window { ///< in luma samples
        int left = 0;
        int right = 0;
        int top = 0;
        int bottom = 0;
    };

    bitstream::Bytes nal; ///< as stored, header included
    int vpsId = 0;
    int maxSubLayers = 1;
    bool temporalIdNesting = true;
    ProfileTierLevel profileTierLevel;
    int id = 0;
    ChromaFormat chroma = ChromaFormat::yuv420;
    bool separateColourPlanes = false;
    int width = 0; ///< coded, in luma samples
    int height = 0;
    Window conformanceWindow;
    int lumaBitDepth = 8;
    int chromaBitDepth = 8;
    int pocLsbBits = 4;
    std::vector<SubLayerOrdering> ordering; ///< one for each sub-layer, lowest first
    int log2MinCodingBlock = 3;
    int log2CodingTree = 4;
    bool sampleAdaptiveOffset = false;
    std::vector<ShortTermRefs> shortTermRefs;
    bool longTermRefsPresent = false;
    std::vector<bool> longTermRefUsed; ///< one for each candidate in the set
    bool temporalMotionPrediction = false;
    std::optional<Vui> vui;

    std::uint64_t idBegin = 0; ///< payload bits around sps_seq_parameter_set_id
    std::uint64_t idEnd = 0;
    std::uint64_t orderingBegin = 0; ///< payload bits around sps_sub_layer_ordering_info and the flag before
                                     ///< it
    std::uint64_t orderingEnd = 0;

    /// ChromaArrayType: monochrome if the colour planes are coded separately.
    bool hasChromaArrays() const { return !separateColourPlanes && chroma != ChromaFormat::monochrome; }
    int pictureSizeInTreeBlocks() const;
    FreezeEncoding::CodedFrame codedFrame() const;
};

/// Throw BitstreamError.
Vps parseVps(bitstream::ByteView nal);
Sps parseSps(bitstream::ByteView nal);

} // namespace zelvra::hevc
