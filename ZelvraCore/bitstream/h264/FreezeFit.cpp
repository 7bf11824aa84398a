// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/bitstream/h264/FreezeFit.h"

#include "ZelvraCore/bitstream/BitstreamError.h"
#include "ZelvraCore/bitstream/h264/Levels.h"

namespace zelvra::h264 {

namespace {

constexpr int baseline = 66;
constexpr int mainProfile = 77;
constexpr int extended = 88;
constexpr int high = 100;
constexpr int high10 = 110;
constexpr int high422 = 122;
constexpr int high444 = 244;
constexpr int cavlc444 = 44;

/// The profile to encode with so that every decoder of `profileIdc` can read the slices. Extended has no
/// CABAC, but with CAVLC it has everything that Main has. CAVLC 4:4:4 Intra is High 4:4:4 without CABAC.
std::optional<int> encoderProfile(int profileIdc) {
    switch (profileIdc) {
    case baseline:
    case mainProfile:
    case high:
    case high10:
    case high422:
    case high444: return profileIdc;
    case extended: return mainProfile;
    case cavlc444: return high444;
    default: return std::nullopt;
    }
}

/// cpbBrVclFactor of table A-2, in bits.
int bitsPerUnit(int profileIdc) {
    switch (profileIdc) {
    case high: return 1250;
    case high10: return 3000;
    case high422:
    case high444:
    case cavlc444: return 4000;
    default: return 1000;
    }
}

} // namespace

std::optional<std::string> whyNoFreezeFits(const Sps& sps) {
    if (sps.separateColourPlanes) {
        return "the video's colour planes are coded apart";
    }
    if (sps.lumaBitDepth != sps.chromaBitDepth) {
        return "the video's brightness and colour have different bit depths";
    }
    if (sps.lumaBitDepth != 8 && sps.lumaBitDepth != 10) {
        return "the video has " + std::to_string(sps.lumaBitDepth) + " bits a sample";
    }
    if (!encoderProfile(sps.profileIdc)) {
        return "the video is of an unusual profile";
    }
    return std::nullopt;
}

FreezeEncoding freezeEncodingFor(const Sps& sps, const Pps& pps) {
    if (const auto reason = whyNoFreezeFits(sps)) {
        throw bitstream::BitstreamError::unsupported(*reason);
    }
    constexpr int level1bForEncoders = 9;
    FreezeEncoding encoding;
    encoding.codedFrame = sps.codedFrame();
    encoding.chroma = sps.chroma;
    encoding.bitDepth = sps.lumaBitDepth;
    encoding.profileIdc = encoderProfile(sps.profileIdc);
    encoding.levelIdc = sps.isLevel1b() ? level1bForEncoders : sps.levelIdc;
    encoding.cabac = pps.cabac;
    encoding.transform8x8 = pps.transform8x8 && sps.profileIdc >= high;
    encoding.frameMbsOnly = sps.frameMbsOnly;
    encoding.mbAdaptiveFields = sps.mbAdaptiveFrameField;
    encoding.leastQp = sps.losslessAtQpZero ? 1 : 0;
    encoding.mostFirstBytes = maxStillBytes(sps);
    return encoding;
}

std::uint64_t maxStillBytes(const Sps& sps) {
    constexpr std::uint64_t stillsInBuffer = 12;
    const auto units = static_cast<std::uint64_t>(levelLimits(sps).maxCodedPictureBuffer);
    return units * static_cast<std::uint64_t>(bitsPerUnit(sps.profileIdc)) / 8 / stillsInBuffer;
}

} // namespace zelvra::h264
