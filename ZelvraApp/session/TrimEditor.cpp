// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/session/TrimEditor.h"

#include "ZelvraApp/annotations/SessionTime.h"

#include <utility>

namespace zelvra {

TrimEditor::TrimEditor(Player& player, QObject* parent) : PlayerView(parent), player_(player) {}

bool TrimEditor::canBeginTrimming() const {
    return player_.currentItem() != nullptr && !isActive();
}

void TrimEditor::beginTrimming(std::function<void(TrimResult)> completion) {
    const PlayerItem* item = player_.currentItem();
    if (!item || isActive()) {
        completion(TrimResult::cancelled);
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
    if (!showsSameMovie()) {
        end(TrimResult::cancelled);
        return;
    }
    player_.setPlaybackBounds(inPoint_, outPoint_);
    end(TrimResult::ok);
}

void TrimEditor::cancel() {
    if (isActive()) {
        end(TrimResult::cancelled);
    }
}

bool TrimEditor::showsSameMovie() const {
    const PlayerItem* item = player_.currentItem();
    return item && item->asset == movie_.lock();
}

void TrimEditor::end(TrimResult result) {
    const auto completion = std::exchange(completion_, nullptr);
    Q_EMIT changed();
    completion(result);
}

} // namespace zelvra
