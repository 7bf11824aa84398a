// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/media/Asset.h"
#include "ZelvraCore/media/ffmpeg/Demuxer.h"
#include "ZelvraCore/media/ffmpeg/FFmpegHandles.h"
#include "ZelvraCore/media/sound/SoundRenderer.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace zelvra::media {

/// Any stretch of a movie's first sound track as interleaved float samples, addressed by frame on the movie's
/// presentation timeline. Used by SoundRenderer.
///
/// Reading on continues decoding. Reading elsewhere seeks, and decodes enough before the place that the
/// decoder has settled. One thread at a time.
class SoundReader {
public:
    /// Throws as SoundRenderer's constructor does.
    explicit SoundReader(Asset movie);

    const SoundFormat& format() const { return format_; }

    /// Fills `samples` (whole frames) with the sound from `firstFrame` on; silence if the track has none.
    void read(std::int64_t firstFrame, std::span<float> samples);

private:
    /// Decoded frames in a row, at their place.
    struct Block {
        std::int64_t start = 0;
        std::vector<float> samples;
    };

    std::int64_t frameCount(std::span<const float> samples) const {
        return static_cast<std::int64_t>(samples.size()) / format_.channels;
    }
    std::int64_t blockEnd() const { return block_.start + frameCount(block_.samples); }
    std::int64_t frameOfTicks(std::int64_t ticks) const;
    void seek(std::int64_t firstFrame);
    bool decodeBlock();
    bool receiveFrame();
    void sendPacket();
    void findFormat();
    void takeFrame();
    std::int64_t startOfDecodedFrame() const;
    std::size_t editAt(std::int64_t frame) const;
    void cutAtEditEnd();
    void convertFrame();
    void prepareConverter();

    Asset movie_;
    std::string cannotRead_; ///< how its errors begin
    Demuxer demuxer_;
    CodecContext decoder_;
    Resampler converter_;
    Packet packet_ = makePacket();
    Frame frame_ = makeFrame();
    SoundFormat format_;
    /// The track's edits, in frames.
    struct Edit {
        std::int64_t start = 0;
        std::int64_t end = 0;
    };
    std::vector<Edit> edits_;
    /// What `converter_` was made for.
    int inputRate_ = 0;
    int inputChannels_ = 0;
    int inputSampleFormat_ = AV_SAMPLE_FMT_NONE;

    Block block_;
    std::int64_t position_ = 0;                 ///< where the last read ended
    std::optional<std::int64_t> expectedStart_; ///< where the next decoded frame follows on
    bool inputEnded_ = false;
};

} // namespace zelvra::media
