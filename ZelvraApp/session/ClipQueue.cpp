// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/session/ClipQueue.h"

#include <algorithm>

namespace zelvra {

std::optional<int> ClipQueue::next() const {
    return index_ + 1 < static_cast<int>(clips_.size()) ? std::optional(index_ + 1) : std::nullopt;
}

std::optional<int> ClipQueue::previous() const {
    return index_ > 0 ? std::optional(index_ - 1) : std::nullopt;
}

const std::filesystem::path& ClipQueue::goTo(int index) {
    index_ = index;
    return clips_[static_cast<std::size_t>(index)];
}

void ClipQueue::follow(const std::filesystem::path& clip) {
    const auto queued = std::ranges::find(clips_, clip);
    if (queued != clips_.end()) {
        index_ = static_cast<int>(queued - clips_.begin());
    } else {
        *this = {};
    }
}

} // namespace zelvra
