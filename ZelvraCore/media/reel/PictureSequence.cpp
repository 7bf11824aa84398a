// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/media/reel/PictureSequence.h"

#include <utility>

namespace zelvra::media {

PictureSequence::PictureSequence(const Asset& asset)
    : asset_(asset), demuxer_(takeDemuxer(asset)), decoder_(demuxer_->stream(), PictureDecoder::Use::run) {}

PictureSequence::~PictureSequence() {
    giveBack(asset_, std::move(demuxer_));
}

void PictureSequence::start(std::int64_t ticks) {
    decoder_.restart();
    demuxer_->seek(ticks);
    start_.reset();
}

std::optional<std::int64_t> PictureSequence::advance(const IsNeeded& isNeeded, const Receiver& receive) {
    if (!demuxer_->read(*packet_)) {
        return std::nullopt;
    }
    if (!start_) {
        start_ = Start{packet_->dts, packet_->pts, decoder_.startsClean(*packet_)};
    }
    const std::int64_t decodeTime = packet_->dts;
    decoder_.send(*packet_, isNeeded(packet_->pts));
    av_packet_unref(packet_.get());
    handOver(receive);
    return decodeTime;
}

void PictureSequence::drain(bool recovered, const Receiver& receive) {
    decoder_.drain(recovered);
    handOver(receive);
}

void PictureSequence::handOver(const Receiver& receive) {
    while (decoder_.receive(*frame_)) {
        if (frame_->best_effort_timestamp != AV_NOPTS_VALUE) {
            receive(frame_->best_effort_timestamp, *frame_);
        }
        av_frame_unref(frame_.get());
    }
}

} // namespace zelvra::media
