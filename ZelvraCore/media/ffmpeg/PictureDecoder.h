// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/media/ffmpeg/FFmpegHandles.h"

namespace zelvra::media {

/// A decoder of one video track through libavcodec, for a short run of packets. Used by one thread at a time.
class PictureDecoder {
public:
    enum class Use {
        run,        ///< many pictures to come: decode several at once
        single,     ///< a picture or two: decode parts of one at once
        smallViews, ///< sync samples only, to be shown small: the edges of coding blocks need no smoothing
    };

    /// Throws MediaError::unsupported where there is no decoder.
    PictureDecoder(const AVStream& stream, Use use);

    /// Takes one packet. `needed` false allows to skip a picture that no other one refers to. A packet that
    /// the decoder cannot make sense of is passed over, as players do.
    void send(const AVPacket& packet, bool needed);
    /// Says that no more packets come, so that every picture is given out. H.264 pictures of a run that does
    /// not start clean are held back then, unless the caller knows that decoding has recovered: a picture
    /// came out before, so all that are still inside, which are later ones, are right as well.
    void drain(bool recovered = false);
    /// Whether a run that starts with this packet is clean: every picture after it in presentation order is
    /// right. An H.264 sync sample that is no IDR picture may need several pictures to recover.
    bool startsClean(const AVPacket& packet) const;
    /// Makes a drained decoder ready for packets from another place.
    void restart();

    /// The next decoded picture in presentation order into `frame`; false while there is none.
    bool receive(AVFrame& frame);

private:
    CodecContext context_;
    int h264LengthSize_ = 0; ///< bytes of a NAL unit's length; 0: not H.264 as movie files store it
    bool skipsUnreferenced_ = false;
};

} // namespace zelvra::media
