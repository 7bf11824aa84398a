// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

/// What an Asset keeps for the media layer. Internal to this folder.

#include "ZelvraCore/media/Asset.h"
#include "ZelvraCore/media/ffmpeg/Demuxer.h"

#include <memory>
#include <mutex>
#include <vector>

namespace zelvra {

namespace ffmpeg {

/// Demuxers that are not in use, so that a movie's tables are parsed once and not for every grab. Any thread.
class DemuxerPool {
public:
    /// An idle demuxer, or a new one. The caller gives it back when all went well; after a failure it is
    /// simply destroyed.
    std::unique_ptr<Demuxer> take(const files::ByteSource& bytes, std::uint32_t trackId);
    void giveBack(std::unique_ptr<Demuxer> demuxer);
    void clear();

private:
    std::mutex mutex_;
    std::vector<std::unique_ptr<Demuxer>> idle_;
};

} // namespace ffmpeg

struct Asset::Internals {
    explicit Internals(const std::filesystem::path& file) : path(file), bytes(file) {}

    std::filesystem::path path;
    files::FileByteSource bytes;

    /// Each is made on first use; a failure leaves its flag unset, so that the next use fails likewise.
    std::once_flag movieOnce;
    isobmff::Movie movie;
    std::once_flag formatOnce;
    VideoFormat format;
    std::once_flag framesOnce;
    FrameIndex frames;
    std::once_flag durationOnce;
    CMTime duration;

    ffmpeg::DemuxerPool demuxers; ///< of the video track; last, as they read `bytes`
};

namespace ffmpeg {

/// A demuxer of the asset's video track. Throws ZVError::noVideoTrack, MediaError.
std::unique_ptr<Demuxer> takeDemuxer(const Asset& asset);

} // namespace ffmpeg

} // namespace zelvra
