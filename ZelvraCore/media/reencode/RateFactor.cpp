// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/media/reencode/RateFactor.h"

#include "ZelvraCore/media/reencode/VideoEncoder.h"

#include <algorithm>
#include <cmath>
#include <cstring>

extern "C" {
#include <libavutil/pixdesc.h>
}

namespace zelvra::media {

namespace {

constexpr double usualFactor = 15;

constexpr int window = 8;

/// Sums over one window of both pictures.
struct Moments {
    double a = 0;
    double b = 0;
    double squares = 0; ///< of both
    double product = 0;

    /// Wang, Bovik, Sheikh and Simoncelli, "Image quality assessment", 2004, equation 13.
    double similarity(double peak) const {
        constexpr double count = window * window;
        const double c1 = 0.01 * 0.01 * peak * peak;
        const double c2 = 0.03 * 0.03 * peak * peak;
        const double meanA = a / count;
        const double meanB = b / count;
        const double variances = squares / count - meanA * meanA - meanB * meanB;
        const double covariance = product / count - meanA * meanB;
        return (2 * meanA * meanB + c1) * (2 * covariance + c2) /
               ((meanA * meanA + meanB * meanB + c1) * (variances + c2));
    }
};

template <class Sample>
Moments momentsAt(const AVFrame& a, const AVFrame& b, int left, int top) {
    Moments moments;
    for (int y = top; y < top + window; ++y) {
        const std::uint8_t* const rowA = a.data[0] + static_cast<std::ptrdiff_t>(y) * a.linesize[0];
        const std::uint8_t* const rowB = b.data[0] + static_cast<std::ptrdiff_t>(y) * b.linesize[0];
        for (int x = left; x < left + window; ++x) {
            Sample sampleA = 0;
            Sample sampleB = 0;
            std::memcpy(&sampleA, rowA + static_cast<std::size_t>(x) * sizeof(Sample), sizeof(Sample));
            std::memcpy(&sampleB, rowB + static_cast<std::size_t>(x) * sizeof(Sample), sizeof(Sample));
            const double valueA = sampleA;
            const double valueB = sampleB;
            moments.a += valueA;
            moments.b += valueB;
            moments.squares += valueA * valueA + valueB * valueB;
            moments.product += valueA * valueB;
        }
    }
    return moments;
}

/// Structural similarity (SSIM) of two pictures' luma over windows of 8 by 8 samples: 1 if they are equal.
double lumaSimilarity(const AVFrame& a, const AVFrame& b) {
    const AVPixFmtDescriptor* const format = av_pix_fmt_desc_get(static_cast<AVPixelFormat>(a.format));
    const int depth = format->comp[0].depth;
    const double peak = (1 << depth) - 1;
    double sum = 0;
    double windows = 0;
    for (int y = 0; y + window <= a.height; y += window) {
        for (int x = 0; x + window <= a.width; x += window) {
            const Moments moments =
                depth > 8 ? momentsAt<std::uint16_t>(a, b, x, y) : momentsAt<std::uint8_t>(a, b, x, y);
            sum += moments.similarity(peak);
            windows += 1;
        }
    }
    return windows > 0 ? sum / windows : 1;
}

CodecContext openDecoder(VideoCodec codec, std::span<const std::uint8_t> parameterSets) {
    const AVCodec* const decoder =
        avcodec_find_decoder(codec == VideoCodec::h264 ? AV_CODEC_ID_H264 : AV_CODEC_ID_HEVC);
    auto context = owned<CodecContext>(avcodec_alloc_context3(decoder));
    context->extradata =
        static_cast<std::uint8_t*>(av_mallocz(parameterSets.size() + AV_INPUT_BUFFER_PADDING_SIZE));
    if (context->extradata == nullptr) {
        throw std::bad_alloc();
    }
    std::ranges::copy(parameterSets, context->extradata);
    context->extradata_size = static_cast<int>(parameterSets.size());
    throwOnError(avcodec_open2(context.get(), decoder, nullptr), "cannot check the encoder's quality",
                 MediaError::Cause::internal);
    return context;
}

/// Encodes and decodes the samples, and adds up how alike they stay.
class Trial {
public:
    Trial(VideoCodec codec, const EncoderPicture& form, const CMTime& frameDuration, double factor,
          std::span<const Frame> samples)
        : samples_(samples),
          encoder_(codec, form, frameDuration, factor),
          decoder_(openDecoder(codec, encoder_.parameterSets())) {}

