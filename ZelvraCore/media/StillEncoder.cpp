#include "ZelvraCore/media/StillEncoder.h"

#include "ZelvraCore/media/StillEncoders.h"
#include "ZelvraCore/records/ZVError.h"

#include <utility>

namespace zelvra {

namespace {

int roundedUp(int value, int unit) {
    return (value + unit - 1) / unit * unit;
}

int offeredDepth(int depth, VideoCodec codec) {
    if (depth <= 8) {
        return 8;
    }
    return depth <= 10 || codec == VideoCodec::h264 ? 10 : 12;
}

} // namespace

CodedPictureFormat codedFormat(const DecodedPicture& picture, VideoCodec codec,
                               const FreezeEncoding& encoding) {
    CodedPictureFormat format;
    format.chroma = encoding.chroma.value_or(picture.chroma);
    format.bitDepth = encoding.bitDepth.value_or(offeredDepth(picture.bitDepth, codec));
    const ChromaSubsampling shared = subsamplingOf(format.chroma);
    format.frame.width = roundedUp(picture.width, shared.across);
    format.frame.height = roundedUp(picture.height, shared.down);
    if (!encoding.codedFrame) {
        return format;
    }
    const FreezeEncoding::CodedFrame& frame = *encoding.codedFrame;
    if (frame.width - frame.cropLeft - frame.cropRight != format.frame.width ||
        frame.height - frame.cropTop - frame.cropBottom != format.frame.height) {
        throw ZVError::writerFailed("the picture is not as large as the stream that it is for");
    }
    format.frame = frame;
    if (codec == VideoCodec::hevc) { // its encoder only crops at the right and at the bottom
        format.frame.cropRight += std::exchange(format.frame.cropLeft, 0);
        format.frame.cropBottom += std::exchange(format.frame.cropTop, 0);
    }
    return format;
}

std::unique_ptr<StillEncoder> makeStillEncoder(VideoCodec codec,
                                               std::shared_ptr<const DecodedPicture> picture,
                                               const CodedPictureFormat& format,
                                               const FreezeEncoding& encoding, const CMTime& frameDuration) {
    return codec == VideoCodec::h264
               ? makeX264StillEncoder(std::move(picture), format, encoding, frameDuration)
               : makeX265StillEncoder(std::move(picture), format, frameDuration);
}

} // namespace zelvra
