// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/bridge/Session.h"

#include "ZelvraApp/annotations/SessionTime.h"
#include "ZelvraApp/files/FilePaths.h"
#include "ZelvraApp/session/Background.h"
#include "ZelvraApp/session/Timecode.h"

#include <algorithm>
#include <utility>

namespace zelvra {

namespace {

/// The item of that id, by value: what is done with it may change the list.
template <class Item>
std::optional<Item> withId(const std::vector<Item>& items, const QString& id) {
    const auto found = std::ranges::find_if(items, [&](const Item& item) { return rowId(item.id) == id; });
    return found == items.end() ? std::nullopt : std::optional(*found);
}

} // namespace

Session::Session(AppState& state, QObject* parent) : QObject(parent), state_(state) {
    keepRows();
    passOnChanges();
    answerOpenRequests();
}

/// The lists of annotations change together before the first signal. Whichever comes first brings the rows up
/// to date.
void Session::keepRows() {
    const auto updateAnnotations = [this] {
        highlightRows_.update(state_.highlights());
        markedClipRows_.update(state_.markedClips());
    };
    for (const auto signal : {&AppState::recentsChanged, &AppState::clipQueueChanged,
                              &AppState::videoURLChanged, &AppState::rememberedWorkChanged}) {
        connect(&state_, signal, this, &Session::updateClipRows);
    }
    connect(&state_, &AppState::highlightsChanged, this, updateAnnotations);
    connect(&state_, &AppState::markedClipsChanged, this, updateAnnotations);
    updateClipRows();
    updateAnnotations();
}

ClipRow Session::clipRow(const std::filesystem::path& path, bool isFolder) const {
    const WorkKeeper::Summary* work = state_.rememberedWork(path);
    return {.path = textOf(path),
            .isFolder = isFolder,
            .isOpen = state_.videoFile() == path,
            .work = work != nullptr ? std::optional(*work) : std::nullopt};
}

void Session::updateClipRows() {
    std::vector<ClipRow> recents;
    for (const RecentItem& item : state_.recents()) {
        recents.push_back(clipRow(pathOf(item.path), item.isFolder));
    }
    recentRows_.update(recents);
    std::vector<ClipRow> queued;
    for (const std::filesystem::path& clip : state_.clipQueue()) {
        queued.push_back(clipRow(clip, false));
    }
    queueRows_.update(queued);
}

void Session::passOnChanges() {
    using Change = std::pair<void (AppState::*)(), void (Session::*)()>;
    for (const auto& [from, to] : {
             Change{&AppState::videoURLChanged, &Session::videoChanged},
             Change{&AppState::sourceInfoChanged, &Session::sourceInfoChanged},
             Change{&AppState::currentTimeChanged, &Session::currentTimeChanged},
             Change{&AppState::errorMessageChanged, &Session::errorMessageChanged},
             Change{&AppState::isOpeningChanged, &Session::isOpeningChanged},
             Change{&AppState::clipQueueChanged, &Session::queueChanged},
             Change{&AppState::queueIndexChanged, &Session::queueIndexChanged},
             Change{&AppState::queueLabelChanged, &Session::queueLabelChanged},
             Change{&AppState::canGoNextChanged, &Session::canGoNextChanged},
             Change{&AppState::leftWorkChanged, &Session::leftWorkChanged},
             Change{&AppState::rememberedWorkChanged, &Session::rememberedWorkChanged},
             Change{&AppState::highlightsChanged, &Session::highlightsChanged},
             Change{&AppState::isGrabbingFrameChanged, &Session::isGrabbingFrameChanged},
             Change{&AppState::timelineHasContentChanged, &Session::timelineHasContentChanged},
             Change{&AppState::canUndoChanged, &Session::canUndoChanged},
             Change{&AppState::previewHighlightChanged, &Session::previewHighlightChanged},
             Change{&AppState::trimRangeChanged, &Session::trimChanged},
             Change{&AppState::markedClipsChanged, &Session::markedClipsChanged},
             Change{&AppState::editingClipIDChanged, &Session::editingClipIDChanged},
             Change{&AppState::canExportChanged, &Session::canExportChanged},
             Change{&AppState::isExportingChanged, &Session::isExportingChanged},
             Change{&AppState::exportProgressChanged, &Session::exportProgressChanged},
             Change{&AppState::lastExportURLChanged, &Session::lastExportURLChanged},
         }) {
        connect(&state_, from, this, to);
    }
    connect(&state_, &AppState::draftChanged, this, [this] {
        if (std::exchange(hadDraft_, hasDraft()) != hasDraft()) {
            Q_EMIT hasDraftChanged();
        }
    });
}

/// Takes back the session's one-shot requests and shows the panels.
void Session::answerOpenRequests() {
    connect(&state_, &AppState::triggerOpenChanged, this, [this] {
        if (state_.triggerOpen()) {
            state_.setTriggerOpen(false);
            presentOpenVideoPanel();
        }
    });
    connect(&state_, &AppState::triggerOpenFolderChanged, this, [this] {
        if (state_.triggerOpenFolder()) {
            state_.setTriggerOpenFolder(false);
            presentOpenFolderPanel();
        }
    });
}

QString Session::fileName() const {
    return state_.videoFile() ? nameOf(*state_.videoFile()) : QString();
}

QString Session::interruptedClip() const {
    const auto& clips = state_.interruptedClips();
    const auto found = std::ranges::find_if(
        clips, [this](const std::filesystem::path& clip) { return state_.rememberedWork(clip) != nullptr; });
    return found == clips.end() ? QString() : nameOf(*found);
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
    return state_.editingClipID() ? rowId(*state_.editingClipID()) : QString();
}

QUrl Session::lastExportURL() const {
    return state_.lastExportFile() ? QUrl::fromLocalFile(textOf(*state_.lastExportFile())) : QUrl();
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

void Session::openQueued(int place) {
    const std::filesystem::path clip = state_.clipQueue().at(static_cast<std::size_t>(place));
    if (state_.videoFile() != clip) {
        letRun(state_.load(clip));
    }
}

void Session::seek(double seconds) {
    state_.seek(sessionTime(seconds));
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
