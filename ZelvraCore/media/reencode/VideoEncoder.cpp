// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/media/reencode/VideoEncoder.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

extern "C" {
#include <libavutil/opt.h>
}

namespace zelvra::media {

namespace {

void describe(AVCodecContext& context, const EncoderPicture& form) {
    context.width = form.width;
    context.height = form.height;
    context.pix_fmt = form.format;
    context.sample_aspect_ratio = {form.pixelAspect.horizontal, form.pixelAspect.vertical};
    context.color_primaries = static_cast<AVColorPrimaries>(form.color.primaries);
    context.color_trc = static_cast<AVColorTransferCharacteristic>(form.color.transfer);
    context.colorspace = static_cast<AVColorSpace>(form.color.matrix);
    context.color_range = form.color.fullRange ? AVCOL_RANGE_JPEG : AVCOL_RANGE_MPEG;
    context.chroma_sample_location = static_cast<AVChromaLocation>(form.color.chromaLocation);
}

void setOption(AVCodecContext& context, const char* name, const char* value) {
    throwOnError(av_opt_set(context.priv_data, name, value, 0), "cannot set up the video encoder",
                 MediaError::Cause::internal);
}

void chooseQuality(AVCodecContext& context, VideoCodec codec, double rateFactor) {
    setOption(context, "tune", "ssim");
    setOption(context, "crf", std::to_string(rateFactor).c_str());
    if (codec == VideoCodec::h264) {
        setOption(context, "preset", "veryfast");
        // Fewer pictures in memory at the same speed.
        setOption(context, "x264-params", "sync-lookahead=0:rc-lookahead=5");
    } else {
        setOption(context, "preset", "superfast");
        setOption(context, "x265-params", "log-level=none:open-gop=0");
    }
}

int picturesInSeconds(double seconds, const CMTime& frameDuration) {
    constexpr double most = 600;
    return static_cast<int>(std::clamp(std::round(seconds / frameDuration.seconds()), 1.0, most));
}

} // namespace

VideoEncoder::VideoEncoder(VideoCodec codec, const EncoderPicture& form, const CMTime& frameDuration,
                           double rateFactor) {
    const AVCodec* const encoder =
        avcodec_find_encoder_by_name(codec == VideoCodec::h264 ? "libx264" : "libx265");
    if (encoder == nullptr) {
        throw MediaError(MediaError::Cause::unsupported, "the video encoder is missing");
    }
    context_ = owned<CodecContext>(avcodec_alloc_context3(encoder));
    describe(*context_, form);
    // One picture is one tick.
    av_reduce(&context_->time_base.num, &context_->time_base.den, frameDuration.value,
              frameDuration.timescale, std::numeric_limits<int>::max());
    context_->framerate = av_inv_q(context_->time_base);
    context_->gop_size = picturesInSeconds(2, frameDuration);
    context_->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    context_->thread_count = 0;
    chooseQuality(*context_, codec, rateFactor);
    throwOnError(avcodec_open2(context_.get(), encoder, nullptr), "cannot open the video encoder",
                 MediaError::Cause::unsupported);
}

std::span<const std::uint8_t> VideoEncoder::parameterSets() const {
    return {context_->extradata, static_cast<std::size_t>(context_->extradata_size)};
}

void VideoEncoder::send(AVFrame& picture) {
    picture.pts = count_++;
    picture.pict_type = AV_PICTURE_TYPE_NONE; // the encoder's to choose, not the source's
    throwOnError(avcodec_send_frame(context_.get(), &picture), "cannot encode a picture",
                 MediaError::Cause::unsupported);
}

void VideoEncoder::finish() {
    throwOnError(avcodec_send_frame(context_.get(), nullptr), "cannot finish encoding",
                 MediaError::Cause::unsupported);
}

std::optional<VideoEncoder::Sample> VideoEncoder::receive() {
    const int code = avcodec_receive_packet(context_.get(), packet_.get());
    if (code == AVERROR(EAGAIN) || code == AVERROR_EOF) {
        return std::nullopt;
    }
    throwOnError(code, "cannot encode a picture", MediaError::Cause::unsupported);
    Sample sample{{packet_->data, packet_->data + packet_->size},
                  packet_->pts,
                  packet_->dts,
                  (packet_->flags & AV_PKT_FLAG_KEY) != 0};
    av_packet_unref(packet_.get());
    return sample;
}

} // namespace zelvra::media
