// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/media/Image.h"

#include <memory>
#include <vector>

namespace zelvra::media {

/// A picture of 32-bit pixels that lie in memory as blue, green, red and an unused byte: the form in which a
/// raster is handed to an encoder. Rows may be padded. Copies share their pixels.
class PixelBuffer {
public:
    static constexpr int bytesPerPixel = 4;

    /// Throws ZVError::contextCreationFailed("CVPixelBuffer (status ...)") for a size that is not positive or
    /// that memory does not hold; the status is a negative error number of the operating system.
    PixelBuffer(int width, int height);

    int width() const { return width_; }
    int height() const { return height_; }
    std::size_t bytesPerRow() const { return bytesPerRow_; }
    std::uint8_t* bytes() { return bytes_->data(); }
    const std::uint8_t* bytes() const { return bytes_->data(); }

private:
    int width_;
    int height_;
    std::size_t bytesPerRow_;
    std::shared_ptr<std::vector<std::uint8_t>> bytes_;
    friend class PixelBufferPool;
};

/// Buffers of one size that are used again once nobody else holds them. One thread at a time.
class PixelBufferPool {
public:
    PixelBufferPool(int width, int height) : width_(width), height_(height) {}

    /// Throws as PixelBuffer does.
    PixelBuffer take();

private:
    int width_;
    int height_;
    std::vector<PixelBuffer> buffers_;
};

/// Draws `image` over black into a buffer of `width` by `height`, scaled where its size differs. The buffer
/// comes from `pool` where one is given.
///
/// Throws ZVError::contextCreationFailed: "CVPixelBuffer (status ...)" where no buffer can be made,
/// "CVPixelBuffer context" where it cannot be drawn into, as when the pool's buffers are too small.
PixelBuffer makePixelBuffer(const Image& image, PixelBufferPool* pool, int width, int height);

} // namespace zelvra::media
