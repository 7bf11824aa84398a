// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/media/ffmpeg/FFmpegHandles.h"

namespace zelvra::media {

/// A decoder of one video track through libavcodec, for a short run of packets. Used by one thread at a time.
class PictureDecoder {
public:
    enum class Use {
        run,        ///< many pictures follow: several are decoded at once
        smallViews, ///< sync samples only, shown small: the edges of coding blocks are not smoothed
    };

    /// Throws MediaError::unsupported if there is no decoder.
    PictureDecoder(const AVStream& stream, Use use);

    /// Takes one packet. If not `needed`, a picture that no other one refers to may be skipped. A packet that
    /// the decoder cannot read is skipped, as players do.
    void send(const AVPacket& packet, bool needed);
    /// Call after the last packet, so that every picture is output. H.264 pictures of a run that does not
    /// start clean are then held back, unless `recovered`: if a picture came out before, all pictures that
    /// are still inside are later ones and right as well.
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
