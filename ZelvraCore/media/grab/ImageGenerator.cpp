// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/media/grab/ImageGenerator.h"

#include "ZelvraCore/media/AssetDemuxers.h"
#include "ZelvraCore/media/ffmpeg/PictureDecoder.h"
#include "ZelvraCore/media/pixels/PictureConversion.h"

#include <cstdlib>
#include <optional>
#include <utility>

namespace zelvra::media {

namespace {

/// How much of a run is decoded.
enum class Care {
    wantedOnly, ///< the wanted picture and what it depends on
    everything, ///< also pictures that may have to replace it
};

/// The best picture so far for a wanted time: that of the time itself, else the last before, else the first
/// after it.
class BestPicture {
public:
    explicit BestPicture(std::int64_t wanted) : wanted_(wanted) {}

    bool isExact() const { return best_ != nullptr && best_->best_effort_timestamp == wanted_; }
    bool isShownThen() const { return best_ != nullptr && best_->best_effort_timestamp <= wanted_; }

    /// Takes what the decoder has ready.
    void collect(PictureDecoder& decoder) {
        while (decoder.receive(*next_)) {
            if (isBetter(next_->best_effort_timestamp)) {
                best_ = best_ != nullptr ? std::move(best_) : makeFrame();
                av_frame_unref(best_.get());
                av_frame_move_ref(best_.get(), next_.get());
            }
        }
    }

    Frame take() { return std::move(best_); }

private:
    bool isBetter(std::int64_t time) const {
        if (time == AV_NOPTS_VALUE) {
            return false;
        }
        if (best_ == nullptr) {
            return true;
        }
        const std::int64_t held = best_->best_effort_timestamp;
        return held > wanted_ ? time < held : time > held && time <= wanted_;
    }

    std::int64_t wanted_;
    Frame best_;
    Frame next_ = makeFrame();
};

/// A run of packets from a sync sample, and what came of it.
struct Run {
    std::int64_t startDecodeTime = 0;
    std::int64_t startTime = 0; ///< of the sync sample's picture
    bool clean = false;         ///< see PictureDecoder::startsClean
};

std::optional<Run> decodeRun(Demuxer& demuxer, std::int64_t from, std::int64_t wanted, Care care,
                             BestPicture& best) {
    PictureDecoder decoder(demuxer.stream(), PictureDecoder::Use::run);
    const Packet packet = makePacket();
    std::optional<Run> run;
    bool complete = false;
    int ahead = 0;
    demuxer.seek(from);
    while (!complete && demuxer.read(*packet)) {
        const bool shown = (packet->flags & AV_PKT_FLAG_DISCARD) == 0;
        if (!run) {
            run = Run{packet->dts, packet->pts, decoder.startsClean(*packet)};
        } else if (shown && packet->dts > wanted) {
            // All that follows is shown later, but the pictures of a run that does not start clean have to be
            // pushed out by others.
            constexpr int mostAhead = 32;
            if (run->clean || ++ahead > mostAhead) {
                break;
            }
        }
        const bool isWanted = shown && packet->pts == wanted;
        decoder.send(*packet, isWanted || care == Care::everything);
        av_packet_unref(packet.get());
        best.collect(decoder);
        complete = best.isExact() || (isWanted && run->clean && care == Care::wantedOnly);
    }
    decoder.drain(best.isShownThen());
    best.collect(decoder);
    return run;
}

/// Decodes from the sync sample before the wanted picture. If that does not yield the picture (it leads its
/// sync sample, or decoding recovers only later), decodes from earlier ones.
Frame decodeAt(Demuxer& demuxer, std::int64_t wanted) {
    constexpr int mostRuns = 8;
    std::optional<std::int64_t> lastStart;
    std::int64_t from = wanted;
    for (int left = mostRuns; left > 0; --left) {
        BestPicture best(wanted);
        const auto run = decodeRun(demuxer, from, wanted, Care::wantedOnly, best);
        if (best.isExact()) {
            return best.take();
        }
        const bool farthest = left == 1 || !run || (lastStart && run->startDecodeTime >= *lastStart);
        const bool covers = run && run->clean && run->startTime <= wanted;
        if (farthest || covers) {
            decodeRun(demuxer, from, wanted, Care::everything, best);
            if (farthest || best.isShownThen()) {
                return best.take();
            }
        }
        lastStart = run->startDecodeTime;
        from = run->startDecodeTime - 1;
    }
    return nullptr;
}

} // namespace

Image generateImage(const Asset& asset, const FrameIndex::Frame& frame) {
    const VideoFormat& format = asset.videoFormat();
    auto demuxer = takeDemuxer(asset);
    const Frame picture = decodeAt(*demuxer, ticksOfTime(frame.time, demuxer->timeBase()));
    if (picture == nullptr) {
        throw MediaError(MediaError::Cause::corrupt, "no picture can be decoded at " +
                                                         std::to_string(frame.time.seconds()) + " s of '" +
                                                         asset.path().string() + "'");
    }
    giveBack(asset, std::move(demuxer));
    return uprightImage(*picture, format);
}

} // namespace zelvra::media