    double similarity() {
        for (const Frame& sample : samples_) {
            encoder_.send(*sample);
            decodeReady();
        }
        encoder_.finish();
        decodeReady();
        avcodec_send_packet(decoder_.get(), nullptr);
        compareReady();
        return compared_ > 0 ? sum_ / compared_ : 1;
    }

private:
    void decodeReady() {
        while (const std::optional<VideoEncoder::Sample> sample = encoder_.receive()) {
            throwOnError(av_new_packet(packet_.get(), static_cast<int>(sample->bytes.size())),
                         "cannot check the encoder's quality");
            std::ranges::copy(sample->bytes, packet_->data);
            packet_->pts = sample->presentationIndex;
            avcodec_send_packet(decoder_.get(), packet_.get());
            av_packet_unref(packet_.get());
            compareReady();
        }
    }

    void compareReady() {
        while (avcodec_receive_frame(decoder_.get(), decoded_.get()) == 0) {
            const auto index = static_cast<std::size_t>(decoded_->pts);
            if (index < samples_.size()) {
                sum_ += lumaSimilarity(*samples_[index], *decoded_);
                ++compared_;
            }
        }
    }

    std::span<const Frame> samples_;
    VideoEncoder encoder_;
    CodecContext decoder_;
    Packet packet_ = makePacket();
    Frame decoded_ = makeFrame();
    double sum_ = 0;
    int compared_ = 0;
};

/// The factor to use if `trialFactor` lost `loss` = 1 - similarity.
double rateFactorForLoss(double trialFactor, double loss) {
    // Less than is allowed: the samples, of few pictures predicted from others, lose less than the rest.
    constexpr double wantedLoss = 0.0075;
    constexpr double growthOfLoss = 1.115; // from one factor to the next, as measured on camera movies
    constexpr double least = 4;
    constexpr double greatest = 18;
    const double steps = std::log(wantedLoss / std::max(loss, 1e-9)) / std::log(growthOfLoss);
    return std::clamp(std::floor(trialFactor + steps), least, greatest);
}

} // namespace

Frame middleOf(const AVFrame& picture) {
    constexpr int mostWidth = 960;
    constexpr int mostHeight = 540;
    Frame middle = makeFrame();
    middle->format = picture.format;
    middle->width = std::min(picture.width, mostWidth);
    middle->height = std::min(picture.height, mostHeight);
    throwOnError(av_frame_get_buffer(middle.get(), 0), "cannot hold a picture");
    const Frame view = owned<Frame>(av_frame_clone(&picture));
    // Even offsets, so that luma and chroma stay together.
    const int left = (picture.width - middle->width) / 4 * 2;
    const int top = (picture.height - middle->height) / 4 * 2;
    view->crop_left = static_cast<std::size_t>(left);
    view->crop_top = static_cast<std::size_t>(top);
    view->crop_right = static_cast<std::size_t>(picture.width - middle->width - left);
    view->crop_bottom = static_cast<std::size_t>(picture.height - middle->height - top);
    throwOnError(av_frame_apply_cropping(view.get(), AV_FRAME_CROP_UNALIGNED), "cannot crop a picture");
    throwOnError(av_frame_copy(middle.get(), view.get()), "cannot copy a picture");
    return middle;
}

double rateFactorFor(VideoCodec codec, const EncoderPicture& form, const CMTime& frameDuration,
                     std::span<const Frame> samples) {
    if (samples.empty()) {
        return usualFactor;
    }
    EncoderPicture sampleForm = form;
    sampleForm.width = samples.front()->width;
    sampleForm.height = samples.front()->height;
    const double similarity = Trial(codec, sampleForm, frameDuration, usualFactor, samples).similarity();
    return rateFactorForLoss(usualFactor, 1 - similarity);
}

} // namespace zelvra::media
