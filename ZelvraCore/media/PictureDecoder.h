#pragma once

/// Coded pictures in, decoded pictures out, through libavcodec. Internal to this folder.

#include "ZelvraCore/media/FFmpegHandles.h"

namespace zelvra::ffmpeg {

/// A decoder of one video track, for a short run of packets. Used by one thread at a time.
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
    /// Says that no more packets come, so that every picture is given out.
    void drain();
    /// Makes a drained decoder ready for packets from another place.
    void restart();

    /// The next decoded picture in presentation order into `frame`; false while there is none.
    bool receive(AVFrame& frame);

private:
    CodecContext context_;
    bool skipsUnreferenced_ = false;
};

} // namespace zelvra::ffmpeg
