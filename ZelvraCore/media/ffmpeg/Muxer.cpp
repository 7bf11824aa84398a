// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/media/ffmpeg/Muxer.h"

#include "ZelvraCore/media/ffmpeg/FFmpegHandles.h"
#include "ZelvraCore/media/ffmpeg/MuxerFile.h"

#include <algorithm>
#include <cstring>

namespace zelvra::media {

namespace {

constexpr auto unwritable = MediaError::Cause::unwritable;

class Dictionary {
public:
    Dictionary() = default;
    Dictionary(const Dictionary&) = delete;
    Dictionary& operator=(const Dictionary&) = delete;
    ~Dictionary() { av_dict_free(&entries_); }

    void set(const char* key, const std::string& value) { av_dict_set(&entries_, key, value.c_str(), 0); }
    AVDictionary** entries() { return &entries_; }

private:
    AVDictionary* entries_ = nullptr;
};

void setExtradata(AVCodecParameters& parameters, std::span<const std::uint8_t> bytes) {
    auto* const copy = static_cast<std::uint8_t*>(av_mallocz(bytes.size() + AV_INPUT_BUFFER_PADDING_SIZE));
    if (copy == nullptr) {
        throw std::bad_alloc();
    }
    std::ranges::copy(bytes, copy);
    parameters.extradata = copy;
    parameters.extradata_size = static_cast<int>(bytes.size());
}

} // namespace

class Muxer::Implementation {
public:
    Implementation(const std::filesystem::path& movie, Options options)
        : name_(movie.string()), options_(std::move(options)) {
        AVFormatContext* context = nullptr;
        const char* const muxer = options_.container == MovieContainer::quickTime ? "mov" : "mp4";
        const std::string url = "file:" + movie.string();
        throwIfFailed(avformat_alloc_output_context2(&context, nullptr, muxer, url.c_str()));
        context_.reset(context);
        file_ = std::make_unique<MuxerFile>(movie, *context_);
        context_->flags |= AVFMT_FLAG_BITEXACT; // no name of a library, no random numbers
        for (const auto& [key, value] : options_.metadata) {
            av_dict_set(&context_->metadata, key.c_str(), value.c_str(), 0);
        }
    }

    std::size_t addTrack(const VideoTrackFormat& format) {
        AVStream& stream = addStream(format.timescale);
        AVCodecParameters& parameters = *stream.codecpar;
        parameters.codec_type = AVMEDIA_TYPE_VIDEO;
        parameters.codec_id = format.codec == VideoCodec::h264 ? AV_CODEC_ID_H264 : AV_CODEC_ID_HEVC;
        parameters.codec_tag =
            format.codec == VideoCodec::h264 ? MKTAG('a', 'v', 'c', '1') : MKTAG('h', 'v', 'c', '1');
        parameters.width = format.width;
        parameters.height = format.height;
        parameters.sample_aspect_ratio = {format.pixelAspect.horizontal, format.pixelAspect.vertical};
        stream.sample_aspect_ratio = parameters.sample_aspect_ratio;
        parameters.color_primaries = static_cast<AVColorPrimaries>(format.color.primaries);
        parameters.color_trc = static_cast<AVColorTransferCharacteristic>(format.color.transfer);
        parameters.color_space = static_cast<AVColorSpace>(format.color.matrix);
        parameters.color_range = format.color.fullRange ? AVCOL_RANGE_JPEG : AVCOL_RANGE_MPEG;
        setExtradata(parameters, format.parameterSets);
        videoTimescale_ = format.timescale;
        return static_cast<std::size_t>(stream.index);
    }

    std::size_t addTrack(const SoundTrackFormat& format) {
        AVStream& stream = addStream(format.sampleRate);
        AVCodecParameters& parameters = *stream.codecpar;
        parameters.codec_type = AVMEDIA_TYPE_AUDIO;
        parameters.codec_id = AV_CODEC_ID_AAC;
        parameters.sample_rate = format.sampleRate;
        parameters.frame_size = format.packetFrames;
        parameters.bit_rate = format.bitRate;
        av_channel_layout_default(&parameters.ch_layout, format.channels);
        setExtradata(parameters, format.audioSpecificConfig);
        return static_cast<std::size_t>(stream.index);
    }

    void write(std::size_t track, const CodedSample& sample) {
        begin();
        const AVStream& stream = *context_->streams[track];
        const AVRational ticks{1, timescales_.at(track)};
        throwIfFailed(av_new_packet(packet_.get(), static_cast<int>(sample.bytes.size())));
        std::memcpy(packet_->data, sample.bytes.data(), sample.bytes.size());
        packet_->stream_index = stream.index;
        packet_->pts = sample.presentationTime;
        packet_->dts = sample.decodeTime;
        packet_->duration = sample.duration;
        packet_->flags = sample.sync ? AV_PKT_FLAG_KEY : 0;
        av_packet_rescale_ts(packet_.get(), ticks, stream.time_base);
        throwIfFailed(av_interleaved_write_frame(context_.get(), packet_.get()));
    }

    void finish() {
        begin();
        throwIfFailed(av_write_trailer(context_.get()));
        file_->flush();
    }

private:
    AVStream& addStream(std::int32_t timescale) {
        AVStream* const stream = avformat_new_stream(context_.get(), nullptr);
        if (stream == nullptr) {
            throw std::bad_alloc();
        }
        stream->time_base = {1, timescale};
        timescales_.push_back(timescale);
        return *stream;
    }

    /// Once, before the first sample.
    void begin() {
        if (begun_) {
            return;
        }
        begun_ = true;
        Dictionary options;
        options.set("movie_timescale", std::to_string(options_.timescale));
        if (videoTimescale_ > 0) {
            options.set("video_track_timescale", std::to_string(videoTimescale_));
        }
        if (options_.container == MovieContainer::appleM4v) {
            options.set("brand", "M4V ");
        }
        options.set("movflags", options_.indexFirst ? "use_metadata_tags+faststart" : "use_metadata_tags");
        options.set("write_tmcd", "0");
        throwIfFailed(avformat_write_header(context_.get(), options.entries()));
    }

    /// The system's reason is more exact than the library's code.
    void throwIfFailed(int code) const {
        if (file_) {
            file_->throwIfFailed();
        }
        throwOnError(code, cannotDo("write", name_), unwritable);
    }

    std::string name_;
    Options options_;
    std::unique_ptr<MuxerFile> file_; ///< used by the context, which is freed first
    OutputContext context_;
    Packet packet_ = makePacket();
    std::vector<std::int32_t> timescales_; ///< of the samples given, by track
    std::int32_t videoTimescale_ = 0;
    bool begun_ = false;
};

Muxer::Muxer(const std::filesystem::path& movie, Options options)
    : implementation_(std::make_unique<Implementation>(movie, std::move(options))) {}
Muxer::Muxer(Muxer&&) noexcept = default;
Muxer& Muxer::operator=(Muxer&&) noexcept = default;
Muxer::~Muxer() = default;

std::size_t Muxer::addTrack(const VideoTrackFormat& format) {
    return implementation_->addTrack(format);
}

std::size_t Muxer::addTrack(const SoundTrackFormat& format) {
    return implementation_->addTrack(format);
}

void Muxer::write(std::size_t track, const CodedSample& sample) {
    implementation_->write(track, sample);
}

void Muxer::finish() {
    implementation_->finish();
}

} // namespace zelvra::media
