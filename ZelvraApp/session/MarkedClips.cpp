// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/annotations/SessionTime.h"
#include "ZelvraApp/session/AppState.h"
#include "ZelvraApp/session/Background.h"
#include "ZelvraApp/session/RoughClip.h"

#include <algorithm>

namespace zelvra {

namespace {

template <class Clips>
auto findClip(Clips& clips, const std::optional<Uuid>& id) {
    return std::ranges::find_if(clips, [&](const MarkedClip& clip) { return id && clip.id == *id; });
}

QCoro::Task<> awaitSeek(QCoro::Task<bool> seeking) {
    co_await seeking;
}

} // namespace

double roughClipLengthSec(const PreferenceStore& store) {
    const double length = store.read(preferences::clipDefaultLengthSec).value_or(standardClipLengthSec);
    return length > 0 ? length : standardClipLengthSec;
}

void AppState::markInPoint() {
    if (!videoFile_ || !sourceInfo_) {
        return;
    }
    const CMTime now = player_->currentTime();
    if (!trimRange_) {
        dropRoughClip(now);
        return;
    }
    const CMTime end = trimRange_->end();
    moveTrim(minimum(maximum(now, CMTime::zero()), end - minimumLength), end);
}

void AppState::dropRoughClip(const CMTime& start) {
    const CMTime end = minimum(start + sessionTime(roughClipLengthSec(preferences_)), sourceInfo_->duration);
    if (end <= start + minimumLength) {
        return;
    }
    pushUndo();
    MarkedClip clip{Uuid::random(), CMTimeRange::fromStartToEnd(start, end), {}};
    const Uuid id = clip.id;
    std::vector<MarkedClip> clips = markedClips_;
    clips.push_back(std::move(clip));
    publish(markedClips_, std::move(clips), &AppState::markedClipsChanged);
    publish(activeRoughClipID_, id, &AppState::activeRoughClipIDChanged);
}

void AppState::markOutPoint() {
    if (!videoFile_ || !sourceInfo_) {
        return;
    }
    const CMTime now = player_->currentTime();
    const CMTime duration = sourceInfo_->duration;
    if (trimRange_) {
        const CMTime start = trimRange_->start;
        moveTrim(start, minimum(maximum(now, start + minimumLength), duration));
        return;
    }
    std::vector<MarkedClip> clips = markedClips_;
    const auto clip = findClip(clips, activeRoughClipID_);
    if (clip == clips.end() || now <= clip->range.start + minimumLength) {
        return;
    }
    pushUndo();
    clip->range = CMTimeRange::fromStartToEnd(clip->range.start, minimum(now, duration));
    publish(markedClips_, std::move(clips), &AppState::markedClipsChanged);
}

void AppState::markCurrentClip() {
    if (!trimRange_) {
        return;
    }
    pushUndo();
    const CMTimeRange range = *trimRange_;
    std::vector<MarkedClip> clips = markedClips_;
    const auto edited = findClip(clips, editingClipID_);
    if (edited != clips.end()) {
        edited->range = range;
        edited->highlights = highlights_;
    } else {
        clips.push_back({Uuid::random(), range, highlights_});
    }
    publish(markedClips_, std::move(clips), &AppState::markedClipsChanged);
    publish(highlights_, {}, &AppState::highlightsChanged);
    publish(trimRange_, std::nullopt, &AppState::trimRangeChanged);
    publish(editingClipID_, std::nullopt, &AppState::editingClipIDChanged);
    applyTrimToPlayer();
    seekSoon(range.end());
}

void AppState::editMarkedClip(MarkedClip clip) {
    if (!videoFile_) {
        return;
    }
    pushUndo();
    publish(editingClipID_, clip.id, &AppState::editingClipIDChanged);
    publish(highlights_, std::move(clip.highlights), &AppState::highlightsChanged);
    publish(trimRange_, clip.range, &AppState::trimRangeChanged);
    publish(activeRoughClipID_, std::nullopt, &AppState::activeRoughClipIDChanged);
    applyTrimToPlayer();
    seekSoon(clip.range.start);
}

void AppState::unmark(const Uuid& id) {
    const Uuid removed = id; // the caller's may be that of the clip that goes
    std::vector<MarkedClip> clips = markedClips_;
    if (std::erase_if(clips, [&](const MarkedClip& clip) { return clip.id == removed; }) == 0) {
        return;
    }
    pushUndo();
    publish(markedClips_, std::move(clips), &AppState::markedClipsChanged);
    if (activeRoughClipID_ == removed) {
        publish(activeRoughClipID_, std::nullopt, &AppState::activeRoughClipIDChanged);
    }
}

/// An exact seek that no caller waits for.
void AppState::seekSoon(const CMTime& time) {
    letRun(awaitSeek(player_->seek(time)));
}

} // namespace zelvra
