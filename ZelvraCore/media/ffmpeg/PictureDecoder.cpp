// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/media/ffmpeg/PictureDecoder.h"

#include "ZelvraCore/bitstream/NalUnits.h"

#include <algorithm>

namespace zelvra::media {

namespace {

/// No camera's picture is larger; a hostile header's may claim to be.
constexpr std::int64_t mostPixels = std::int64_t{16384} * 8704;

/// More pictures of reordering than streams have in practice. Waiting for them costs nothing, as the decoder
/// is drained after the wanted picture. Waiting for too few would lose pictures of streams that do not state
/// their reordering.
constexpr int ampleReordering = 4;

/// Whether HEVC's "not referenced" pictures are unreferenced in the whole stream. They are if it has one
/// temporal layer (`numTemporalLayers` of the configuration record, ISO/IEC 14496-15 clause 8.3.3.1). With
/// more, higher layers may refer to them.
bool hasOneTemporalLayer(const AVCodecParameters& parameters) {
    constexpr int layersOffset = 21;
    constexpr int recordSize = 23;
    if (parameters.extradata_size < recordSize || parameters.extradata[0] != 1) {
        return false;
    }
    return (parameters.extradata[layersOffset] >> 3 & 7) == 1;
}

bool canSkipUnreferenced(const AVCodecParameters& parameters) {
    switch (parameters.codec_id) {
    case AV_CODEC_ID_H264:
    case AV_CODEC_ID_MPEG4:
    case AV_CODEC_ID_MPEG2VIDEO: return true;
    case AV_CODEC_ID_HEVC: return hasOneTemporalLayer(parameters);
    default: return false;
    }
}

/// No picture depends on another, so a run is one picture.
bool isIntraOnly(AVCodecID codec) {
    const AVCodecDescriptor* descriptor = avcodec_descriptor_get(codec);
    return descriptor != nullptr && (descriptor->props & AV_CODEC_PROP_INTRA_ONLY) != 0;
}

/// From the configuration record, ISO/IEC 14496-15 clause 5.3.3.1.
int h264LengthSize(const AVCodecParameters& parameters) {
    constexpr int recordSize = 7;
    const bool inRecord = parameters.codec_id == AV_CODEC_ID_H264 &&
                          parameters.extradata_size >= recordSize && parameters.extradata[0] == 1;
    return inRecord ? (parameters.extradata[4] & 3) + 1 : 0;
}

} // namespace

PictureDecoder::PictureDecoder(const AVStream& stream, Use use)
    : h264LengthSize_(h264LengthSize(*stream.codecpar)),
      skipsUnreferenced_(canSkipUnreferenced(*stream.codecpar)) {
    const AVCodec* codec = avcodec_find_decoder(stream.codecpar->codec_id);
    if (codec == nullptr) {
        throw MediaError(MediaError::Cause::unsupported, "there is no decoder for this movie's pictures");
    }
    context_ = owned<CodecContext>(avcodec_alloc_context3(codec));
    throwOnError(avcodec_parameters_to_context(context_.get(), stream.codecpar), "cannot set up a decoder");
    context_->pkt_timebase = stream.time_base;
    context_->has_b_frames = std::max(context_->has_b_frames, ampleReordering);
    context_->max_pixels = mostPixels;
    context_->thread_count = 0;
    context_->thread_type = use == Use::run && !isIntraOnly(codec->id) ? FF_THREAD_FRAME : FF_THREAD_SLICE;
    if (use == Use::smallViews) {
        context_->skip_loop_filter = AVDISCARD_ALL;
        context_->skip_frame = AVDISCARD_NONKEY;
        skipsUnreferenced_ = false;
    }
    throwOnError(avcodec_open2(context_.get(), codec, nullptr), "cannot open the movie's decoder");
}

void PictureDecoder::send(const AVPacket& packet, bool needed) {
    if (skipsUnreferenced_) {
        context_->skip_frame = needed ? AVDISCARD_DEFAULT : AVDISCARD_NONREF;
    }
    const int code = avcodec_send_packet(context_.get(), &packet);
    if (code == AVERROR(ENOMEM)) {
        throw std::bad_alloc();
    }
}

void PictureDecoder::drain(bool recovered) {
    if (recovered) {
        context_->flags |= AV_CODEC_FLAG_OUTPUT_CORRUPT; // the library's name for "not known to be right"
    }
    avcodec_send_packet(context_.get(), nullptr);
}

bool PictureDecoder::startsClean(const AVPacket& packet) const {
    if (context_->codec_id != AV_CODEC_ID_H264) {
        return true;
    }
    constexpr int idrSlice = 5; // nal_unit_type, ITU-T H.264 clause 7.4.1
    bitstream::NalUnitWalk walk({packet.data, static_cast<std::size_t>(packet.size)}, h264LengthSize_);
    while (const std::optional<bitstream::ByteView> nal = walk.next()) {
        if ((nal->front() & 0x1F) == idrSlice) {
            return true;
        }
    }
    return false;
}

void PictureDecoder::restart() {
    avcodec_flush_buffers(context_.get());
}

bool PictureDecoder::receive(AVFrame& frame) {
    for (;;) {
        const int code = avcodec_receive_frame(context_.get(), &frame);
        if (code == 0) {
            return true;
        }
        if (code == AVERROR(EAGAIN) || code == AVERROR_EOF) {
            return false;
        }
        if (code == AVERROR(ENOMEM)) {
            throw std::bad_alloc();
        }
    }
}

} // namespace zelvra::media
