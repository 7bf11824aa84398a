#include "ZelvraCore/media/StillEncoders.h"
#include "ZelvraCore/records/ZVError.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <span>
#include <x265.h>

namespace zelvra {

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
    param.bAnnexB = 1;
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

std::vector<std::uint8_t> joined(std::span<const x265_nal> nals) {
    std::vector<std::uint8_t> bytes;
    for (const x265_nal& nal : nals) {
        bytes.insert(bytes.end(), nal.payload, nal.payload + nal.sizeBytes);
    }
    return bytes;
}

class X265StillEncoder final : public StillEncoder {
public:
    X265StillEncoder(std::shared_ptr<const DecodedPicture> picture, const CodedPictureFormat& format,
                     const CMTime& frameDuration)
        : picture_(std::move(picture)), format_(format), library_(x265_api_get(format.bitDepth)) {
        if (library_ == nullptr) {
            throw ZVError::writerFailed("the HEVC encoder does not offer this bit depth");
        }
        param_ = {library_->param_alloc(), library_->param_free};
        input_ = {library_->picture_alloc(), library_->picture_free};
        output_ = {library_->picture_alloc(), library_->picture_free};
        // Tuned for the measured error alone: that is what the quantiser is chosen by. Slower presets save
        // little in an intra picture.
        library_->param_default_preset(param_.get(), "veryfast", "psnr");
        makePlain(*param_);
        describePicture(*param_, *picture_, format, frameDuration);
        encoder_ = {library_->encoder_open(param_.get()), library_->encoder_close};
        if (!encoder_) {
            throw ZVError::writerFailed("the HEVC encoder does not take pictures of this size and format");
        }
    }

    int greatestQuantiser() const override { return 51; }

    std::vector<std::uint8_t> parameterSets() override {
        x265_nal* nals = nullptr;
        std::uint32_t count = 0;
        if (library_->encoder_headers(encoder_.get(), &nals, &count) < 0) {
            throw ZVError::writerFailed("the HEVC encoder gives no parameter sets");
        }
        return joined({nals, count});
    }

    FirstPicture encodeFirst(int quantiser) override {
        FirstPicture first;
        first.bytes = encode(X265_TYPE_IDR, quantiser);
        const std::ptrdiff_t sample = format_.bitDepth > 8 ? 2 : 1;
        for (std::size_t i = 0; i < first.decoded.size(); ++i) {
            first.decoded.at(i) = {static_cast<const std::uint8_t*>(output_->planes[i]), sample,
                                   output_->stride[i]};
        }
        return first;
    }

    std::vector<std::uint8_t> encodeRepeat() override {
        // Coarser than the picture itself, so that the encoder finds nothing to improve and skips it all.
        return encode(X265_TYPE_P, greatestQuantiser());
    }

private:
    std::vector<std::uint8_t> encode(int type, int quantiser) {
        library_->picture_init(param_.get(), input_.get());
        for (std::size_t i = 0; i < picture_->planes.size(); ++i) {
            // The library reads what it is given, though its type does not say so.
            input_->planes[i] = const_cast<std::uint8_t*>(picture_->planes.at(i).bytes.data());
            input_->stride[i] = static_cast<int>(picture_->planes.at(i).stride);
        }
        input_->bitDepth = format_.bitDepth;
        input_->colorSpace = colourSpace(format_.chroma);
        input_->sliceType = type;
        input_->forceqp = quantiser + 1;
        input_->pts = nextTime_++;
        x265_nal* nals = nullptr;
        std::uint32_t count = 0;
        if (library_->encoder_encode(encoder_.get(), &nals, &count, input_.get(), output_.get()) <= 0) {
            throw ZVError::writerFailed("the HEVC encoder failed");
        }
        return joined({nals, count});
    }

    template <class Object>
    using Handle = std::unique_ptr<Object, void (*)(Object*)>;

    std::shared_ptr<const DecodedPicture> picture_;
    CodedPictureFormat format_;
    const x265_api* library_;
    Handle<x265_param> param_{nullptr, nullptr};
    Handle<x265_picture> input_{nullptr, nullptr};
    Handle<x265_picture> output_{nullptr, nullptr};
    Handle<x265_encoder> encoder_{nullptr, nullptr};
    std::int64_t nextTime_ = 0;
};

} // namespace

std::unique_ptr<StillEncoder> makeX265StillEncoder(std::shared_ptr<const DecodedPicture> picture,
                                                   const CodedPictureFormat& format,
                                                   const CMTime& frameDuration) {
    return std::make_unique<X265StillEncoder>(std::move(picture), format, frameDuration);
}

} // namespace zelvra
