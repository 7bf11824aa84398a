// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/session/TrimEditor.h"

#include "ZelvraApp/annotations/SessionTime.h"

#include <utility>

namespace zelvra {

TrimEditor::TrimEditor(Player& player, QObject* parent) : PlayerView(parent), player_(player) {}

bool TrimEditor::canBeginTrimming() const {
    return player_.currentItem() != nullptr && !isActive();
}

void TrimEditor::beginTrimming(std::function<void(std::optional<CMTimeRange>)> completion) {
    const PlayerItem* item = player_.currentItem();
    if (!item || isActive()) {
        completion(std::nullopt);
        return;
    }
    movie_ = item->asset;
    duration_ = item->info.duration;
    inPoint_ = item->reversePlaybackEndTime.isValid() ? item->reversePlaybackEndTime : CMTime::zero();
    outPoint_ = item->forwardPlaybackEndTime.isValid() ? item->forwardPlaybackEndTime : duration_;
    completion_ = std::move(completion);
    Q_EMIT changed();
}

void TrimEditor::setInPoint(const CMTime& time) {
    if (isActive()) {
        inPoint_ = maximum(CMTime::zero(), minimum(time, outPoint_ - minimumLength));
        Q_EMIT changed();
    }
}

void TrimEditor::setOutPoint(const CMTime& time) {
    if (isActive()) {
        outPoint_ = minimum(duration_, maximum(time, inPoint_ + minimumLength));
        Q_EMIT changed();
    }
}

void TrimEditor::confirm() {
    if (!isActive()) {
        return;
    }
    end(showsSameMovie() ? std::optional(CMTimeRange::fromStartToEnd(inPoint_, outPoint_)) : std::nullopt);
}

void TrimEditor::cancel() {
    if (isActive()) {
        end(std::nullopt);
    }
}

bool TrimEditor::showsSameMovie() const {
    const PlayerItem* item = player_.currentItem();
    return item && item->asset == movie_.lock();
}

void TrimEditor::end(const std::optional<CMTimeRange>& result) {
    const auto completion = std::exchange(completion_, nullptr);
    Q_EMIT changed();
    completion(result);
}

} // namespace zelvra
