// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/media/Image.h"

#include <memory>
#include <vector>

namespace zelvra::media {

/// A picture of 32-bit pixels, in memory as blue, green, red and an unused byte: the form in which an encoder
/// takes a raster. Rows may be padded. Copies share their pixels.
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
};

/// Draws `image` over black into a new buffer of `width` by `height`, scaled if its size differs.
///
/// Throws ZVError::contextCreationFailed: "CVPixelBuffer (status ...)" if no buffer can be made,
/// "CVPixelBuffer context" if it cannot be drawn into.
PixelBuffer makePixelBuffer(const Image& image, int width, int height);

} // namespace zelvra::media
