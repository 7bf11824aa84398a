// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/media/sound/SoundEncoder.h"

#include "ZelvraCore/media/ffmpeg/FFmpegHandles.h"

#include <algorithm>
#include <array>
#include <bit>

extern "C" {
#include <libavutil/channel_layout.h>
#include <libavutil/mathematics.h>
}

namespace zelvra::media {

namespace {

constexpr std::int64_t bitsPerChannel = 128'000;
/// The bit reservoir's bound, ISO/IEC 14496-3 clause 4.5.3.2.
constexpr std::int64_t mostBitsPerChannelAndPacket = 6144;
constexpr std::array aacRates{7350,  8000,  11025, 12000, 16000, 22050, 24000,
                              32000, 44100, 48000, 64000, 88200, 96000};
/// Channel configurations 1 to 6 of ISO/IEC 14496-3, table 1.19.
constexpr std::array<std::uint64_t, 6> aacLayouts{AV_CH_LAYOUT_MONO,         AV_CH_LAYOUT_STEREO,
                                                  AV_CH_LAYOUT_SURROUND,     AV_CH_LAYOUT_4POINT0,
                                                  AV_CH_LAYOUT_5POINT0_BACK, AV_CH_LAYOUT_5POINT1_BACK};

/// Rates beyond AAC's are halved first, so that a multiple of 44.1 kHz stays one.
int encodedRate(int sourceRate) {
    while (sourceRate > aacRates.back()) {
        sourceRate = (sourceRate + 1) / 2;
    }
    return *std::lower_bound(aacRates.begin(), aacRates.end(), sourceRate);
}

/// AAC has one pair of surrounds and does not state whether it is at the side or at the back.
std::uint64_t surroundsAtTheBack(std::uint64_t speakers) {
    constexpr std::uint64_t side = AV_CH_SIDE_LEFT | AV_CH_SIDE_RIGHT;
    constexpr std::uint64_t back = AV_CH_BACK_LEFT | AV_CH_BACK_RIGHT;
    return (speakers & side) == side && (speakers & back) == 0 ? (speakers & ~side) | back : speakers;
}

/// Where the sound's channels come from and go to. Equal: no channel is mixed into another.
struct ChannelMapping {
    std::uint64_t source = 0;
    std::uint64_t encoded = 0;
};

ChannelMapping channelMapping(const SoundFormat& format) {
    const auto count = static_cast<std::size_t>(format.channels);
    if (count <= 2) {
        return {aacLayouts[count - 1], aacLayouts[count - 1]};
    }
    const std::uint64_t speakers = surroundsAtTheBack(format.speakers);
    const bool known = speakers != 0 && std::popcount(speakers) == format.channels;
    if (known) {
        for (const std::uint64_t layout : aacLayouts) {
            if ((speakers & ~layout) == 0) {
                return {speakers, layout};
            }
        }
    }
    if (count <= aacLayouts.size()) {
        return {aacLayouts[count - 1], aacLayouts[count - 1]};
    }
    AVChannelLayout usual{};
    av_channel_layout_default(&usual, format.channels);
    return {known ? speakers : usual.u.mask, aacLayouts.back()};
}

AVChannelLayout layoutOf(std::uint64_t speakers, const std::string& what) {
    AVChannelLayout layout{};
    throwOnError(av_channel_layout_from_mask(&layout, speakers), what, MediaError::Cause::unsupported);
    return layout;
}

std::int64_t bitRateFor(const AVChannelLayout& layout, int sampleRate, int packetFrames) {
    const bool lowFrequencies = av_channel_layout_index_from_channel(&layout, AV_CHAN_LOW_FREQUENCY) >= 0;
    const std::int64_t fullChannels = layout.nb_channels - (lowFrequencies ? 1 : 0);
    return fullChannels * std::min(bitsPerChannel, mostBitsPerChannelAndPacket * sampleRate / packetFrames);
}

const std::string cannotEncode = "cannot encode the sound as AAC";
constexpr int aacPacketFrames = 1024;
constexpr int framesPerPull = 4096;

} // namespace

class SoundEncoder::Implementation {
public:
    explicit Implementation(SoundRenderer sound)
        : sound_(std::move(sound)),
          pulled_(static_cast<std::size_t>(framesPerPull * sound_.format().channels)) {
        const SoundFormat& source = sound_.format();
        const ChannelMapping mapping = channelMapping(source);
        const AVChannelLayout sourceLayout = layoutOf(mapping.source, cannotEncode);
        const AVChannelLayout encodedLayout = layoutOf(mapping.encoded, cannotEncode);
        openEncoder(encodedRate(source.sampleRate), encodedLayout);
        openConverter(source.sampleRate, sourceLayout);
        waiting_ = owned<AudioFifo>(
            av_audio_fifo_alloc(encoder_->sample_fmt, encodedLayout.nb_channels, framesPerPull));
        totalFrames_ = av_rescale(sound_.totalFrames(), encoder_->sample_rate, source.sampleRate);
        configuration_.assign(encoder_->extradata, encoder_->extradata + encoder_->extradata_size);
    }

