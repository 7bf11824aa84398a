// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/annotations/SessionTime.h"
#include "ZelvraApp/session/AppState.h"

#include <QPointer>

#include <algorithm>
#include <cmath>

namespace zelvra {

namespace {

/// A trim that leaves out less than this at both ends is none.
constexpr double wholeSourceTolerance = 0.05;

bool isWholeSource(const CMTime& start, const CMTime& end, const CMTime& duration) {
    return std::abs(start.seconds()) < wholeSourceTolerance &&
           std::abs((end - duration).seconds()) < wholeSourceTolerance;
}

/// Highlights within the range; those exactly at its ends count.
std::vector<Highlight> keepingWithin(const CMTimeRange& range, std::vector<Highlight> highlights) {
    std::erase_if(highlights, [&](const Highlight& highlight) {
        return highlight.timestamp < range.start || highlight.timestamp > range.end();
    });
    return highlights;
}

} // namespace

void AppState::beginTrim() {
    playerController_.beginTrim([self = QPointer(this)](bool confirmed) {
        if (self && confirmed) {
            self->finishTrim();
        }
    });
}

/// The trim editor was confirmed; its points are the bounds of the player's item now.
void AppState::finishTrim() {
    const PlayerItem* item = player_->currentItem();
    if (!item) {
        return;
    }
    const CMTime start =
        item->reversePlaybackEndTime.isValid() ? item->reversePlaybackEndTime : CMTime::zero();
    CMTime end = item->forwardPlaybackEndTime;
    if (!end.isValid() && sourceInfo_) {
        end = sourceInfo_->duration;
    }
    if (!end.isValid() || !((end - start).seconds() > 0)) {
        return;
    }
    const CMTime duration = sourceInfo_ ? sourceInfo_->duration : end;
    if (isWholeSource(start, end, duration)) {
        setTrim(std::nullopt);
    } else {
        setTrim(CMTimeRange::fromStartToEnd(start, end));
    }
}

void AppState::setTrim(std::optional<CMTimeRange> range) {
    pushUndo();
    publish(trimRange_, range, &AppState::trimRangeChanged);
    publish(activeRoughClipID_, std::nullopt, &AppState::activeRoughClipIDChanged);
    if (range) {
        publish(highlights_, keepingWithin(*range, highlights_), &AppState::highlightsChanged);
    } else if (editingClipID_) {
        publish(editingClipID_, std::nullopt, &AppState::editingClipIDChanged);
        publish(highlights_, {}, &AppState::highlightsChanged);
    }
    applyTrimToPlayer();
}

void AppState::applyTrimToPlayer() {
    if (!player_->currentItem()) {
        return;
    }
    if (trimRange_) {
        player_->setPlaybackBounds(trimRange_->start, trimRange_->end());
    } else {
        player_->setPlaybackBounds(CMTime::invalid(), CMTime::invalid());
    }
}

void AppState::moveTrim(const CMTime& start, const CMTime& end) {
    publish(trimRange_, CMTimeRange::fromStartToEnd(start, end), &AppState::trimRangeChanged);
    applyTrimToPlayer();
}

void AppState::dragTrimStart(double toSeconds) {
    if (!trimRange_) {
        return;
    }
    const CMTime end = trimRange_->end();
    const double inside = toSeconds >= 0 ? toSeconds : 0;
    moveTrim(sessionTime(std::min(end.seconds() - minimumLengthSec, inside)), end);
}

void AppState::dragTrimEnd(double toSeconds) {
    if (!trimRange_ || !sourceInfo_) {
        return;
    }
    const double inside = std::min(sourceInfo_->duration.seconds(), toSeconds);
    const double least = trimRange_->start.seconds() + minimumLengthSec;
    moveTrim(trimRange_->start, sessionTime(inside > least ? inside : least));
}

} // namespace zelvra
