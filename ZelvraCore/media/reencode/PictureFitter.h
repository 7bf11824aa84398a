// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/media/Orientation.h"
#include "ZelvraCore/media/ffmpeg/FFmpegHandles.h"
#include "ZelvraCore/records/ColorDescription.h"
#include "ZelvraCore/records/PixelAspect.h"
#include "ZelvraCore/records/VideoCodec.h"

namespace zelvra::media {

/// The one form in which an encoder takes its pictures, and their tags.
struct EncoderPicture {
    AVPixelFormat format = AV_PIX_FMT_NONE;
    int width = 0; ///< even, as 4:2:0 has no other sizes
    int height = 0;
    ColorDescription color;
    PixelAspect pixelAspect;
};

/// Turns pictures upright and brings them to one format and size. A picture that fits already is passed on
/// without a copy, one that only needs turning is moved sample by sample. Only what must change is changed:
/// other chroma formats and depths are converted, other sizes scaled, an odd side is made even by repeating
/// its last line. One thread at a time; throws MediaError::unsupported.
class PictureFitter {
public:
    /// `orientation` is that of pictures like `first`. `aspect` is the shape of its pixels, not yet turned.
    PictureFitter(const AVFrame& first, Orientation orientation, PixelAspect aspect, VideoCodec codec);

    const EncoderPicture& form() const { return form_; }

    Frame fit(const AVFrame& picture) const;
    /// The same for a picture that is upright already.
    Frame fitUpright(const AVFrame& picture) const;

private:
    Frame turn(const AVFrame& picture) const;

    Orientation orientation_;
    PixelAspect aspect_;
    EncoderPicture form_;
};

} // namespace zelvra::media