    int sampleRate() const { return encoder_->sample_rate; }
    int channels() const { return encoder_->ch_layout.nb_channels; }
    const std::vector<std::uint8_t>& configuration() const { return configuration_; }
    std::int64_t bitRate() const { return encoder_->bit_rate; }
    int packetFrames() const { return encoder_->frame_size; }
    std::int64_t priming() const { return encoder_->initial_padding; }
    std::int64_t totalFrames() const { return totalFrames_; }

    std::optional<SoundPacket> next() {
        for (;;) {
            const int code = avcodec_receive_packet(encoder_.get(), packet_.get());
            if (code == AVERROR_EOF) {
                return std::nullopt;
            }
            if (code >= 0) {
                return takePacket();
            }
            if (code != AVERROR(EAGAIN)) {
                throwOnError(code, cannotEncode, MediaError::Cause::unsupported);
            }
            feedEncoder();
        }
    }

private:
    void openEncoder(int sampleRate, const AVChannelLayout& layout) {
        const AVCodec* codec = avcodec_find_encoder(AV_CODEC_ID_AAC);
        if (codec == nullptr) {
            throw MediaError(MediaError::Cause::unsupported, "there is no AAC encoder");
        }
        encoder_ = owned<CodecContext>(avcodec_alloc_context3(codec));
        encoder_->sample_fmt = AV_SAMPLE_FMT_FLTP;
        encoder_->sample_rate = sampleRate;
        encoder_->time_base = {1, sampleRate};
        encoder_->ch_layout = layout;
        encoder_->bit_rate = bitRateFor(layout, sampleRate, aacPacketFrames);
        encoder_->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
        throwOnError(avcodec_open2(encoder_.get(), codec, nullptr), cannotEncode,
                     MediaError::Cause::unsupported);
    }

    void openConverter(int sourceRate, AVChannelLayout sourceLayout) {
        SwrContext* converter = nullptr;
        throwOnError(swr_alloc_set_opts2(&converter, &encoder_->ch_layout, encoder_->sample_fmt,
                                         encoder_->sample_rate, &sourceLayout, AV_SAMPLE_FMT_FLT, sourceRate,
                                         0, nullptr),
                     cannotEncode);
        converter_.reset(converter);
        throwOnError(swr_init(converter_.get()), cannotEncode, MediaError::Cause::unsupported);
    }

    void feedEncoder() {
        while (!soundEnded_ && av_audio_fifo_size(waiting_.get()) < packetFrames()) {
            pull();
        }
        const auto frames =
            static_cast<int>(std::min<std::int64_t>(totalFrames_ - sentFrames_, packetFrames()));
        if (frames == 0) {
            throwOnError(avcodec_send_frame(encoder_.get(), nullptr), cannotEncode);
            return;
        }
        sendFrame(frames);
    }

