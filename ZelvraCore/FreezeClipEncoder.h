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
/// long, the first a sync sample, the others repeats of a few bytes each. The movie's duration is the
/// frames' sum. A file at `output` is replaced.
///
/// If the image came from a decoder, the clip has the decoder's size, chroma format, bit depth, colour tags
/// and pixel aspect as far as the encoder offers them, and the decoder's samples wherever nothing was drawn.
/// Outside the drawing luma keeps a PSNR of 42 dB and the mean of each plane stays within half a code value
/// of 8 bits; within these limits the clip is as small as possible. Sizes that the chroma format does not
/// divide are rounded up. `encoding` has priority: it is what a source's own stream demands.
///
/// Any thread; several may run at once. Throws ZVError::writerFailed for times that are not numbers or a
/// frame duration that is not positive, and with the cause if encoding or writing fails;
/// ZVError::contextCreationFailed if the picture cannot be converted; MediaError `unwritable` if an existing
/// file cannot be deleted or the new one not created, `cancelled` soon after `stop` asks for it. A failed
/// clip leaves no file.
void encodeFreezeClip(const Image& image, const std::filesystem::path& output, const CMTime& frameDuration,
                      const CMTime& totalDuration, VideoCodec codec, const FreezeEncoding& encoding = {},
                      const std::stop_token& stop = {});

} // namespace zelvra
