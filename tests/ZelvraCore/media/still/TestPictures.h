// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/media/Image.h"
#include "ZelvraCore/records/ChromaFormat.h"
#include "ZelvraCore/records/Highlight.h"

#include <array>
#include <filesystem>
#include <string>
#include <vector>

namespace zelvra::test {

/// A picture as a decoder outputs it: soft shapes with some grain, so that it is not trivial to code.
DecodedPicture texturedPicture(int width, int height, ChromaFormat chroma = ChromaFormat::yuv420,
                               int bitDepth = 8);

/// An image of that picture over a grey raster in square pixels: what is drawn on it can be told from what
/// came from the decoder.
Image imageOf(const DecodedPicture& picture);

HighlightShape box(Color color);

/// A movie's pictures as ffmpeg decodes them, one after another, samples as they are coded.
struct DecodedClip {
    std::vector<std::vector<std::uint8_t>> frames;
    std::string pixelFormat;
};
DecodedClip decodeClip(const std::filesystem::path& movie);

/// ffmpeg's name of a picture's samples.
std::string pixelFormatName(const DecodedPicture& picture);

/// Sample of the plane `plane` of one of a DecodedClip's frames, which has the picture's form.
int sampleIn(const std::vector<std::uint8_t>& frame, const DecodedPicture& form, int plane, int x, int y);

} // namespace zelvra::test
