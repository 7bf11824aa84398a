// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/media/reel/RawPicture.h"

#include "ZelvraCore/media/ffmpeg/FFmpegHandles.h"

extern "C" {
#include <libavutil/imgutils.h>
#include <libavutil/pixdesc.h>
}

namespace zelvra::media {

namespace {

constexpr int packed = 1; // alignment of rows, in bytes

AVPixelFormat formatOf(const AVFrame& frame) {
    return static_cast<AVPixelFormat>(frame.format);
}

} // namespace

RawPicture::RawPicture(const AVFrame& frame) : frame_(owned<Frame>(av_frame_clone(&frame))) {
    const int size = av_image_get_buffer_size(formatOf(frame), frame.width, frame.height, packed);
    throwOnError(size, "a decoded picture cannot be read");
    form_ = {frame.width, frame.height, av_get_pix_fmt_name(formatOf(frame)), static_cast<std::size_t>(size)};
}

std::vector<std::uint8_t> RawPicture::bytes() const {
    std::vector<std::uint8_t> bytes(form_.byteCount);
    av_image_copy_to_buffer(bytes.data(), static_cast<int>(bytes.size()), frame_->data, frame_->linesize,
                            formatOf(*frame_), frame_->width, frame_->height, packed);
    return bytes;
}

std::size_t RawPicture::memory() const {
    std::size_t size = 0;
    for (const AVBufferRef* buffer : frame_->buf) {
        size += buffer != nullptr ? buffer->size : 0;
    }
    return size;
}

} // namespace zelvra::media
