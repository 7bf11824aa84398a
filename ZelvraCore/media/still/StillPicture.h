// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/media/Image.h"
#include "ZelvraCore/records/ChromaFormat.h"
#include "ZelvraCore/records/FreezeEncoding.h"

#include <array>
#include <memory>
#include <vector>

namespace zelvra::media {

/// What a freeze clip shows, as an encoder takes it: the planes that the decoder gave wherever nothing has
/// been drawn, and the drawn raster, converted, only elsewhere. So a frozen picture is the very picture
/// around it. Pure functions of pixels; any thread.
struct StillPicture {
    std::shared_ptr<const DecodedPicture> picture;
    /// Not zero for each luma sample that is made from the raster instead of a decoder's planes;
    /// picture->width
    /// * picture->height bytes, or empty if all samples are of one kind.
    std::vector<std::uint8_t> drawn;
};

/// An image that no decoder made becomes 8-bit 4:2:0 of its own size. Throws
/// ZVError::contextCreationFailed.
StillPicture stillPicture(const Image& image);

/// The shape in which an encoder wants its pictures.
struct CodedPictureFormat {
    FreezeEncoding::CodedFrame frame;
    ChromaFormat chroma = ChromaFormat::yuv420;
    int bitDepth = 8;

    int visibleWidth() const { return frame.width - frame.cropLeft - frame.cropRight; }
    int visibleHeight() const { return frame.height - frame.cropTop - frame.cropBottom; }
};

/// How many luma samples share one chroma sample across and down.
struct ChromaSubsampling {
    int across = 1;
    int down = 1;
};
ChromaSubsampling subsamplingOf(ChromaFormat chroma);

/// `picture` in another format: put at the frame's crop offsets with its edges repeated into the margins, its
/// chroma repeated or thinned out, its samples shifted to the other depth.
DecodedPicture fitted(const DecodedPicture& picture, const CodedPictureFormat& format);

/// One sample of a plane, whatever its depth.
int sampleAt(const DecodedPicture::Plane& plane, int bitDepth, int x, int y);

} // namespace zelvra::media
