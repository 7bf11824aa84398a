// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/media/sound/SoundRenderer.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace zelvra::media {

/// One coded packet. Times are frames at SoundEncoder::sampleRate(), 0 = the first packet's start.
struct SoundPacket {
    std::vector<std::uint8_t> bytes;
    std::int64_t decodeTime = 0;
    std::int64_t duration = 0;
};

/// Encodes the sound of a finished movie as AAC-LC (ISO/IEC 14496-3), 128 kb/s a channel where the rate of
/// the samples allows so much.
///
/// The source's rate is kept if AAC has it, otherwise the next one that AAC has is used. Up to six
/// channels are kept (mono, stereo, 3.0, 4.0, 5.0, 5.1); more are mixed down to 5.1, which every player has.
///
/// Pulls from its renderer as packets are asked for. Any thread, one at a time.
class SoundEncoder {
public:
    /// Takes over `sound`, from which nothing has been read yet. Throws MediaError::unsupported where the
    /// encoder does not take the sound's format.
    explicit SoundEncoder(SoundRenderer sound);
    SoundEncoder(SoundEncoder&&) noexcept;
    SoundEncoder& operator=(SoundEncoder&&) noexcept;
    ~SoundEncoder();

    int sampleRate() const;
    int channels() const;
    /// AudioSpecificConfig, ISO/IEC 14496-3 clause 1.6.2.1; what FFmpeg calls extradata.
    const std::vector<std::uint8_t>& audioSpecificConfig() const;
    /// Bits a second that the encoder aims at.
    std::int64_t bitRate() const;
    /// Frames a packet holds.
    int packetFrames() const;
    /// Frames before the sound's first one that a player must hide: an edit's media time.
    std::int64_t priming() const;
    /// Frames of sound after the priming: an edit's duration.
    std::int64_t totalFrames() const;

    /// The next packet; `nullopt` after the last. Together the packets last at least `priming() +
    /// totalFrames()`. Throws as SoundRenderer::read does.
    std::optional<SoundPacket> next();

private:
    class Implementation;
    std::unique_ptr<Implementation> implementation_;
};

} // namespace zelvra::media
