// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/records/ChromaFormat.h"
#include "ZelvraCore/records/ColorDescription.h"
#include "ZelvraCore/records/PixelAspect.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace zelvra {

/// The planes of one decoded picture, in its own chroma format and bit depth.
/// Samples above 8 bits are 16-bit native-endian words with the value in the low bits.
struct DecodedPicture {
    struct Plane {
        int width = 0; ///< in samples
        int height = 0;
        std::size_t stride = 0; ///< in bytes
        std::vector<std::uint8_t> bytes;
    };
    int width = 0; ///< in luma samples, before the pixel aspect
    int height = 0;
    ChromaFormat chroma = ChromaFormat::yuv420;
    int bitDepth = 8;
    ColorDescription color;
    PixelAspect pixelAspect;
    std::array<Plane, 3> planes; ///< Y, Cb, Cr; the last two empty if monochrome
};

/// A still picture, upright and in square pixels, as a user sees it. Cheap to copy: copies share their
/// pixels, which never change.
///
/// The raster is what is shown and drawn on. If the picture came from a decoder, its planes are kept beside
/// the raster: an encoder takes them wherever nothing has been drawn, so that a frozen picture is exactly the
/// picture around it, without a round trip through RGB.
class Image {
public:
    /// 8 bits each of red, green, blue and alpha, in this order in memory, premultiplied; rows are
    /// contiguous.
    struct Raster {
        int width = 0;
        int height = 0;
        std::vector<std::uint8_t> rgba; ///< width * 4 * height bytes
    };
    /// How far drawing has covered each raster pixel: 0 untouched, 255 wholly. width * height bytes.
    using Coverage = std::vector<std::uint8_t>;

    Image(std::shared_ptr<const Raster> raster, ColorDescription color,
          std::shared_ptr<const DecodedPicture> decoded = {}, std::shared_ptr<const Coverage> coverage = {})
        : raster_(std::move(raster)),
          color_(color),
          decoded_(std::move(decoded)),
          coverage_(std::move(coverage)) {}

    int width() const { return raster_->width; }
    int height() const { return raster_->height; }
    const Raster& raster() const { return *raster_; }
    /// The colour space of the source. The raster holds its R'G'B' values (its own primaries and transfer).
    const ColorDescription& color() const { return color_; }
    /// Upright like the raster, but in the source's own pixels; null for an image that no decoder made.
    const DecodedPicture* decoded() const { return decoded_.get(); }
    std::shared_ptr<const DecodedPicture> sharedDecoded() const { return decoded_; }
    /// Null while nothing has been drawn.
    const Coverage* coverage() const { return coverage_.get(); }

private:
    std::shared_ptr<const Raster> raster_;
    ColorDescription color_;
    std::shared_ptr<const DecodedPicture> decoded_;
    std::shared_ptr<const Coverage> coverage_;
};

} // namespace zelvra
