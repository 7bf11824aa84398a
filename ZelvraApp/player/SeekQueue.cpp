// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/player/SeekQueue.h"

#include <utility>

namespace zelvra {

std::optional<CoreSeek> SeekQueue::seek(std::size_t frame) {
    if (underWay_) {
        waiting_ = frame;
        return std::nullopt;
    }
    return begin({frame});
}

std::optional<CoreSeek> SeekQueue::ended(std::optional<std::size_t> found, bool isPlaying) {
    if (!underWay_) {
        return std::nullopt;
    }
    const CoreSeek ended = *std::exchange(underWay_, std::nullopt);
    if (const auto next = std::exchange(waiting_, std::nullopt)) {
        return begin({*next});
    }
    if (found != ended.frame && !ended.isSecondTry && !isPlaying) {
        return begin({ended.frame, true});
    }
    at_ = ended.frame;
    return std::nullopt;
}

void SeekQueue::reset() {
    *this = {};
}

std::optional<std::size_t> SeekQueue::goal() const {
    if (waiting_) {
        return waiting_;
    }
    return underWay_ ? underWay_->frame : at_;
}

std::optional<CoreSeek> SeekQueue::begin(CoreSeek seek) {
    underWay_ = seek;
    at_.reset();
    return seek;
}

} // namespace zelvra
