// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/session/AppState.h"
#include "ZelvraApp/session/Background.h"
#include "ZelvraApp/session/Request.h"
#include "ZelvraCore/FrameGrab.h"

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

} // namespace

void AppState::setDraft(std::optional<HighlightDraft> draft) {
    publish(draft_, std::move(draft), &AppState::draftChanged);
}

QCoro::Task<> AppState::addHighlightAtCurrentTime() {
    return endingWithItsOwner(openEditor(std::nullopt));
}

QCoro::Task<> AppState::editHighlight(Highlight highlight) {
    return endingWithItsOwner(openEditor(std::move(highlight)));
}

/// Opens the editor on a highlight at its moment, or on a new one at the playhead. Does nothing if by then
/// another clip is open or the editor was asked for again.
QCoro::Task<> AppState::openEditor(std::optional<Highlight> edited) {
    const std::shared_ptr<OpenClip> clip = clip_;
    if (!clip) {
        co_return;
    }
    pause();
    const std::shared_ptr<const Request> request = begin(grabbing_);
    if (edited) {
        QCoro::Task<bool> seeking = onBehalfOf(this, player_->seek(edited->timestamp));
        co_await seeking;
    }
    const CMTime time = edited ? edited->timestamp : player_->currentTime();
    QCoro::Task<std::optional<Image>> grabbing = grabFrame(clip->asset, time);
    std::optional<Image> frame = co_await grabbing;
    if (clip != clip_ || !isNewest(*request, grabbing_) || !frame) {
        co_return;
    }
    const Size display = clip->info.displaySize;
    const HighlightDefaults& style = clipDefaults();
    setDraft(edited ? HighlightDraft::editing(*edited, std::move(*frame), display)
                    : HighlightDraft{.id = Uuid::random(),
                                     .timestamp = time,
                                     .durationSec = style.durationSec,
                                     .frame = std::move(*frame),
                                     .videoDisplaySize = display,
                                     .shape = newCircle(style, display),
                                     .isEditing = false});
}

/// nullopt if there is no frame. Then the cause is in `errorMessage`, if the clip is still open.
QCoro::Task<std::optional<Image>> AppState::grabFrame(std::shared_ptr<const Asset> asset, CMTime time) {
    QString failure;
    try {
        auto grab = [asset, time] { return extractFrameOnScreen(*asset, time); };
        QCoro::Task<Image> grabbing = inBackgroundFor(this, std::move(grab));
        Image frame = co_await grabbing;
        co_return frame;
    } catch (const std::exception& error) {
        failure = tr("Frame extraction failed: %1").arg(QString::fromUtf8(error.what()));
    }
    if (clip_ && clip_->asset == asset) {
        setErrorMessage(failure);
    }
    co_return std::nullopt;
}

void AppState::commitDraft() {
    if (!draft_) {
        return;
    }
    const HighlightDraft draft = *draft_;
    Annotations after = annotations();
    after.commit(draft.highlight());
    edit(std::move(after));
    setDraft(std::nullopt);
    const HighlightDefaults style = styleOf(draft, clipDefaults());
    if (!(style == clipDefaults())) {
        pendingDefaults_ = style;
        setShowDefaultsScopePrompt(true);
    }
}

} // namespace zelvra
