// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/media/still/StillEncoder.h"

#include "ZelvraCore/media/still/StillEncoders.h"
#include "ZelvraCore/records/ZVError.h"

#include <cstring>
#include <utility>

namespace zelvra::media {

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

std::uint64_t StillEncoder::CodedPicture::byteCount() const {
    constexpr std::uint64_t lengthSize = 4;
    std::uint64_t count = 0;
    for (const bitstream::Bytes& nal : nals) {
        count += lengthSize + nal.size();
    }
    return count;
}

StillEncoder::StillEncoder(std::shared_ptr<const DecodedPicture> picture, const CodedPictureFormat& format)
    : picture_(std::move(picture)), format_(format) {}

StillEncoder::CodedPicture StillEncoder::encodeFirst(int quantiser) {
    CodedPicture first = encode(*picture_, true, quantiser);
    last_ = first.decoded;
    return first;
}

NalUnits StillEncoder::encodeRepeat() {
    // The encoder gets its own picture again with a coarse quantiser, so every block is skipped.
    const DecodedPicture last = copyOf(last_);
    const CodedPicture repeat = encode(last, false, repeatQuantiser());
    last_ = repeat.decoded;
    const DecodedPicture repeated = copyOf(last_);
    for (std::size_t i = 0; i < last.planes.size(); ++i) {
        if (last.planes.at(i).bytes != repeated.planes.at(i).bytes) {
            throw ZVError::writerFailed("the encoder does not repeat a picture exactly");
        }
    }
    return repeat.nals;
}

DecodedPicture StillEncoder::copyOf(const PictureView& view) const {
    const std::size_t sampleSize = format_.bitDepth > 8 ? 2 : 1;
    DecodedPicture copy = *picture_;
    for (std::size_t i = 0; i < copy.planes.size(); ++i) {
        DecodedPicture::Plane& plane = copy.planes.at(i);
        for (int y = 0; y < plane.height; ++y) {
            const std::uint8_t* from = view.at(i).origin + y * view.at(i).stepDown;
            std::uint8_t* to = plane.bytes.data() + static_cast<std::size_t>(y) * plane.stride;
            for (int x = 0; x < plane.width; ++x, from += view.at(i).stepAcross, to += sampleSize) {
                std::memcpy(to, from, sampleSize);
            }
        }
    }
    return copy;
}

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
                                               const std::shared_ptr<const DecodedPicture>& picture,
                                               const CodedPictureFormat& format,
                                               const FreezeEncoding& encoding, const CMTime& frameDuration) {
    return codec == VideoCodec::h264 ? makeX264StillEncoder(picture, format, encoding, frameDuration)
                                     : makeX265StillEncoder(picture, format, frameDuration);
}

} // namespace zelvra::media
