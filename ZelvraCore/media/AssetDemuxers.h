// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/media/Asset.h"
#include "ZelvraCore/media/ffmpeg/Demuxer.h"

#include <memory>

/// Demuxers of an asset's video track. The asset keeps those that are not in use, so that a movie's
/// tables are parsed once and not for every grab. Any thread.
namespace zelvra::media {

/// An idle demuxer, or a new one. The asset must outlive it. Throws ZVError::noVideoTrack, MediaError.
std::unique_ptr<Demuxer> takeDemuxer(const Asset& asset);

/// Keeps the demuxer for its next use. After a failure it is destroyed instead, by whoever took it.
void giveBack(const Asset& asset, std::unique_ptr<Demuxer> demuxer);

} // namespace zelvra::media
