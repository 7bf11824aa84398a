// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/editor/HighlightEditor.h"

#include "ZelvraApp/editor/AspectFit.h"
#include "ZelvraApp/editor/DraftEditing.h"
#include "ZelvraApp/editor/PictureMapping.h"
#include "ZelvraApp/session/Colors.h"
#include "ZelvraApp/session/StyleTexts.h"
#include "ZelvraApp/session/Timecode.h"

namespace zelvra {

namespace {

/// Of one press of an arrow key, in pixels; nullopt for other keys.
std::optional<QPointF> directionOf(int key) {
    switch (key) {
    case Qt::Key_Left: return QPointF(-1, 0);
    case Qt::Key_Right: return QPointF(1, 0);
    case Qt::Key_Up: return QPointF(0, -1);
    case Qt::Key_Down: return QPointF(0, 1);
    default: return std::nullopt;
    }
}

QString endTipOf(HighlightShapeKind kind) {
    switch (kind) {
    case HighlightShapeKind::circle: return HighlightEditor::tr("Drag to change the circle's size");
    case HighlightShapeKind::arrow: return HighlightEditor::tr("Drag to move this end of the arrow");
    case HighlightShapeKind::rectangle: break;
    }
    return HighlightEditor::tr("Drag to resize");
}

} // namespace

HighlightEditor::HighlightEditor(QObject* parent) : QObject(parent) {
    connect(this, &HighlightEditor::draftChanged, this, &HighlightEditor::placesChanged);
}

void HighlightEditor::setSession(Session* session) {
    session_ = session;
    connect(session->state(), &AppState::draftChanged, this, &HighlightEditor::takeDraft);
    takeDraft();
}

void HighlightEditor::takeDraft() {
    if (const std::optional<HighlightDraft>& draft = session_->state()->draft()) {
        shown_ = draft;
        Q_EMIT draftChanged();
    }
}

template <class Change>
void HighlightEditor::edit(Change change) {
    if (std::optional<HighlightDraft> draft = session_->state()->draft()) {
        change(*draft);
        session_->state()->setDraft(std::move(draft));
    }
}

QString HighlightEditor::title() const {
    return shown_ && shown_->isEditing ? tr("Edit Highlight") : tr("New Highlight");
}

QString HighlightEditor::momentText() const {
    return shown_ ? tr("at %1").arg(timecode(shown_->timestamp)) : QString();
}

QString HighlightEditor::commitText() const {
    return shown_ && shown_->isEditing ? tr("Update Highlight") : tr("Add Highlight");
}

QString HighlightEditor::kind() const {
    const std::string_view raw = shown_ ? rawValue(shown_->shape.kind) : std::string_view();
    return QString::fromUtf8(raw.data(), static_cast<qsizetype>(raw.size()));
}

void HighlightEditor::setKind(const QString& kind) {
    const double radius = session_->state()->clipDefaults().radiusRatio;
    if (const auto wanted = highlightShapeKind(kind.toStdString())) {
        edit([&](HighlightDraft& draft) { draft.shape = withKind(draft, *wanted, radius); });
    }
}

QColor HighlightEditor::color() const {
    return shown_ ? toQColor(shown_->shape.color) : QColor();
}

void HighlightEditor::setColor(const QColor& color) {
    edit([&](HighlightDraft& draft) { draft.shape.color = fromQColor(color); });
}

double HighlightEditor::radiusRatio() const {
    return shown_ ? shown_->circleRadiusRatio() : 0;
}

void HighlightEditor::setRadiusRatio(double ratio) {
    edit([&](HighlightDraft& draft) { draft.shape = withRadius(draft, ratio); });
}

double HighlightEditor::strokeWidthRatio() const {
    return shown_ ? shown_->shape.strokeWidthRatio : 0;
}

void HighlightEditor::setStrokeWidthRatio(double ratio) {
    edit([&](HighlightDraft& draft) { draft.shape.strokeWidthRatio = ratio; });
}

double HighlightEditor::durationSec() const {
    return shown_ ? shown_->durationSec : 0;
}

void HighlightEditor::setDurationSec(double seconds) {
    edit([&](HighlightDraft& draft) { draft.durationSec = seconds; });
}

QString HighlightEditor::sizeText() const {
    return shown_ ? radiusText(shown_->circleRadiusRatio()) : QString();
}

QString HighlightEditor::strokeText() const {
    return shown_ ? zelvra::strokeText(shown_->shape.strokeWidthRatio) : QString();
}

QString HighlightEditor::durationText() const {
    return shown_ ? zelvra::durationText(shown_->durationSec) : QString();
}

void HighlightEditor::setCanvasSize(const QSizeF& size) {
    if (std::exchange(canvasSize_, size) != size) {
        Q_EMIT placesChanged();
    }
}

QRectF HighlightEditor::imageRect() const {
    const QSizeF frame = shown_ ? QSizeF(shown_->frame.width(), shown_->frame.height()) : QSizeF();
    return aspectFitRect(frame, canvasSize_);
}

QPointF HighlightEditor::pointOf(Grip handle) const {
    return shown_ ? handlePoint(shown_->shape, handle, imageRect()) : QPointF();
}

double HighlightEditor::angle() const {
    return shown_ ? shapeAngle(shown_->shape, imageRect()) : 0;
}

bool HighlightEditor::hasEnd1() const {
    return shown_ && hasHandle(shown_->shape.kind, Grip::End1);
}

QString HighlightEditor::endTip() const {
    return shown_ ? endTipOf(shown_->shape.kind) : QString();
}

void HighlightEditor::beginDrag(Grip grip, const QPointF& position) {
    if (shown_) {
        drag_.emplace(grip, position, shown_->shape, imageRect());
    }
}

void HighlightEditor::dragTo(const QPointF& position) {
    if (!drag_) {
        return;
    }
    if (const std::optional<ShapeAnchors> anchors = drag_->moveTo(position)) {
        setAnchors(*anchors);
    }
}

void HighlightEditor::endDrag() {
    drag_.reset();
}

bool HighlightEditor::nudge(Grip handle, int key, int modifiers) {
    const std::optional<QPointF> direction = directionOf(key);
    if (!direction || !shown_) {
        return false;
    }
    const double step = (modifiers & Qt::ShiftModifier) != 0 ? 10 : 1;
    const Point offset = normalised(*direction * step, QSizeF(shown_->frame.width(), shown_->frame.height()));
    setAnchors(moved({shown_->shape.p1, shown_->shape.p2}, handle, offset));
    return true;
}

void HighlightEditor::setAnchors(const ShapeAnchors& anchors) {
    edit([&](HighlightDraft& draft) {
        draft.shape.p1 = anchors.p1;
        draft.shape.p2 = anchors.p2;
    });
}

} // namespace zelvra
