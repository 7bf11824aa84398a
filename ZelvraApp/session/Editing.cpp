// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/session/AppState.h"
#include "ZelvraApp/session/RoughClip.h"

#include <QPointer>

#include <cmath>

namespace zelvra {

namespace {

/// A trim that leaves out less than this at both ends is none. In seconds.
constexpr double wholeSourceTolerance = 0.05;

bool isWholeSource(const CMTimeRange& range, const CMTime& duration) {
    return std::abs(range.start.seconds()) < wholeSourceTolerance &&
           std::abs((range.end() - duration).seconds()) < wholeSourceTolerance;
}

} // namespace

double roughClipLengthSec(const PreferenceStore& store) {
    const double length = store.read(preferences::clipDefaultLengthSec).value_or(standardClipLengthSec);
    return length > 0 ? length : standardClipLengthSec;
}

/// Makes one step that can be undone. None if nothing has changed but which clip the next out-point moves.
void AppState::edit(Annotations after) {
    if (!clip_) {
        return;
    }
    Annotations before = annotations();
    before.activeRoughClipID = after.activeRoughClipID;
    if (!identical(before, after)) {
        clip_->history.record(annotations());
    }
    adopt(std::move(after));
}

void AppState::adopt(Annotations after) {
    if (!clip_) {
        return;
    }
    const Annotations before = std::exchange(clip_->work.annotations, std::move(after));
    notifyOfChanges(before);
    if (!identical(before.trimRange, trimRange())) {
        applyTrimToPlayer();
    }
    keepWork(clip_);
}

void AppState::notifyOfChanges(const Annotations& before) {
    const auto compare = [&](auto member, Changed changed) {
        if (!identical(before.*member, annotations().*member)) {
            Q_EMIT(this->*changed)();
        }
    };
    compare(&Annotations::highlights, &AppState::highlightsChanged);
    compare(&Annotations::trimRange, &AppState::trimRangeChanged);
    compare(&Annotations::markedClips, &AppState::markedClipsChanged);
    compare(&Annotations::editingClipID, &AppState::editingClipIDChanged);
    compare(&Annotations::activeRoughClipID, &AppState::activeRoughClipIDChanged);
    publishDerived();
}

void AppState::applyTrimToPlayer() {
    if (trimRange()) {
        player_->setPlaybackBounds(trimRange()->start, trimRange()->end());
    } else {
        player_->setPlaybackBounds(CMTime::invalid(), CMTime::invalid());
    }
}

void AppState::pushUndo() {
    if (clip_) {
        clip_->history.record(annotations());
        publishDerived();
    }
}

void AppState::undo() {
    if (canUndo()) {
        adopt(clip_->history.undo(annotations()));
        if (clip_->restoredWork && !annotations().hasContent()) {
            clip_->leftWork = std::exchange(clip_->restoredWork, std::nullopt); // offered again
            Q_EMIT leftWorkChanged();
        }
    }
}

void AppState::redo() {
    if (canRedo()) {
        adopt(clip_->history.redo(annotations()));
    }
}

void AppState::deleteHighlight(const Highlight& highlight) {
    Annotations after = annotations();
    if (after.deleteHighlight(highlight.id)) {
        edit(std::move(after));
    }
}

void AppState::beginTrim() {
    playerController_.beginTrim([self = QPointer(this), clip = clip_](std::optional<CMTimeRange> range) {
        if (!self || !clip || self->clip_ != clip || !range || !(range->duration > CMTime::zero())) {
            return;
        }
        self->setTrim(isWholeSource(*range, clip->info.duration) ? std::nullopt : range);
    });
}

void AppState::setTrim(std::optional<CMTimeRange> range) {
    Annotations after = annotations();
    if (after.setTrim(range)) {
        edit(std::move(after));
    }
}

void AppState::dragTrimStart(double toSeconds) {
    Annotations after = annotations();
    if (after.dragTrimStart(toSeconds)) {
        adopt(std::move(after));
    }
}

void AppState::dragTrimEnd(double toSeconds) {
    Annotations after = annotations();
    if (clip_ && after.dragTrimEnd(toSeconds, clip_->info.duration)) {
        adopt(std::move(after));
    }
}

void AppState::markInPoint() {
    Annotations after = annotations();
    if (clip_ &&
        after.markInPoint(player_->currentTime(), clip_->info.duration, roughClipLengthSec(preferences_))) {
        edit(std::move(after));
    }
}

void AppState::markOutPoint() {
    Annotations after = annotations();
    if (clip_ && after.markOutPoint(player_->currentTime(), clip_->info.duration)) {
        edit(std::move(after));
    }
}

void AppState::markCurrentClip() {
    Annotations after = annotations();
    const std::optional<CMTimeRange> marked = trimRange();
    if (after.markCurrentClip()) {
        edit(std::move(after));
        seek(marked->end());
    }
}

void AppState::editMarkedClip(const MarkedClip& clip) {
    Annotations after = annotations();
    if (after.editMarkedClip(clip.id)) {
        edit(std::move(after));
        seek(trimRange()->start);
    }
}

void AppState::unmark(const Uuid& id) {
    Annotations after = annotations();
    if (after.unmark(id)) {
        edit(std::move(after));
    }
}

} // namespace zelvra
