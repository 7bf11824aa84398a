// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/media/pixels/PixelBuffer.h"

#include "ZelvraCore/media/ffmpeg/FFmpegHandles.h"
#include "ZelvraCore/records/ZVError.h"

#include <cerrno>
#include <new>
#include <string>

namespace zelvra::media {

namespace {

ZVError noBuffer(int errorNumber) {
    return ZVError::contextCreationFailed("CVPixelBuffer (status " + std::to_string(-errorNumber) + ")");
}

/// More than any picture takes.
constexpr std::size_t mostBytes = std::size_t{1} << 36;

/// For vector instructions.
constexpr std::size_t rowAlignment = 64;

std::size_t alignedRow(int width) {
    const std::size_t bytes = static_cast<std::size_t>(width) * PixelBuffer::bytesPerPixel;
    return (bytes + rowAlignment - 1) / rowAlignment * rowAlignment;
}

std::shared_ptr<std::vector<std::uint8_t>> allocate(int width, int height) {
    if (width <= 0 || height <= 0) {
        throw noBuffer(EINVAL);
    }
    // Scalers write whole vectors, also at the end of the last row.
    const std::size_t bytes = alignedRow(width) * static_cast<std::size_t>(height) + rowAlignment;
    if (bytes > mostBytes) {
        throw noBuffer(ENOMEM);
    }
    try {
        return std::make_shared<std::vector<std::uint8_t>>(bytes);
    } catch (const std::bad_alloc&) {
        throw noBuffer(ENOMEM);
    }
}

} // namespace

PixelBuffer::PixelBuffer(int width, int height)
    : width_(width),
      height_(height),
      bytesPerRow_(width > 0 ? alignedRow(width) : 0),
      bytes_(allocate(width, height)) {}

PixelBuffer makePixelBuffer(const Image& image, int width, int height) {
    PixelBuffer buffer(width, height);
    // The raster is premultiplied, so that leaving out its alpha draws it over black.
    const Scaler scaler(sws_getContext(image.width(), image.height(), AV_PIX_FMT_RGB0, width, height,
                                       AV_PIX_FMT_BGR0, SWS_BICUBIC | SWS_ACCURATE_RND, nullptr, nullptr,
                                       nullptr));
    if (!scaler) {
        throw ZVError::contextCreationFailed("CVPixelBuffer context");
    }
    const std::uint8_t* const source[] = {image.raster().rgba.data(), nullptr, nullptr, nullptr};
    const int sourceStride[] = {image.width() * PixelBuffer::bytesPerPixel, 0, 0, 0};
    std::uint8_t* const target[] = {buffer.bytes(), nullptr, nullptr, nullptr};
    const int targetStride[] = {static_cast<int>(buffer.bytesPerRow()), 0, 0, 0};
    sws_scale(scaler.get(), source, sourceStride, 0, image.height(), target, targetStride);
    return buffer;
}

} // namespace zelvra::media
