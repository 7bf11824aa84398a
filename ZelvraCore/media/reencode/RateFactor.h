// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/media/ffmpeg/FFmpegHandles.h"
#include "ZelvraCore/media/reencode/PictureFitter.h"
#include "ZelvraCore/records/VideoCodec.h"

#include <span>

namespace zelvra::media {

/// A copy of the middle of a picture, large enough to show how hard it is to encode.
Frame middleOf(const AVFrame& picture);

/// The constant rate factor that an encoder needs so that pictures like `samples` keep a luma similarity of
/// 0.99. It differs much between clean and noisy pictures: the samples are encoded once, decoded and
/// compared, and the factor is adjusted using the measured slope of similarity. A usual factor if there are
/// no samples.
double rateFactorFor(VideoCodec codec, const EncoderPicture& form, const CMTime& frameDuration,
                     std::span<const Frame> samples);

} // namespace zelvra::media
