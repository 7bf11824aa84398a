// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/media/Image.h"
#include "ZelvraCore/records/CMTime.h"
#include "ZelvraCore/records/FreezeEncoding.h"
#include "ZelvraCore/records/VideoCodec.h"

#include <filesystem>
#include <stop_token>

namespace zelvra {

/// Writes a QuickTime movie of one video track without sound in which `image` is shown for `totalDuration`,
/// frame after frame: freezeFrameCount(totalDuration, frameDuration) frames, each exactly `frameDuration`
/// long, the first a sync sample, the others repeats that cost next to nothing. The movie's duration is the
/// frames' sum. A file at `output` is replaced.
///
/// Where the image came from a decoder, the clip has the decoder's size, chroma format, bit depth, colour
/// tags and pixel aspect as far as the encoder offers them, and its samples wherever nothing was drawn.
/// Outside what was drawn luma is within 42 dB (PSNR) and the mean of each plane within half a code value of
/// 8 bits; within that the clip is as small as it can be. Sizes that the chroma format does not divide are
/// rounded up. `encoding` goes before all that: it says what a source's own stream demands.
///
/// Any thread; several may run at once. Throws ZVError::writerFailed for times that are not numbers or a
/// frame duration that is not positive, and with the cause where encoding or writing fails;
/// ZVError::contextCreationFailed where the picture cannot be converted; MediaError `unwritable` where an
/// existing file cannot be deleted or the new one not created, `cancelled` soon after `stop` asks for it. A
/// clip that failed leaves no file behind.
void encodeFreezeClip(const Image& image, const std::filesystem::path& output, const CMTime& frameDuration,
                      const CMTime& totalDuration, VideoCodec codec, const FreezeEncoding& encoding = {},
                      const std::stop_token& stop = {});

} // namespace zelvra
