// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/media/Asset.h"
#include "ZelvraCore/media/ffmpeg/Demuxer.h"
#include "ZelvraCore/media/ffmpeg/FFmpegHandles.h"

#include <cstdint>
#include <string>

namespace zelvra::media {

/// The movie's sound track: the first enabled one, else the first. Throws MediaError::unsupported if it
/// has none.
std::uint32_t soundTrackId(const Asset& movie);

/// A decoder for the stream. Throws MediaError::unsupported if there is none, naming `name`.
CodecContext openSoundDecoder(const AVStream& stream, const std::string& name);

} // namespace zelvra::media
