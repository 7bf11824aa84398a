// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/media/AssetDemuxers.h"
#include "ZelvraCore/media/ffmpeg/PictureDecoder.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace zelvra::media {

/// The pictures of a movie in presentation order, decoded from a place on, as far as they are read. One
/// thread at a time. Errors are those of Demuxer and PictureDecoder.
class PictureSequence {
public:
    /// Whether a picture that appears at `ticks` is needed. Others may be left out.
    using IsNeeded = std::function<bool(std::int64_t ticks)>;
    using Receiver = std::function<void(std::int64_t ticks, const AVFrame& frame)>;

    /// Where decoding started.
    struct Start {
        std::int64_t decodeTime = 0;
        std::int64_t time = 0; ///< when the sync sample's picture appears
        bool clean = false;    ///< see PictureDecoder::startsClean
    };

    /// `asset` outlives this. Throws ZVError::noVideoTrack.
    explicit PictureSequence(const Asset& asset);
    PictureSequence(const PictureSequence&) = delete;
    PictureSequence& operator=(const PictureSequence&) = delete;
    ~PictureSequence();

    AVRational timeBase() const { return demuxer_->timeBase(); }

    /// Continues from the last sync sample whose decode time is at or before `ticks`.
    void start(std::int64_t ticks);
    /// nullopt before the first packet.
    const std::optional<Start>& startedAt() const { return start_; }

    /// Decodes one packet and hands over what the decoder then has ready. Returns the packet's decode time,
    /// nullopt at the end of the movie.
    std::optional<std::int64_t> advance(const IsNeeded& isNeeded, const Receiver& receive);
    /// Hands over all pictures that the decoder still has. `start` must follow.
    void drain(bool recovered, const Receiver& receive);

private:
    void handOver(const Receiver& receive);

    const Asset& asset_;
    std::unique_ptr<Demuxer> demuxer_;
    PictureDecoder decoder_;
    std::optional<Start> start_;
    Packet packet_ = makePacket();
    Frame frame_ = makeFrame();
};

} // namespace zelvra::media
