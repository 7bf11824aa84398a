// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/media/ffmpeg/SequentialReader.h"

#include <utility>

namespace zelvra::media {

namespace {

/// The container's own word. (The library's best effort goes over to decode times for good as soon as one
/// picture is out of order.)
std::int64_t timeOf(const AVFrame& picture) {
    return picture.pts != AV_NOPTS_VALUE ? picture.pts : picture.best_effort_timestamp;
}

} // namespace

void SequentialReader::start(std::int64_t time) {
    decoder_ = std::make_unique<PictureDecoder>(demuxer_.stream(), PictureDecoder::Use::run);
    constexpr int mostSteps = 8; // an encoder that never recovers within so many groups is not waited for
    std::int64_t from = time;
    std::int64_t start = from;
    for (int step = 0; step < mostSteps; ++step) {
        demuxer_.seek(from);
        if (!demuxer_.read(*packet_)) {
            break;
        }
        const bool farthest = step > 0 && packet_->dts >= start;
        const bool covers = decoder_->startsClean(*packet_) && packet_->pts <= time;
        start = packet_->dts;
        av_packet_unref(packet_.get());
        if (farthest || covers) {
            break;
        }
        from = start - 1;
    }
    demuxer_.seek(start);
}

bool SequentialReader::decodeNext() {
    Frame frame = makeFrame();
    while (!decoder_->receive(*frame)) {
        if (ended_) {
            return false;
        }
        if (demuxer_.read(*packet_)) {
            decoder_->send(*packet_, true);
            av_packet_unref(packet_.get());
        } else {
            ended_ = true;
            decoder_->drain(current_ != nullptr);
        }
    }
    next_ = std::move(frame);
    return true;
}

const AVFrame& SequentialReader::pictureAt(std::int64_t time) {
    if (!decoder_) {
        start(time);
    }
    const auto isReached = [&] { return current_ != nullptr && timeOf(*current_) >= time; };
    while (!isReached() && (next_ != nullptr || decodeNext())) {
        if (current_ != nullptr && timeOf(*next_) > time) {
            break; // the wanted one did not come out
        }
        current_ = std::exchange(next_, nullptr);
    }
    if (current_ == nullptr) {
        throw MediaError(MediaError::Cause::corrupt, "the movie's pictures cannot be decoded");
    }
    return *current_;
}

} // namespace zelvra::media