    /// Moves the next of the sound, or what the converter still holds after its end, to those that wait.
    void pull() {
        const auto frames = static_cast<int>(sound_.read(pulled_));
        const std::uint8_t* input = reinterpret_cast<const std::uint8_t*>(pulled_.data());
        const int room = throwOnError(swr_get_out_samples(converter_.get(), frames), cannotEncode);
        auto converted = encoderFrame(std::max(room, 1));
        converted->nb_samples = throwOnError(swr_convert(converter_.get(), converted->extended_data, room,
                                                         frames > 0 ? &input : nullptr, frames),
                                             cannotEncode);
        auto** samples = reinterpret_cast<void**>(converted->extended_data);
        throwOnError(av_audio_fifo_write(waiting_.get(), samples, converted->nb_samples), cannotEncode);
        soundEnded_ = frames == 0;
    }

    void sendFrame(int frames) {
        auto frame = encoderFrame(frames);
        // A converter of rates may end some frames early: those are silent.
        av_samples_set_silence(frame->extended_data, 0, frames, channels(), encoder_->sample_fmt);
        auto** samples = reinterpret_cast<void**>(frame->extended_data);
        throwOnError(av_audio_fifo_read(waiting_.get(), samples, frames), cannotEncode);
        frame->pts = sentFrames_;
        sentFrames_ += frames;
        throwOnError(avcodec_send_frame(encoder_.get(), frame.get()), cannotEncode);
    }

    Frame encoderFrame(int frames) const {
        auto frame = makeFrame();
        frame->nb_samples = frames;
        frame->format = encoder_->sample_fmt;
        frame->sample_rate = encoder_->sample_rate;
        throwOnError(av_channel_layout_copy(&frame->ch_layout, &encoder_->ch_layout), cannotEncode);
        throwOnError(av_frame_get_buffer(frame.get(), 0), cannotEncode);
        return frame;
    }

    SoundPacket takePacket() {
        SoundPacket packet;
        packet.bytes.assign(packet_->data, packet_->data + packet_->size);
        packet.decodeTime = sentPackets_++ * packetFrames();
        packet.duration = packetFrames();
        av_packet_unref(packet_.get());
        return packet;
    }

    SoundRenderer sound_;
    std::vector<float> pulled_;
    CodecContext encoder_;
    Resampler converter_;
    AudioFifo waiting_; ///< converted, not yet a packet's worth
    Packet packet_ = makePacket();
    std::vector<std::uint8_t> configuration_;
    std::int64_t totalFrames_ = 0;
    std::int64_t sentFrames_ = 0;
    std::int64_t sentPackets_ = 0;
    bool soundEnded_ = false;
};

SoundEncoder::SoundEncoder(SoundRenderer sound)
    : implementation_(std::make_unique<Implementation>(std::move(sound))) {}
SoundEncoder::SoundEncoder(SoundEncoder&&) noexcept = default;
SoundEncoder& SoundEncoder::operator=(SoundEncoder&&) noexcept = default;
SoundEncoder::~SoundEncoder() = default;

int SoundEncoder::sampleRate() const {
    return implementation_->sampleRate();
}

int SoundEncoder::channels() const {
    return implementation_->channels();
}

const std::vector<std::uint8_t>& SoundEncoder::audioSpecificConfig() const {
    return implementation_->configuration();
}

std::int64_t SoundEncoder::bitRate() const {
    return implementation_->bitRate();
}

int SoundEncoder::packetFrames() const {
    return implementation_->packetFrames();
}

std::int64_t SoundEncoder::priming() const {
    return implementation_->priming();
}

std::int64_t SoundEncoder::totalFrames() const {
    return implementation_->totalFrames();
}

std::optional<SoundPacket> SoundEncoder::next() {
    return implementation_->next();
}

} // namespace zelvra::media
