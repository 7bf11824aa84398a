// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

/// Colour conversion and scaling through zimg, which computes in 32-bit floats and respects where chroma was
/// sampled. Formats that it does not support are converted by libswscale first.

#include "ZelvraCore/media/ffmpeg/FFmpegHandles.h"
#include "ZelvraCore/records/ColorDescription.h"

extern "C" {
#include <libavutil/pixdesc.h>
}

namespace zelvra::media {

/// Whether every component has a plane of its own, of whole bytes in this machine's order.
bool isPlanar(const AVPixFmtDescriptor& format);

/// `frame` as planes of 8-bit R'G'B' (AV_PIX_FMT_GBRP, all with one stride) of `width` by `height` pixels.
/// Throws MediaError::unsupported.
Frame convertToRgb(const AVFrame& frame, const ColorDescription& color, int width, int height);

} // namespace zelvra::media
