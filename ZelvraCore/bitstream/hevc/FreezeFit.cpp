// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/bitstream/hevc/FreezeFit.h"

#include "ZelvraCore/bitstream/BitstreamError.h"

namespace zelvra::hevc {

std::optional<std::string> whyNoFreezeFits(const Sps& sps) {
    if (sps.separateColourPlanes) {
        return "the video's colour planes are coded apart";
    }
    if (sps.lumaBitDepth != sps.chromaBitDepth) {
        return "the video's brightness and colour have different bit depths";
    }
    if (sps.lumaBitDepth != 8 && sps.lumaBitDepth != 10 && sps.lumaBitDepth != 12) {
        return "the video has " + std::to_string(sps.lumaBitDepth) + " bits a sample";
    }
    if (sps.vui && sps.vui->fieldSequence) {
        return "the video's pictures are fields";
    }
    return std::nullopt;
}

FreezeEncoding freezeEncodingFor(const Sps& sps) {
    if (const auto reason = whyNoFreezeFits(sps)) {
        throw bitstream::BitstreamError::unsupported(*reason);
    }
    FreezeEncoding encoding;
    encoding.codedFrame = sps.codedFrame();
    encoding.chroma = sps.chroma;
    encoding.bitDepth = sps.lumaBitDepth;
    return encoding;
}

} // namespace zelvra::hevc
