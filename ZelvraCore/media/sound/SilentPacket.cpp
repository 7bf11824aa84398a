// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/media/sound/SilentPacket.h"

#include "ZelvraCore/media/AssetIndex.h"
#include "ZelvraCore/media/ffmpeg/LibraryVersions.h"
#include "ZelvraCore/media/sound/SoundDecoding.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <optional>

extern "C" {
#include <libavutil/samplefmt.h>
}

namespace zelvra::media {

namespace {

using Bytes = std::vector<std::uint8_t>;
using ByteView = std::span<const std::uint8_t>;

/// Enough for every decoder to have settled, in the movie's own packets and in silence.
constexpr int packetsToSettle = 6;
/// Half a step of 16-bit sound.
constexpr float inaudible = 1.0F / 65536;

ByteView bytesOf(const AVPacket& packet) {
    return {packet.data, static_cast<std::size_t>(packet.size)};
}

Packet packetOf(ByteView bytes) {
    Packet packet = makePacket();
    if (av_new_packet(packet.get(), static_cast<int>(bytes.size())) < 0) {
        throw std::bad_alloc();
    }
    std::copy(bytes.begin(), bytes.end(), packet->data);
    return packet;
}

/// The track's decoder, fed by hand.
class TrackDecoder {
public:
    explicit TrackDecoder(const Asset& movie)
        : name_(movie.path().string()),
          demuxer_(media::bytesOf(movie), soundTrackId(movie)),
          decoder_(openSoundDecoder(demuxer_.stream(), name_)) {
        decoder_->flags2 |= AV_CODEC_FLAG2_SKIP_MANUAL; // packets are looked at one by one, priming too
    }

    const AVCodecContext& context() const { return *decoder_; }
    const AVCodecParameters& parameters() const { return *demuxer_.stream().codecpar; }
    const AVPacket& packet() const { return *packet_; }

    /// The track's next packet; false at its end.
    bool readPacket() {
        av_packet_unref(packet_.get());
        const bool read = demuxer_.read(*packet_);
        packet_->flags = 0; // an edit may discard it, but not here
        return read;
    }

