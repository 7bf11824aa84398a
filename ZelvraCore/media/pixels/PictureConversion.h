// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

/// From a decoder's frame to values without FFmpeg's types: an upright picture in R'G'B', and the planes as
/// they were decoded.

#include "ZelvraCore/media/Image.h"
#include "ZelvraCore/media/VideoFormat.h"
#include "ZelvraCore/media/ffmpeg/FFmpegHandles.h"
#include "ZelvraCore/records/ColorDescription.h"
#include "ZelvraCore/records/PixelAspect.h"

#include <memory>

namespace zelvra::media {

/// The frame's colour tags, unchanged (2 = unspecified); R'G'B' formats are of full range.
ColorDescription colorOf(const AVFrame& frame);

/// The same with the matrix by which the raster is read: the tagged one, or the usual guess.
ColorDescription colorAsRead(const AVFrame& frame);

/// The frame scaled to `width` by `height` pixels, then turned upright, in 8-bit R'G'B' of its own primaries
/// and transfer, opaque. Chroma is brought to full resolution by bicubic interpolation from where it was
/// sampled, values are rounded to nearest. Throws MediaError::unsupported for formats that cannot be read.
Image::Raster uprightRaster(const AVFrame& frame, int width, int height, Orientation orientation);

/// The frame's planes turned upright. Null if they cannot be turned within their own format (4:2:2 by a
/// quarter turn; an odd side that would be read from its far end), and for what is not planar Y'CbCr of
/// 4:2:0, 4:2:2, 4:4:4 or luma alone.
std::shared_ptr<const DecodedPicture> uprightPlanes(const AVFrame& frame, PixelAspect aspect,
                                                    Orientation orientation);

/// The whole picture as a user sees it. Image::color() is colorAsRead; the decoded planes keep the
/// description as it was tagged.
Image uprightImage(const AVFrame& frame, const VideoFormat& format);

/// The chroma sample location (as in ColorDescription) of a 4:2:0 picture after turning. Locations without
/// a code (at the right) become the nearest that has one.
int turnedChromaLocation(int location, Orientation orientation);

} // namespace zelvra::media
