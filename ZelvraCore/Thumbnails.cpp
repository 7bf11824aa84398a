// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/Thumbnails.h"

#include "ZelvraCore/media/AssetDemuxers.h"
#include "ZelvraCore/media/ffmpeg/PictureDecoder.h"
#include "ZelvraCore/media/pixels/PictureConversion.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

namespace zelvra {

namespace {

using namespace media;

/// The size before turning of a thumbnail that is `height` high after it.
Size storedThumbnailSize(const VideoFormat& format, int height) {
    const Size natural = naturalSize(format);
    const double upright = format.orientation.swapsSides() ? natural.width : natural.height;
    const double scale = height / upright;
    return {std::max(1.0, std::round(natural.width * scale)),
            std::max(1.0, std::round(natural.height * scale))};
}

/// The middle of stretch `index` of `count`, in ticks.
std::int64_t middleOf(int index, int count, const CMTime& duration, AVRational timeBase) {
    const auto end = static_cast<double>(ticksOfTime(duration, timeBase));
    return static_cast<std::int64_t>(end * (index + 0.5) / count);
}

/// Decodes sync samples and scales them down.
class ThumbnailMaker {
public:
    ThumbnailMaker(Demuxer& demuxer, const VideoFormat& format, int height)
        : demuxer_(demuxer),
          format_(format),
          size_(storedThumbnailSize(format, height)),
          decoder_(demuxer.stream(), PictureDecoder::Use::smallViews) {}

    /// The thumbnail of the sync sample at or before `ticks`; the one made last if it is the same, or if it
    /// cannot be decoded.
    const std::optional<Image>& at(std::int64_t ticks) {
        demuxer_.seek(ticks);
        if (demuxer_.read(*packet_)) {
            if (packet_->pos != lastPosition_ || packet_->pos < 0) {
                decode();
            }
            lastPosition_ = packet_->pos;
            av_packet_unref(packet_.get());
        }
        return last_;
    }

private:
    void decode() {
        packet_->flags &= ~AV_PKT_FLAG_DISCARD;
        decoder_.send(*packet_, true);
        decoder_.drain();
        if (decoder_.receive(*frame_)) {
            auto raster = std::make_shared<const Image::Raster>(uprightRaster(
                *frame_, static_cast<int>(size_.width), static_cast<int>(size_.height), format_.orientation));
            last_.emplace(std::move(raster), colorAsRead(*frame_));
            av_frame_unref(frame_.get());
        }
        decoder_.restart();
    }

    Demuxer& demuxer_;
    const VideoFormat& format_;
    Size size_;
    PictureDecoder decoder_;
    Packet packet_ = makePacket();
    Frame frame_ = makeFrame();
    std::int64_t lastPosition_ = -1;
    std::optional<Image> last_;
};

} // namespace

void makeThumbnails(const Asset& asset, const ThumbnailRequest& request, const ThumbnailReceiver& receive,
                    const std::stop_token& stop) {
    if (request.count < 1 || request.height < 1) {
        return;
    }
    const CMTime duration = asset.duration();
    const VideoFormat& format = asset.videoFormat();
    auto demuxer = takeDemuxer(asset);
    ThumbnailMaker maker(*demuxer, format, request.height);
    for (int index = 0; index < request.count && !stop.stop_requested(); ++index) {
        const std::int64_t middle = middleOf(index, request.count, duration, demuxer->timeBase());
        if (const auto& thumbnail = maker.at(middle)) {
            receive(static_cast<std::size_t>(index), *thumbnail);
        }
    }
    giveBack(asset, std::move(demuxer));
}

} // namespace zelvra
