// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/media/pixels/PictureConversion.h"

#include "ZelvraCore/media/pixels/RgbConverter.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>

extern "C" {
#include <libavutil/pixdesc.h>
}

namespace zelvra::media {

namespace {

/// Quarter turns read down the columns; in tiles of this side, the rows touched stay in the cache.
constexpr int tileSide = 32;

/// Calls `copyRun(x, y, length)` for runs of upright pixels that cover the walk's picture.
template <class CopyRun>
void forEachRun(const PixelWalk& walk, bool inTiles, CopyRun copyRun) {
    const int run = inTiles ? tileSide : walk.width;
    for (int left = 0; left < walk.width; left += run) {
        for (int y = 0; y < walk.height; ++y) {
            copyRun(left, y, std::min(run, walk.width - left));
        }
    }
}

template <class Sample>
void turnPlane(const std::uint8_t* source, const PixelWalk& walk, bool inTiles,
               DecodedPicture::Plane& target) {
    forEachRun(walk, inTiles, [&](int left, int y, int length) {
        const std::uint8_t* from = source + walk.origin + left * walk.alongRow + y * walk.alongColumn;
        std::uint8_t* to = target.bytes.data() + static_cast<std::size_t>(y) * target.stride +
                           static_cast<std::size_t>(left) * sizeof(Sample);
        for (int x = 0; x < length; ++x) {
            std::memcpy(to, from, sizeof(Sample));
            from += walk.alongRow;
            to += sizeof(Sample);
        }
    });
}

DecodedPicture::Plane uprightPlane(const AVFrame& frame, int index, int width, int height, bool wide,
                                   Orientation orientation) {
    const int sampleBytes = wide ? 2 : 1;
    const PixelWalk walk(orientation, width, height, frame.linesize[index], sampleBytes);
    DecodedPicture::Plane plane;
    plane.width = walk.width;
    plane.height = walk.height;
    plane.stride = static_cast<std::size_t>(walk.width) * static_cast<std::size_t>(sampleBytes);
    plane.bytes.resize(plane.stride * static_cast<std::size_t>(plane.height));
    const auto turn = wide ? turnPlane<std::uint16_t> : turnPlane<std::uint8_t>;
    turn(frame.data[index], walk, orientation.swapsSides(), plane);
    return plane;
}

std::optional<ChromaFormat> chromaFormatOf(const AVPixFmtDescriptor& format) {
    if (format.nb_components < 3) {
        return ChromaFormat::monochrome;
    }
    switch (format.log2_chroma_w * 2 + format.log2_chroma_h) {
    case 0: return ChromaFormat::yuv444;
    case 2: return ChromaFormat::yuv422;
    case 3: return ChromaFormat::yuv420;
    default: return std::nullopt;
    }
}

/// Whether the chroma samples of the turned picture cover the same pixels as those of the stored one.
bool turnsNatively(const AVFrame& frame, ChromaFormat chroma, Orientation orientation) {
    if (chroma == ChromaFormat::monochrome || chroma == ChromaFormat::yuv444) {
        return true;
    }
    const bool oddWidth = frame.width % 2 != 0;
    const bool oddHeight = frame.height % 2 != 0 && chroma == ChromaFormat::yuv420;
    return !(chroma == ChromaFormat::yuv422 && orientation.swapsSides()) &&
           !(oddWidth && orientation.startsAtRight()) && !(oddHeight && orientation.startsAtBottom());
}

} // namespace

ColorDescription colorOf(const AVFrame& frame) {
    ColorDescription color;
    color.primaries = frame.color_primaries;
    color.transfer = frame.color_trc;
    color.matrix = frame.colorspace;
    color.chromaLocation = frame.chroma_location;
    color.fullRange = frame.color_range == AVCOL_RANGE_JPEG;
    switch (frame.format) {
    case AV_PIX_FMT_YUVJ420P:
    case AV_PIX_FMT_YUVJ422P:
    case AV_PIX_FMT_YUVJ444P:
    case AV_PIX_FMT_YUVJ440P:
    case AV_PIX_FMT_YUVJ411P: color.fullRange = true; break;
    default: break;
    }
    const AVPixFmtDescriptor* format = av_pix_fmt_desc_get(static_cast<AVPixelFormat>(frame.format));
    if (format != nullptr && (format->flags & AV_PIX_FMT_FLAG_RGB) != 0) {
        color.matrix = AVCOL_SPC_RGB;
        color.fullRange = true;
    }
    return color;
}

ColorDescription colorAsRead(const AVFrame& frame) {
    ColorDescription color = colorOf(frame);
    color.matrix = matrixOrGuess(color.matrix, frame.width, frame.height);
    return color;
}

Image::Raster uprightRaster(const AVFrame& frame, int width, int height, Orientation orientation) {
    const Frame planes = convertToRgb(frame, colorOf(frame), width, height);
    // All three planes have the same stride: one walk serves them.
    const std::uint8_t* const red = planes->data[2];
    const std::uint8_t* const green = planes->data[0];
    const std::uint8_t* const blue = planes->data[1];
    const PixelWalk walk(orientation, width, height, planes->linesize[0], 1);

    Image::Raster raster;
    raster.width = walk.width;
    raster.height = walk.height;
    raster.rgba.resize(static_cast<std::size_t>(walk.width) * static_cast<std::size_t>(walk.height) * 4);
    forEachRun(walk, orientation.swapsSides(), [&](int left, int y, int length) {
        std::ptrdiff_t from = walk.origin + left * walk.alongRow + y * walk.alongColumn;
        std::uint8_t* to =
            raster.rgba.data() + (static_cast<std::size_t>(y) * static_cast<std::size_t>(walk.width) +
                                  static_cast<std::size_t>(left)) *
                                     4;
        for (int x = 0; x < length; ++x) {
            to[0] = red[from];
            to[1] = green[from];
            to[2] = blue[from];
            to[3] = 255;
            from += walk.alongRow;
            to += 4;
        }
    });
    return raster;
}

std::shared_ptr<const DecodedPicture> uprightPlanes(const AVFrame& frame, PixelAspect aspect,
                                                    Orientation orientation) {
    const AVPixFmtDescriptor* format = av_pix_fmt_desc_get(static_cast<AVPixelFormat>(frame.format));
    if (format == nullptr || !isPlanar(*format) || (format->flags & AV_PIX_FMT_FLAG_RGB) != 0) {
        return nullptr;
    }
    const auto chroma = chromaFormatOf(*format);
    if (!chroma || !turnsNatively(frame, *chroma, orientation)) {
        return nullptr;
    }
    auto picture = std::make_shared<DecodedPicture>();
    picture->width = orientation.swapsSides() ? frame.height : frame.width;
    picture->height = orientation.swapsSides() ? frame.width : frame.height;
    picture->chroma = *chroma;
    picture->bitDepth = format->comp[0].depth;
    picture->color = colorOf(frame);
    if (*chroma == ChromaFormat::yuv420) {
        picture->color.chromaLocation = turnedChromaLocation(picture->color.chromaLocation, orientation);
    }
    picture->pixelAspect =
        orientation.swapsSides() ? PixelAspect{aspect.vertical, aspect.horizontal} : aspect;

    const bool wide = picture->bitDepth > 8;
    picture->planes[0] = uprightPlane(frame, 0, frame.width, frame.height, wide, orientation);
    if (*chroma != ChromaFormat::monochrome) {
        const int width = AV_CEIL_RSHIFT(frame.width, format->log2_chroma_w);
        const int height = AV_CEIL_RSHIFT(frame.height, format->log2_chroma_h);
        for (const int plane : {1, 2}) {
            picture->planes[static_cast<std::size_t>(plane)] =
                uprightPlane(frame, plane, width, height, wide, orientation);
        }
    }
    return picture;
}

Image uprightImage(const AVFrame& frame, const VideoFormat& format) {
    const Size size = naturalSize(format);
    auto raster = std::make_shared<const Image::Raster>(uprightRaster(
        frame, static_cast<int>(size.width), static_cast<int>(size.height), format.orientation));
    return {std::move(raster), colorAsRead(frame),
            uprightPlanes(frame, format.pixelAspect, format.orientation)};
}

int turnedChromaLocation(int location, Orientation orientation) {
    if (orientation.isUpright()) {
        return location;
    }
    // Where the sample is in its square of two by two pixels: 0 = on the first, 1 = between, 2 = on the
    // second, across and down. The codes are left, centre, top left, top, bottom left, bottom.
    struct Place {
        int across;
        int down;
    };
    constexpr std::array<Place, 6> places{{{0, 1}, {1, 1}, {0, 0}, {1, 0}, {0, 2}, {1, 2}}};
    const bool stated = location >= 1 && location <= static_cast<int>(places.size());
    Place place = places[static_cast<std::size_t>(stated ? location - 1 : 0)];
    if (orientation.startsAtRight()) {
        place.across = 2 - place.across;
    }
    if (orientation.startsAtBottom()) {
        place.down = 2 - place.down;
    }
    if (orientation.swapsSides()) {
        std::swap(place.across, place.down);
    }
    place.across = std::min(place.across, 1);
    const auto code = std::ranges::find_if(places, [&](const Place& candidate) {
        return candidate.across == place.across && candidate.down == place.down;
    });
    return static_cast<int>(code - places.begin()) + 1;
}

} // namespace zelvra::media
