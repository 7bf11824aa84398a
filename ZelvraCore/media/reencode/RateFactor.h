// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

/// How coarsely an export may be encoded. Internal to this folder.

#include "ZelvraCore/media/ffmpeg/FFmpegHandles.h"
#include "ZelvraCore/media/reencode/PictureFitter.h"
#include "ZelvraCore/records/VideoCodec.h"

#include <span>

namespace zelvra::ffmpeg {

/// A copy of the middle of a picture, large enough to tell how hard it is to encode.
Frame middleOf(const AVFrame& picture);

/// The constant rate factor that an encoder needs so that pictures like `samples` keep a luma similarity of
/// 0.99. It differs much between clean and noisy pictures: the samples are encoded once, decoded, compared,
/// and the factor is moved by how similarity falls with it by experience. A usual one where there are no
/// samples.
double rateFactorFor(VideoCodec codec, const EncoderPicture& form, const CMTime& frameDuration,
                     std::span<const Frame> samples);

} // namespace zelvra::ffmpeg
