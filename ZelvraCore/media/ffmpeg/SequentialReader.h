// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/media/ffmpeg/Demuxer.h"
#include "ZelvraCore/media/ffmpeg/PictureDecoder.h"

#include <memory>
#include <optional>

namespace zelvra::media {

/// Returns the pictures of one video track by their presentation times, called for in ascending order.
/// Decoding begins at the sync sample from which the first one is decoded right. Pictures of a damaged stream
/// that cannot be decoded are replaced by the one before, else by the next. One thread at a time.
class SequentialReader {
public:
    explicit SequentialReader(Demuxer& demuxer) : demuxer_(demuxer) {}

    /// The picture shown at `time`, in ticks of the track. Valid until the next call. Throws
    /// MediaError::corrupt if no picture at all can be decoded.
    const AVFrame& pictureAt(std::int64_t time);

private:
    void start(std::int64_t time);
    bool decodeNext();

    Demuxer& demuxer_;
    std::unique_ptr<PictureDecoder> decoder_;
    Packet packet_ = makePacket();
    Frame current_;      ///< the last one at or before the time asked for
    Frame next_;         ///< the one after it, decoded already
    bool ended_ = false; ///< no more packets
};

} // namespace zelvra::media
