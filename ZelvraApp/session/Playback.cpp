// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/session/AppState.h"
#include "ZelvraApp/session/Background.h"

#include <algorithm>
#include <cmath>

namespace zelvra {

namespace {

/// A longer step between two observations is a jump, not playback.
constexpr double longestPlaybackStep = 0.5;
constexpr double shortestPreview = 0.1;
constexpr double longestPreview = 24 * 3600; ///< keeps an absurd duration within what a timer can count

/// A move that no caller waits for.
QCoro::Task<> runOn(QCoro::Task<bool> move) {
    co_await move;
}

} // namespace

void AppState::observePlaybackTime(const CMTime& time) {
    const double previous = lastObservedTime_.seconds();
    lastObservedTime_ = time;
    publish(currentTime_, time, &AppState::currentTimeChanged);
    previewCrossing(previous, time);
}

void AppState::play() {
    player_->play();
}

void AppState::pause() {
    cancelHighlightPreview();
    player_->pause();
}

void AppState::seek(const CMTime& time) {
    cancelHighlightPreview();
    letRun(runOn(player_->seek(time)));
}

void AppState::scrub(const CMTime& time) {
    cancelHighlightPreview();
    player_->scrub(time);
}

void AppState::step(int frames) {
    cancelHighlightPreview();
    letRun(runOn(player_->step(frames)));
}

bool AppState::previewEnabled() const {
    return preferences_.read(preferences::previewEnabled).value_or(true);
}

std::chrono::milliseconds AppState::previewLength(const Highlight& highlight) {
    const double seconds = std::min(std::max(shortestPreview, highlight.duration.seconds()), longestPreview);
    return std::chrono::milliseconds(std::llround(seconds * 1000));
}

void AppState::previewCrossing(double previousSeconds, const CMTime& time) {
    if (!previewEnabled() || previewHighlight_ || draft_ || isExporting() || !(player_->rate() > 0)) {
        return;
    }
    const double now = time.seconds();
    const double step = now - previousSeconds;
    if (!(step > 0 && step < longestPlaybackStep)) {
        return;
    }
    const auto crossed = std::ranges::find_if(highlights(), [&](const Highlight& highlight) {
        const double moment = highlight.timestamp.seconds();
        return previousSeconds < moment && moment <= now;
    });
    if (crossed != highlights().end()) {
        startHighlightPreview(*crossed);
    }
}

void AppState::startHighlightPreview(const Highlight& highlight) {
    player_->pause();
    publish(previewHighlight_, highlight, &AppState::previewHighlightChanged);
    previewTimer_.start(previewLength(highlight));
}

/// The timer stops whenever a preview is cancelled or overtaken, so this ends the one that started it.
void AppState::endHighlightPreview() {
    if (previewHighlight_) {
        publish(previewHighlight_, std::nullopt, &AppState::previewHighlightChanged);
        player_->play();
    }
}

void AppState::cancelHighlightPreview() {
    previewTimer_.stop();
    publish(previewHighlight_, std::nullopt, &AppState::previewHighlightChanged);
}

} // namespace zelvra
