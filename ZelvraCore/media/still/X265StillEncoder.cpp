// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/media/still/StillEncoders.h"
#include "ZelvraCore/records/ZVError.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <span>
#include <x265.h>

namespace zelvra::media {

namespace {

int colourSpace(ChromaFormat chroma) {
    switch (chroma) {
    case ChromaFormat::monochrome: return X265_CSP_I400;
    case ChromaFormat::yuv420: return X265_CSP_I420;
    case ChromaFormat::yuv422: return X265_CSP_I422;
    case ChromaFormat::yuv444: return X265_CSP_I444;
    }
    return X265_CSP_I420;
}

/// Nothing but the picture decides what is coded: no look-ahead, no adaptive quantiser, no second reference.
void makePlain(x265_param& param) {
    param.frameNumThreads = 1;
    param.lookaheadDepth = 0;
    param.bframes = 0;
    param.maxNumReferences = 1;
    param.bEnableWeightedPred = 0;
    param.bOpenGOP = 0;
    param.keyframeMax = -1;
    param.scenecutThreshold = 0;
    param.rc.rateControlMode = X265_RC_CQP;
    param.rc.aqMode = X265_AQ_NONE;
    param.rc.cuTree = 0;
    param.bRepeatHeaders = 0;
    param.bAnnexB = 0; // each NAL unit after its length
    param.bEnableTemporalMvp = 0;
    param.bEnableAccessUnitDelimiters = 0;
    param.bEmitInfoSEI = 0;
    param.logLevel = X265_LOG_NONE;
}

void describePicture(x265_param& param, const DecodedPicture& picture, const CodedPictureFormat& format,
                     const CMTime& frameDuration) {
    param.sourceWidth = format.visibleWidth();
    param.sourceHeight = format.visibleHeight();
    param.confWinRightOffset = format.frame.cropRight;
    param.confWinBottomOffset = format.frame.cropBottom;
    param.internalCsp = colourSpace(format.chroma);
    param.internalBitDepth = format.bitDepth;
    constexpr int smallestBlock = 16;
    constexpr int usualBlock = 64;
    if (std::min(param.sourceWidth, param.sourceHeight) < usualBlock) {
        param.maxCUSize = smallestBlock;
        param.maxTUSize = smallestBlock;
    }
    param.fpsNum = static_cast<std::uint32_t>(frameDuration.timescale);
    param.fpsDenom = static_cast<std::uint32_t>(
        std::min<std::int64_t>(frameDuration.value, std::numeric_limits<std::int32_t>::max()));

    constexpr int extendedAspect = 255; // the ratio itself follows
    if (picture.pixelAspect != PixelAspect{}) {
        param.vui.aspectRatioIdc = extendedAspect;
        param.vui.sarWidth = picture.pixelAspect.horizontal;
        param.vui.sarHeight = picture.pixelAspect.vertical;
    }
    param.vui.bEnableVideoSignalTypePresentFlag = 1;
    param.vui.bEnableVideoFullRangeFlag = picture.color.fullRange ? 1 : 0;
    param.vui.bEnableColorDescriptionPresentFlag = 1;
    param.vui.colorPrimaries = picture.color.primaries;
    param.vui.transferCharacteristics = picture.color.transfer;
    param.vui.matrixCoeffs = picture.color.matrix;
    if (format.chroma == ChromaFormat::yuv420 && picture.color.chromaLocation > 0) {
        param.vui.bEnableChromaLocInfoPresentFlag = 1;
        param.vui.chromaSampleLocTypeTopField = picture.color.chromaLocation - 1;
        param.vui.chromaSampleLocTypeBottomField = picture.color.chromaLocation - 1;
    }
}

NalUnits withoutLengths(std::span<const x265_nal> nals) {
    constexpr std::uint32_t lengthSize = 4;
    NalUnits result;
    for (const x265_nal& nal : nals) {
        result.emplace_back(nal.payload + lengthSize, nal.payload + nal.sizeBytes);
    }
    return result;
}

class X265StillEncoder final : public StillEncoder {
public:
    X265StillEncoder(const std::shared_ptr<const DecodedPicture>& picture, const CodedPictureFormat& format,
                     const CMTime& frameDuration)
        : StillEncoder(picture, format), library_(x265_api_get(format.bitDepth)) {
        if (library_ == nullptr) {
            throw ZVError::writerFailed("the HEVC encoder does not offer this bit depth");
        }
        param_ = {library_->param_alloc(), library_->param_free};
        input_ = {library_->picture_alloc(), library_->picture_free};
        output_ = {library_->picture_alloc(), library_->picture_free};
        // Tuned for the measured error alone: that is what the quantiser is chosen by.
        library_->param_default_preset(param_.get(), "medium", "psnr");
        makePlain(*param_);
        describePicture(*param_, *picture, format, frameDuration);
        encoder_ = {library_->encoder_open(param_.get()), library_->encoder_close};
        if (!encoder_) {
            throw ZVError::writerFailed("the HEVC encoder does not take pictures of this size and format");
        }
    }

    int greatestQuantiser() const override { return 51; }

    NalUnits parameterSets() override {
        x265_nal* nals = nullptr;
        std::uint32_t count = 0;
        if (library_->encoder_headers(encoder_.get(), &nals, &count) < 0) {
            throw ZVError::writerFailed("the HEVC encoder gives no parameter sets");
        }
        return withoutLengths({nals, count});
    }

private:
    CodedPicture encode(const DecodedPicture& picture, bool sync, int quantiser) override {
        library_->picture_init(param_.get(), input_.get());
        for (std::size_t i = 0; i < picture.planes.size(); ++i) {
            // The library only reads it, although its type is not const.
            input_->planes[i] = const_cast<std::uint8_t*>(picture.planes.at(i).bytes.data());
            input_->stride[i] = static_cast<int>(picture.planes.at(i).stride);
        }
        input_->bitDepth = format().bitDepth;
        input_->colorSpace = colourSpace(format().chroma);
        input_->sliceType = sync ? X265_TYPE_IDR : X265_TYPE_P;
        input_->forceqp = quantiser + 1;
        input_->pts = nextTime_++;
        x265_nal* nals = nullptr;
        std::uint32_t count = 0;
        if (library_->encoder_encode(encoder_.get(), &nals, &count, input_.get(), output_.get()) <= 0) {
            throw ZVError::writerFailed("the HEVC encoder failed");
        }
        const std::ptrdiff_t sample = format().bitDepth > 8 ? 2 : 1;
        CodedPicture coded{withoutLengths({nals, count}), {}};
        for (std::size_t i = 0; i < coded.decoded.size(); ++i) {
            coded.decoded.at(i) = {static_cast<const std::uint8_t*>(output_->planes[i]), sample,
                                   output_->stride[i]};
        }
        return coded;
    }

    template <class Object>
    using Handle = std::unique_ptr<Object, void (*)(Object*)>;

    const x265_api* library_;
    Handle<x265_param> param_{nullptr, nullptr};
    Handle<x265_picture> input_{nullptr, nullptr};
    Handle<x265_picture> output_{nullptr, nullptr};
    Handle<x265_encoder> encoder_{nullptr, nullptr};
    std::int64_t nextTime_ = 0;
};

} // namespace

std::unique_ptr<StillEncoder> makeX265StillEncoder(const std::shared_ptr<const DecodedPicture>& picture,
                                                   const CodedPictureFormat& format,
                                                   const CMTime& frameDuration) {
    return std::make_unique<X265StillEncoder>(picture, format, frameDuration);
}

} // namespace zelvra::media
