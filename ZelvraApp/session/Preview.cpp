// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/session/AppState.h"

#include <algorithm>
#include <chrono>
#include <cmath>

namespace zelvra {

namespace {

/// A longer step between two observations is a jump, not playback.
constexpr double longestPlaybackStep = 0.5;
constexpr double shortestPreview = 0.1;
constexpr double longestPreview = 24 * 3600; ///< keeps an absurd duration within what a timer can count

std::chrono::milliseconds previewLength(const Highlight& highlight) {
    const double seconds = std::min(std::max(shortestPreview, highlight.duration.seconds()), longestPreview);
    return std::chrono::milliseconds(std::llround(seconds * 1000));
}

} // namespace

bool AppState::previewEnabled() const {
    return preferences_.read(preferences::previewEnabled).value_or(true);
}

void AppState::previewCrossing(double previousSeconds, const CMTime& time) {
    if (!previewEnabled() || previewHighlight_ || draft_ || isExporting_ || !(player_->rate() > 0)) {
        return;
    }
    const double now = time.seconds();
    const double step = now - previousSeconds;
    if (!(step > 0 && step < longestPlaybackStep)) {
        return;
    }
    const auto crossed = std::ranges::find_if(highlights_, [&](const Highlight& highlight) {
        const double moment = highlight.timestamp.seconds();
        return previousSeconds < moment && moment <= now;
    });
    if (crossed != highlights_.end()) {
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
