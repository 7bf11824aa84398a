// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/session/AppState.h"
#include "ZelvraApp/session/Background.h"
#include "ZelvraApp/session/Underway.h"
#include "ZelvraCore/FrameGrab.h"

#include <QPointer>

#include <algorithm>

namespace zelvra {

namespace {

DraftShape newCircle(const HighlightDefaults& style, const Size& display) {
    return {.id = Uuid::random(),
            .kind = HighlightShapeKind::circle,
            .p1 = {0.5, 0.5},
            .p2 = {0.5 + style.radiusRatio / (display.width / display.height), 0.5},
            .color = style.color,
            .strokeWidthRatio = style.strokeWidthRatio};
}

/// The style that a draft was given. Only circles have a radius; for other shapes it stays as it was.
HighlightDefaults styleOf(const HighlightDraft& draft, const HighlightDefaults& current) {
    const bool circle = draft.shape.kind == HighlightShapeKind::circle;
    return {.color = draft.shape.color,
            .radiusRatio = circle ? draft.circleRadiusRatio() : current.radiusRatio,
            .strokeWidthRatio = draft.shape.strokeWidthRatio,
            .durationSec = draft.durationSec};
}

/// The list with `highlight` added, or in the place of the one that it edits again; in order of time.
std::vector<Highlight> committing(const Highlight& highlight, std::vector<Highlight> highlights) {
    const auto edited = std::ranges::find(highlights, highlight.id, &Highlight::id);
    if (edited != highlights.end()) {
        *edited = highlight;
    } else {
        highlights.push_back(highlight);
    }
    std::ranges::stable_sort(highlights, {}, &Highlight::timestamp);
    return highlights;
}

} // namespace

void AppState::setDraft(std::optional<HighlightDraft> draft) {
    publish(draft_, std::move(draft), &AppState::draftChanged);
}

/// nullopt if there is no frame, with the cause in `errorMessage`, or if the session has been destroyed.
QCoro::Task<std::optional<Image>> AppState::grabFrame(std::shared_ptr<const Asset> asset, CMTime time) {
    const QPointer<AppState> self(this);
    QString failure;
    try {
        auto grab = [asset, time] { return extractFrameOnScreen(*asset, time); };
        QCoro::Task<Image> grabbing = inBackground(std::move(grab));
        Image frame = co_await grabbing;
        co_return frame;
    } catch (const std::exception& error) {
        failure = tr("Frame extraction failed: %1").arg(QString::fromUtf8(error.what()));
    }
    if (self) {
        setErrorMessage(failure);
    }
    co_return std::nullopt;
}

QCoro::Task<> AppState::addHighlightAtCurrentTime() {
    if (!videoFile_ || !sourceInfo_) {
        co_return;
    }
    cancelHighlightPreview();
    const Underway underway(*this, &AppState::grabsUnderway_);
    player_->pause();
    const CMTime time = player_->currentTime();
    const Size display = sourceInfo_->displaySize;
    const QPointer<AppState> self(this);
    QCoro::Task<std::optional<Image>> grabbing = grabFrame(asset_, time);
    std::optional<Image> frame = co_await grabbing;
    if (!self || !frame) {
        co_return;
    }
    setDraft(HighlightDraft{.id = Uuid::random(),
                            .timestamp = time,
                            .durationSec = clipDefaults_.durationSec,
                            .frame = std::move(*frame),
                            .videoDisplaySize = display,
                            .shape = newCircle(clipDefaults_, display),
                            .isEditing = false});
}

QCoro::Task<> AppState::editHighlight(Highlight highlight) {
    if (!videoFile_ || !sourceInfo_) {
        co_return;
    }
    cancelHighlightPreview();
    const Underway underway(*this, &AppState::grabsUnderway_);
    player_->pause();
    const Size display = sourceInfo_->displaySize;
    const std::shared_ptr<const Asset> asset = asset_; // another clip may be opened meanwhile
    const QPointer<AppState> self(this);
    QCoro::Task<bool> seeking = player_->seek(highlight.timestamp);
    co_await seeking;
    if (!self) {
        co_return;
    }
    QCoro::Task<std::optional<Image>> grabbing = grabFrame(asset, highlight.timestamp);
    std::optional<Image> frame = co_await grabbing;
    if (self && frame) {
        setDraft(HighlightDraft::editing(highlight, std::move(*frame), display));
    }
}

void AppState::commitDraft() {
    if (!draft_) {
        return;
    }
    const HighlightDraft draft = *draft_;
    pushUndo();
    publish(highlights_, committing(draft.highlight(), highlights_), &AppState::highlightsChanged);
    setDraft(std::nullopt);
    const HighlightDefaults style = styleOf(draft, clipDefaults_);
    if (!(style == clipDefaults_)) {
        pendingDefaults_ = style;
        setShowDefaultsScopePrompt(true);
    }
}

void AppState::deleteHighlight(const Highlight& highlight) {
    pushUndo();
    std::vector<Highlight> rest = highlights_;
    std::erase_if(rest, [id = highlight.id](const Highlight& other) { return other.id == id; });
    publish(highlights_, std::move(rest), &AppState::highlightsChanged);
}

} // namespace zelvra
