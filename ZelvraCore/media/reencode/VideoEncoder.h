// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/media/ffmpeg/FFmpegHandles.h"
#include "ZelvraCore/media/reencode/PictureFitter.h"
#include "ZelvraCore/records/VideoCodec.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace zelvra::media {

/// Encodes a movie through libavcodec at a constant quality, at a speed that an export can wait for. Groups
/// of pictures are closed and two seconds long.
///
/// The encoder counts pictures and does not know their times, so variable rates need no extra pictures; the
/// caller keeps the times. One thread at a time; the encoder runs threads of its own. Throws MediaError.
class VideoEncoder {
public:
    struct Sample {
        std::vector<std::uint8_t> bytes;    ///< in the byte stream format
        std::int64_t presentationIndex = 0; ///< counts pictures as they went in
        std::int64_t decodeIndex = 0;       ///< one more each time; begins below 0 if pictures are reordered
        bool sync = false;
    };

    /// `frameDuration` is the usual one: what rate control goes by. See RateFactor.h for `rateFactor`.
    VideoEncoder(VideoCodec codec, const EncoderPicture& form, const CMTime& frameDuration,
                 double rateFactor);

    /// In the byte stream format.
    std::span<const std::uint8_t> parameterSets() const;

    /// Takes the next picture, which has the encoder's form.
    void send(AVFrame& picture);
    /// Call after the last picture.
    void finish();
    /// The next sample in decode order; `nullopt` if none is ready.
    std::optional<Sample> receive();

private:
    CodecContext context_;
    Packet packet_ = makePacket();
    std::int64_t count_ = 0;
};

} // namespace zelvra::media
