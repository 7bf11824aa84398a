// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

/// What FFmpeg's libraries have replaced between the versions that we build with (5.1 and later), under one
/// name. The only place that asks for a version.

#include "ZelvraCore/media/ffmpeg/FFmpegHandles.h"

#include <span>

namespace zelvra::media {

/// What the container says about a stream beside its parameters, such as a display matrix; empty if it says
/// nothing of that type. The bytes are the stream's own.
std::span<const std::uint8_t> sideData(const AVStream& stream, AVPacketSideDataType type);

/// The sample formats that an encoder takes, the preferred one first; empty if it does not list any.
std::span<const AVSampleFormat> sampleFormats(const AVCodec& encoder);

} // namespace zelvra::media
