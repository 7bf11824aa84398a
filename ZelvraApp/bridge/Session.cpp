// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/bridge/Session.h"

#include "ZelvraApp/files/FilePaths.h"
#include "ZelvraApp/session/Background.h"
#include "ZelvraApp/session/SessionTime.h"
#include "ZelvraApp/session/Timecode.h"

#include <algorithm>

namespace zelvra {

namespace {

QString textOf(const Uuid& id) {
    return QString::fromStdString(id.text());
}

/// The item of that id, by value: what is done with it may change the list.
template <class Item>
std::optional<Item> withId(const std::vector<Item>& items, const QString& id) {
    const auto found = std::ranges::find_if(items, [&](const Item& item) { return textOf(item.id) == id; });
    return found == items.end() ? std::nullopt : std::optional(*found);
}

} // namespace

Session::Session(AppState& state, QObject* parent) : QObject(parent), state_(state) {
    connect(&state, &AppState::videoURLChanged, this, &Session::videoChanged);
    connect(&state, &AppState::sourceInfoChanged, this, &Session::sourceInfoChanged);
    connect(&state, &AppState::currentTimeChanged, this, &Session::currentTimeChanged);
    connect(&state, &AppState::trimRangeChanged, this, &Session::trimChanged);
    connect(&state, &AppState::editingClipIDChanged, this, &Session::editingClipIDChanged);
    connect(&state, &AppState::previewHighlightChanged, this, &Session::isPreviewingChanged);
    connect(&state, &AppState::highlightsChanged, this, &Session::highlightsChanged);
    connect(&state, &AppState::markedClipsChanged, this, &Session::markedClipsChanged);
    connect(&state, &AppState::clipQueueChanged, this, &Session::queueChanged);
    connect(&state, &AppState::draftChanged, this, [this] {
        if (std::exchange(hadDraft_, hasDraft()) != hasDraft()) {
            Q_EMIT hasDraftChanged();
        }
    });
}

QString Session::fileName() const {
    return state_.videoFile() ? nameOf(*state_.videoFile()) : QString();
}

double Session::duration() const {
    return state_.sourceInfo() ? state_.sourceInfo()->duration.seconds() : 0;
}

QSizeF Session::displaySize() const {
    return state_.sourceInfo()
               ? QSizeF(state_.sourceInfo()->displaySize.width, state_.sourceInfo()->displaySize.height)
               : QSizeF();
}

QString Session::timecode() const {
    return zelvra::timecode(state_.currentTime());
}

double Session::trimStart() const {
    return state_.trimRange() ? state_.trimRange()->start.seconds() : 0;
}

double Session::trimEnd() const {
    return state_.trimRange() ? state_.trimRange()->end().seconds() : 0;
}

QString Session::editingClipID() const {
    return state_.editingClipID() ? textOf(*state_.editingClipID()) : QString();
}

QString Session::timecodeOf(double seconds) {
    return zelvra::timecode(sessionTime(seconds));
}

QString Session::rangeText(double start, double end) {
    return timecodeOf(start) + QStringLiteral(" – ") + timecodeOf(end);
}

void Session::open(const QUrl& url) {
    if (url.isLocalFile()) {
        state_.handleOpenedURLs({url});
    }
}

void Session::openRecent(const QString& path) {
    const auto recents = state_.recents();
    const auto found = std::ranges::find(recents, path, &RecentItem::path);
    if (found != recents.end()) {
        state_.openRecent(*found);
    }
}

void Session::previousClip() {
    letRun(state_.previousClip());
}

void Session::nextClip() {
    letRun(state_.nextClip());
}

void Session::seek(double seconds) {
    state_.cancelHighlightPreview();
    state_.seekSoon(sessionTime(seconds));
}

void Session::addHighlightAtCurrentTime() {
    letRun(state_.addHighlightAtCurrentTime());
}

void Session::editHighlight(const QString& id) {
    if (const auto highlight = withId(state_.highlights(), id)) {
        letRun(state_.editHighlight(*highlight));
    }
}

void Session::deleteHighlight(const QString& id) {
    if (const auto highlight = withId(state_.highlights(), id)) {
        state_.deleteHighlight(*highlight);
    }
}

void Session::editMarkedClip(const QString& id) {
    if (const auto clip = withId(state_.markedClips(), id)) {
        state_.editMarkedClip(*clip);
    }
}

void Session::unmark(const QString& id) {
    if (const auto clip = withId(state_.markedClips(), id)) {
        state_.unmark(clip->id);
    }
}

void Session::exportMovies() {
    letRun(state_.exportMovies());
}

} // namespace zelvra