    /// What a packet decodes to; null if the decoder refuses it or waits for more.
    const AVFrame* decode(const AVPacket& packet) {
        av_frame_unref(frame_.get());
        const bool decoded = avcodec_send_packet(decoder_.get(), &packet) >= 0 &&
                             avcodec_receive_frame(decoder_.get(), frame_.get()) >= 0;
        return decoded ? frame_.get() : nullptr;
    }

private:
    std::string name_;
    Demuxer demuxer_;
    CodecContext decoder_;
    Packet packet_ = makePacket();
    Frame frame_ = makeFrame();
};

template <class Sample>
bool isQuiet(const std::uint8_t* bytes, std::size_t samples, double fullScale) {
    for (std::size_t i = 0; i < samples; ++i) {
        Sample sample{};
        std::memcpy(&sample, bytes + i * sizeof(Sample), sizeof(Sample));
        if (std::abs(static_cast<double>(sample)) > inaudible * fullScale) {
            return false;
        }
    }
    return true;
}

bool isSilent(const AVFrame& frame) {
    const auto format = static_cast<AVSampleFormat>(frame.format);
    const bool planar = av_sample_fmt_is_planar(format) != 0;
    const int planes = planar ? frame.ch_layout.nb_channels : 1;
    const auto samples = static_cast<std::size_t>(frame.nb_samples) *
                         static_cast<std::size_t>(planar ? 1 : frame.ch_layout.nb_channels);
    return std::all_of(frame.extended_data, frame.extended_data + planes, [&](const std::uint8_t* plane) {
        switch (av_get_packed_sample_fmt(format)) {
        case AV_SAMPLE_FMT_S16: return isQuiet<std::int16_t>(plane, samples, 1 << 15);
        case AV_SAMPLE_FMT_S32: return isQuiet<std::int32_t>(plane, samples, std::ldexp(1.0, 31));
        case AV_SAMPLE_FMT_FLT: return isQuiet<float>(plane, samples, 1);
        default: return false;
        }
    });
}

/// A frame of zeros as the encoder wants it.
Frame silentFrame(const AVCodecContext& encoder) {
    Frame frame = makeFrame();
    frame->nb_samples = encoder.frame_size;
    frame->format = encoder.sample_fmt;
    frame->sample_rate = encoder.sample_rate;
    throwOnError(av_channel_layout_copy(&frame->ch_layout, &encoder.ch_layout), "cannot encode silence");
    throwOnError(av_frame_get_buffer(frame.get(), 0), "cannot encode silence");
    av_samples_set_silence(frame->extended_data, 0, frame->nb_samples, frame->ch_layout.nb_channels,
                           encoder.sample_fmt);
    return frame;
}

/// An encoder with the settings that the decoder has found in the stream; null if there is none.
CodecContext encoderLike(const TrackDecoder& track) {
    const AVCodecContext& decoder = track.context();
    const AVCodec* codec = avcodec_find_encoder(decoder.codec_id);
    if (codec == nullptr) {
        return nullptr;
    }
    const std::span<const AVSampleFormat> formats = sampleFormats(*codec);
    if (formats.empty()) {
        return nullptr;
    }
    auto encoder = owned<CodecContext>(avcodec_alloc_context3(codec));
    const bool deep = decoder.bits_per_raw_sample > 16;
    const AVSampleFormat wanted = deep ? AV_SAMPLE_FMT_S32P : AV_SAMPLE_FMT_S16P;
    encoder->sample_fmt = codec->id == AV_CODEC_ID_ALAC ? wanted : formats.front();
    encoder->bits_per_raw_sample = decoder.bits_per_raw_sample;
    encoder->sample_rate = decoder.sample_rate;
    encoder->time_base = {1, decoder.sample_rate};
    encoder->bit_rate = decoder.bit_rate;
    throwOnError(av_channel_layout_copy(&encoder->ch_layout, &decoder.ch_layout), "cannot encode silence");
    return avcodec_open2(encoder.get(), codec, nullptr) >= 0 ? std::move(encoder) : nullptr;
}

/// A packet from the midst of silence.
Bytes encodeSilence(AVCodecContext& encoder) {
    const Frame silence = silentFrame(encoder);
    const Packet packet = makePacket();
    Bytes latest;
    for (int i = 0; i < packetsToSettle; ++i) {
        silence->pts = std::int64_t{i} * encoder.frame_size;
        throwOnError(avcodec_send_frame(&encoder, silence.get()), "cannot encode silence");
        while (avcodec_receive_packet(&encoder, packet.get()) >= 0) {
            latest.assign(packet->data, packet->data + packet->size);
            av_packet_unref(packet.get());
        }
    }
    return latest;
}

/// Bits of a header that must be the same in silent packets and the track's.
struct HeaderBits {
    std::size_t byte;
    std::uint8_t mask;
};

/// ETSI TS 102 366 clause 4.3: sample rate and frame size (of which the lowest bit alternates at 44.1 kHz),
/// stream identification, bit stream mode, channels.
constexpr std::array<HeaderBits, 3> ac3Header{{{4, 0xFE}, {5, 0xFF}, {6, 0xE0}}};
/// The same, clause E.1.2: kind of stream, sample rate, blocks, channels, stream identification.
constexpr std::array<HeaderBits, 3> eac3Header{{{2, 0xF8}, {4, 0xFF}, {5, 0xF8}}};

bool agree(ByteView a, ByteView b, std::span<const HeaderBits> header) {
    return std::all_of(header.begin(), header.end(), [&](const HeaderBits& bits) {
        return bits.byte < a.size() && bits.byte < b.size() &&
               ((a[bits.byte] ^ b[bits.byte]) & bits.mask) == 0;
    });
}

/// A cookie's packet length, bit depth and coding parameters, and its channels; what follows only describes.
bool cookiesAgree(const AVCodecParameters& track, const AVCodecContext& encoder) {
    constexpr int boxHeaderAndVersion = 12;
    constexpr int described = 10;
    return track.extradata_size >= boxHeaderAndVersion + described &&
           encoder.extradata_size >= boxHeaderAndVersion + described &&
           std::memcmp(track.extradata + boxHeaderAndVersion, encoder.extradata + boxHeaderAndVersion,
                       described) == 0;
}

bool suits(const TrackDecoder& track, const AVCodecContext& encoder, ByteView silence) {
    switch (encoder.codec_id) {
    case AV_CODEC_ID_AC3: return agree(silence, bytesOf(track.packet()), ac3Header);
    case AV_CODEC_ID_EAC3: return agree(silence, bytesOf(track.packet()), eac3Header);
    case AV_CODEC_ID_ALAC: return cookiesAgree(track.parameters(), encoder);
    default: return false;
    }
}

} // namespace

std::vector<std::uint8_t> encodeSilentPacket(const Asset& movie) {
    TrackDecoder track(movie);
    const bool known = track.context().codec_id == AV_CODEC_ID_AC3 ||
                       track.context().codec_id == AV_CODEC_ID_EAC3 ||
                       track.context().codec_id == AV_CODEC_ID_ALAC;
    if (!known || !track.readPacket() || track.decode(track.packet()) == nullptr) {
        return {};
    }
    const CodecContext encoder = encoderLike(track);
    if (encoder == nullptr) {
        return {};
    }
    Bytes silence = encodeSilence(*encoder);
    return suits(track, *encoder, silence) ? silence : Bytes{};
}

bool decodesAsSilence(const Asset& movie, std::span<const std::uint8_t> packet, std::uint32_t packetFrames) {
    TrackDecoder track(movie);
    const auto frames = static_cast<int>(packetFrames);
    for (int i = 0; i < packetsToSettle && track.readPacket(); ++i) {
        const AVFrame* frame = track.decode(track.packet());
        // The last packet of a track may be shorter, and a first one may be kept back.
        if (frame != nullptr && frame->nb_samples > frames) {
            return false;
        }
    }
    const Packet silence = packetOf(packet);
    const AVFrame* frame = nullptr;
    for (int i = 0; i < packetsToSettle; ++i) {
        frame = track.decode(*silence);
        if (frame == nullptr || frame->nb_samples != frames) {
            return false;
        }
    }
    return isSilent(*frame);
}

} // namespace zelvra::media
