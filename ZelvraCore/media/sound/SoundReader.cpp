// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/media/sound/SoundReader.h"

#include "ZelvraCore/isobmff/TrackTimeline.h"
#include "ZelvraCore/media/AssetIndex.h"
#include "ZelvraCore/media/sound/SoundDecoding.h"

#include <algorithm>
#include <cstdlib>

extern "C" {
#include <libavutil/channel_layout.h>
#include <libavutil/mathematics.h>
}

namespace zelvra::media {

namespace {

/// Decoded and dropped before a place that was sought: what the slowest decoder needs to settle (a bit
/// reservoir, band replication, Opus's 80 ms).
constexpr double settlingSeconds = 0.25;
/// Up to here, decoding on is cheaper than seeking.
constexpr int skippedSeconds = 2;

/// If its beginning cannot be decoded, the index determines the format.
constexpr int packetsTriedForFormat = 64;

SoundFormat formatOf(int sampleRate, const AVChannelLayout& layout) {
    return {sampleRate, layout.nb_channels, layout.order == AV_CHANNEL_ORDER_NATIVE ? layout.u.mask : 0};
}

} // namespace

SoundReader::SoundReader(Asset movie)
    : movie_(std::move(movie)),
      cannotRead_(cannotDo("read", movie_.path().string())),
      demuxer_(bytesOf(movie_), soundTrackId(movie_)),
      decoder_(openSoundDecoder(demuxer_.stream(), movie_.path().string())) {
    findFormat();
}

/// Only the coded stream shows the rate: band replication doubles it, and the index does not mention it.
void SoundReader::findFormat() {
    bool decoded = receiveFrame();
    for (int packets = 0; !decoded && !inputEnded_ && packets < packetsTriedForFormat; ++packets) {
        sendPacket();
        decoded = receiveFrame();
    }
    const AVCodecParameters& described = *demuxer_.stream().codecpar;
    format_ = decoded ? formatOf(frame_->sample_rate, frame_->ch_layout)
                      : formatOf(described.sample_rate, described.ch_layout);
    if (format_.sampleRate <= 0 || format_.channels <= 0) {
        throw MediaError::cannot(MediaError::Cause::unsupported, "read", movie_.path().string(),
                                 "its sound has no rate or no channels");
    }
    const isobmff::Movie& movie = movieOf(movie_);
    const isobmff::TrackTimeline timeline(*movie.firstTrack(isobmff::soundHandler), movie.timescale);
    for (const isobmff::ShownPiece& piece : timeline.pieces()) {
        edits_.push_back({frameOfTicks(piece.start), frameOfTicks(piece.end())});
    }
    if (decoded) {
        takeFrame();
    }
}

void SoundReader::read(std::int64_t firstFrame, std::span<float> samples) {
    std::fill(samples.begin(), samples.end(), 0.0F);
    const bool behind = firstFrame < position_ && firstFrame < block_.start;
    const std::int64_t reached = std::max(position_, blockEnd());
    if (behind || firstFrame - reached > std::int64_t{skippedSeconds} * format_.sampleRate) {
        seek(firstFrame);
    }
    const std::int64_t end = firstFrame + frameCount(samples);
    position_ = end;
    const auto channels = static_cast<std::int64_t>(format_.channels);
    for (std::int64_t position = firstFrame; position < end;) {
        if (position >= blockEnd() && !decodeBlock()) {
            return;
        }
        const std::int64_t from = std::max(position, block_.start);
        const std::int64_t until = std::min(end, blockEnd());
        if (from < until) {
            std::copy_n(block_.samples.begin() + (from - block_.start) * channels, (until - from) * channels,
                        samples.begin() + (from - firstFrame) * channels);
        }
        position = std::max(position, until);
        if (block_.start >= end) {
            return;
        }
    }
}

std::int64_t SoundReader::frameOfTicks(std::int64_t ticks) const {
    return av_rescale_q(ticks, demuxer_.timeBase(), {1, format_.sampleRate});
}

void SoundReader::seek(std::int64_t firstFrame) {
    const auto settling = static_cast<std::int64_t>(settlingSeconds * format_.sampleRate);
    const std::int64_t target =
        av_rescale_q(firstFrame - settling, {1, format_.sampleRate}, demuxer_.timeBase());
    demuxer_.seek(target);
    avcodec_flush_buffers(decoder_.get());
    converter_.reset();
    block_ = {firstFrame, {}};
    expectedStart_.reset();
    inputEnded_ = false;
}

bool SoundReader::decodeBlock() {
    while (!receiveFrame()) {
        if (inputEnded_) {
            return false;
        }
        sendPacket();
    }
    takeFrame();
    return true;
}

/// Whether the decoder had a frame.
bool SoundReader::receiveFrame() {
    const int code = avcodec_receive_frame(decoder_.get(), frame_.get());
    return code >= 0 && frame_->nb_samples > 0 && frame_->best_effort_timestamp != AV_NOPTS_VALUE;
}

void SoundReader::sendPacket() {
    if (!demuxer_.read(*packet_)) {
        inputEnded_ = true;
        avcodec_send_packet(decoder_.get(), nullptr);
        return;
    }
    // A packet that the decoder refuses leaves a gap, which is silent.
    avcodec_send_packet(decoder_.get(), packet_.get());
    av_packet_unref(packet_.get());
}

void SoundReader::takeFrame() {
    block_.start = startOfDecodedFrame();
    convertFrame();
    expectedStart_ = blockEnd();
    cutAtEditEnd();
    av_frame_unref(frame_.get());
}

/// Timestamps jitter in files whose ticks are coarser than frames, or whose recorder wrote down a clock: a
/// frame that starts about where the last one ended follows on, unless another edit begins there.
std::int64_t SoundReader::startOfDecodedFrame() const {
    const std::int64_t start = frameOfTicks(frame_->best_effort_timestamp);
    const std::int64_t jitter = std::max<std::int64_t>(frame_->nb_samples / 2, frameOfTicks(1));
    const bool follows = expectedStart_ && std::abs(start - *expectedStart_) <= jitter &&
                         editAt(start) == editAt(block_.start);
    return follows ? *expectedStart_ : start;
}

/// The edit that shows this frame, or that ended last before it: one past its index, 0 before the first.
std::size_t SoundReader::editAt(std::int64_t frame) const {
    constexpr std::int64_t roundingError = 1;
    const auto after =
        std::upper_bound(edits_.begin(), edits_.end(), frame + roundingError,
                         [](std::int64_t moment, const Edit& edit) { return moment < edit.start; });
    return static_cast<std::size_t>(after - edits_.begin());
}

/// The demuxer gives packets whole.
void SoundReader::cutAtEditEnd() {
    const std::size_t edit = editAt(block_.start);
    if (edit == 0) {
        return;
    }
    const std::int64_t shown = std::max<std::int64_t>(0, edits_[edit - 1].end - block_.start);
    if (shown < frameCount(block_.samples)) {
        block_.samples.resize(static_cast<std::size_t>(shown) * static_cast<std::size_t>(format_.channels));
    }
}

void SoundReader::convertFrame() {
    prepareConverter();
    const int room = throwOnError(swr_get_out_samples(converter_.get(), frame_->nb_samples), cannotRead_);
    block_.samples.resize(static_cast<std::size_t>(room) * static_cast<std::size_t>(format_.channels));
    auto* output = reinterpret_cast<std::uint8_t*>(block_.samples.data());
    auto** input = const_cast<const std::uint8_t**>(frame_->extended_data);
    const int frames =
        throwOnError(swr_convert(converter_.get(), &output, room, input, frame_->nb_samples), cannotRead_);
    block_.samples.resize(static_cast<std::size_t>(frames) * static_cast<std::size_t>(format_.channels));
}

/// A decoder may change its mind about rate and channels on the way; what is read stays in `format_`.
void SoundReader::prepareConverter() {
    const bool fits = converter_ && inputRate_ == frame_->sample_rate &&
                      inputChannels_ == frame_->ch_layout.nb_channels && inputSampleFormat_ == frame_->format;
    if (fits) {
        return;
    }
    inputRate_ = frame_->sample_rate;
    inputChannels_ = frame_->ch_layout.nb_channels;
    inputSampleFormat_ = frame_->format;
    AVChannelLayout inputLayout{};
    AVChannelLayout outputLayout{};
    av_channel_layout_default(&inputLayout, inputChannels_);
    av_channel_layout_default(&outputLayout, format_.channels);
    SwrContext* converter = nullptr;
    throwOnError(swr_alloc_set_opts2(&converter, &outputLayout, AV_SAMPLE_FMT_FLT, format_.sampleRate,
                                     &inputLayout, static_cast<AVSampleFormat>(inputSampleFormat_),
                                     inputRate_, 0, nullptr),
                 cannotRead_);
    converter_.reset(converter);
    throwOnError(swr_init(converter_.get()), cannotRead_, MediaError::Cause::unsupported);
}

} // namespace zelvra::media
