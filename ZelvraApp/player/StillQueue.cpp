// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/player/StillQueue.h"

#include <utility>

namespace zelvra {

void StillQueue::jump(std::size_t frame) {
    waiting_.clear();
    if (frame != latest()) {
        waiting_.push_back(frame);
    }
}

void StillQueue::append(std::size_t frame) {
    waiting_.push_back(frame);
}

void StillQueue::reset(std::optional<std::size_t> frame) {
    *this = {};
    onScreen_ = frame;
}

std::optional<std::size_t> StillQueue::next(const IsThere& isThere) {
    if (onItsWay_ || waiting_.empty() || !isThere(waiting_.front())) {
        return std::nullopt;
    }
    onItsWay_ = waiting_.front();
    waiting_.pop_front();
    return onItsWay_;
}

void StillQueue::arrived() {
    onScreen_ = std::exchange(onItsWay_, std::nullopt);
}

} // namespace zelvra
