// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/media/reencode/PictureFitter.h"

#include "ZelvraCore/media/pixels/PictureConversion.h"

#include <algorithm>
#include <cstring>

extern "C" {
#include <libavutil/imgutils.h>
#include <libavutil/pixdesc.h>
}

namespace zelvra::media {

namespace {

int madeEven(int side) {
    return side + side % 2;
}

const AVPixFmtDescriptor& descriptorOf(int format) {
    const AVPixFmtDescriptor* const descriptor = av_pix_fmt_desc_get(static_cast<AVPixelFormat>(format));
    if (descriptor == nullptr) {
        throw MediaError(MediaError::Cause::unsupported, "the movie's pictures have an unknown format");
    }
    return *descriptor;
}

/// The same samples in a format that does not imply their range, which the encoder gets separately.
AVPixelFormat plainFormat(int format) {
    switch (format) {
    case AV_PIX_FMT_YUVJ420P: return AV_PIX_FMT_YUV420P;
    case AV_PIX_FMT_YUVJ422P: return AV_PIX_FMT_YUV422P;
    case AV_PIX_FMT_YUVJ444P: return AV_PIX_FMT_YUV444P;
    case AV_PIX_FMT_YUVJ440P: return AV_PIX_FMT_YUV440P;
    default: return static_cast<AVPixelFormat>(format);
    }
}

/// What every player of that codec plays: 4:2:0, in HEVC with 10 bits if the source has more than 8.
AVPixelFormat encoderFormat(int format, VideoCodec codec) {
    const bool deep = descriptorOf(format).comp[0].depth > 8 && codec == VideoCodec::hevc;
    return deep ? AV_PIX_FMT_YUV420P10 : AV_PIX_FMT_YUV420P;
}

Frame makePicture(AVPixelFormat format, int width, int height) {
    Frame picture = makeFrame();
    picture->format = format;
    picture->width = width;
    picture->height = height;
    throwOnError(av_frame_get_buffer(picture.get(), 0), "cannot hold a picture");
    return picture;
}

/// Scales and converts; the samples keep their matrix and range.
Frame converted(const AVFrame& picture, AVPixelFormat format, int width, int height) {
    Frame result = makePicture(format, width, height);
    const Scaler scaler(sws_getContext(picture.width, picture.height, plainFormat(picture.format), width,
                                       height, format, SWS_BICUBIC | SWS_ACCURATE_RND | SWS_FULL_CHR_H_INT,
                                       nullptr, nullptr, nullptr));
    if (!scaler) {
        throw MediaError(MediaError::Cause::unsupported, "the movie's pictures cannot be converted");
    }
    sws_scale(scaler.get(), picture.data, picture.linesize, 0, picture.height, result->data,
              result->linesize);
    result->color_range = picture.color_range;
    result->colorspace = picture.colorspace;
    result->chroma_location = picture.chroma_location;
    return result;
}

/// Borrows the planes of `picture`, which the frame keeps alive.
Frame frameOf(const std::shared_ptr<const DecodedPicture>& picture, AVPixelFormat format) {
    Frame frame = makeFrame();
    frame->format = format;
    frame->width = picture->width;
    frame->height = picture->height;
    for (std::size_t i = 0; i < picture->planes.size() && !picture->planes.at(i).bytes.empty(); ++i) {
        const DecodedPicture::Plane& plane = picture->planes.at(i);
        auto owner = std::make_unique<std::shared_ptr<const DecodedPicture>>(picture);
        const auto release = [](void* opaque, std::uint8_t*) {
            delete static_cast<std::shared_ptr<const DecodedPicture>*>(opaque);
        };
        // The encoder only reads it, although the type of its input is not const.
        auto* const bytes = const_cast<std::uint8_t*>(plane.bytes.data());
        frame->buf[i] =
            av_buffer_create(bytes, plane.bytes.size(), release, owner.get(), AV_BUFFER_FLAG_READONLY);
        if (frame->buf[i] == nullptr) {
            throw std::bad_alloc();
        }
        static_cast<void>(owner.release());
        frame->data[i] = bytes;
        frame->linesize[i] = static_cast<int>(plane.stride);
    }
    return frame;
}

/// A picture whose odd sides are one longer.
Frame padded(const AVFrame& picture, int width, int height) {
    const AVPixFmtDescriptor& descriptor = descriptorOf(picture.format);
    const auto format = static_cast<AVPixelFormat>(picture.format);
    Frame result = makePicture(format, width, height);
    const std::size_t sampleBytes = descriptor.comp[0].depth > 8 ? 2 : 1;
    // Chroma planes of odd sizes are rounded up already.
    av_image_copy_plane(result->data[0], result->linesize[0], picture.data[0], picture.linesize[0],
                        picture.width * static_cast<int>(sampleBytes), picture.height);
    for (const int plane : {1, 2}) {
        av_image_copy_plane(result->data[plane], result->linesize[plane], picture.data[plane],
                            picture.linesize[plane], width / 2 * static_cast<int>(sampleBytes), height / 2);
    }
    const auto row = [&](int y) {
        return result->data[0] + static_cast<std::ptrdiff_t>(y) * result->linesize[0];
    };
    for (int y = 0; y < picture.height && width > picture.width; ++y) {
        std::uint8_t* const end = row(y) + static_cast<std::size_t>(picture.width) * sampleBytes;
        std::memcpy(end, end - sampleBytes, sampleBytes);
    }
    if (height > picture.height) {
        std::memcpy(row(picture.height), row(picture.height - 1),
                    static_cast<std::size_t>(width) * sampleBytes);
    }
    return result;
}

} // namespace

PictureFitter::PictureFitter(const AVFrame& first, Orientation orientation, PixelAspect aspect,
                             VideoCodec codec)
    : orientation_(orientation), aspect_(aspect) {
    form_.format = encoderFormat(first.format, codec);
    form_.width = madeEven(orientation.swapsSides() ? first.height : first.width);
    form_.height = madeEven(orientation.swapsSides() ? first.width : first.height);
    form_.color = colorOf(first);
    if (form_.color.matrix == AVCOL_SPC_RGB) { // what the conversion from R'G'B' gives
        form_.color.matrix = AVCOL_SPC_BT470BG;
        form_.color.fullRange = false;
    }
    form_.color.chromaLocation = turnedChromaLocation(form_.color.chromaLocation, orientation);
    form_.pixelAspect = orientation.swapsSides() ? PixelAspect{aspect.vertical, aspect.horizontal} : aspect;
}

Frame PictureFitter::turn(const AVFrame& picture) const {
    if (auto planes = uprightPlanes(picture, aspect_, orientation_)) {
        return frameOf(planes, plainFormat(picture.format));
    }
    const bool deep = descriptorOf(picture.format).comp[0].depth > 8;
    const AVPixelFormat turnable = deep ? AV_PIX_FMT_YUV444P10 : AV_PIX_FMT_YUV444P;
    const Frame full = converted(picture, turnable, picture.width, picture.height);
    return frameOf(uprightPlanes(*full, aspect_, orientation_), turnable);
}

Frame PictureFitter::fit(const AVFrame& picture) const {
    return orientation_.isUpright() ? fitUpright(picture) : fitUpright(*turn(picture));
}

Frame PictureFitter::fitUpright(const AVFrame& picture) const {
    const bool sameSize = madeEven(picture.width) == form_.width && madeEven(picture.height) == form_.height;
    if (!sameSize) {
        return converted(picture, form_.format, form_.width, form_.height);
    }
    Frame result;
    if (plainFormat(picture.format) == form_.format) {
        result = owned<Frame>(av_frame_clone(&picture));
        result->format = form_.format;
    } else {
        result = converted(picture, form_.format, picture.width, picture.height);
    }
    if (result->width != form_.width || result->height != form_.height) {
        result = padded(*result, form_.width, form_.height);
    }
    return result;
}

} // namespace zelvra::media
