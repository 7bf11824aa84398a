// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/bridge/Session.h"
#include "ZelvraApp/editor/ShapeDrag.h"

#include <QColor>
#include <QObject>
#include <QPointF>
#include <QRectF>
#include <qqml.h>

#include <optional>

namespace zelvra {

/// The session's draft as the editor's views show and change it. Every change is stored in the session at
/// once. This keeps only a drag that is under way, and the last draft, which is shown while the editor
/// closes.
///
/// Positions are logical pixels of the canvas. Main thread.
class HighlightEditor : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(zelvra::Session* session READ session WRITE setSession REQUIRED)
    Q_PROPERTY(std::optional<zelvra::HighlightDraft> draft READ draft NOTIFY draftChanged)
    Q_PROPERTY(QString title READ title NOTIFY draftChanged)
    Q_PROPERTY(QString momentText READ momentText NOTIFY draftChanged)
    Q_PROPERTY(QString commitText READ commitText NOTIFY draftChanged)
    /// "circle", "arrow" or "rectangle".
    Q_PROPERTY(QString kind READ kind WRITE setKind NOTIFY draftChanged)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY draftChanged)
    Q_PROPERTY(double radiusRatio READ radiusRatio WRITE setRadiusRatio NOTIFY draftChanged)
    Q_PROPERTY(double strokeWidthRatio READ strokeWidthRatio WRITE setStrokeWidthRatio NOTIFY draftChanged)
    Q_PROPERTY(double durationSec READ durationSec WRITE setDurationSec NOTIFY draftChanged)
    Q_PROPERTY(QString sizeText READ sizeText NOTIFY draftChanged)
    Q_PROPERTY(QString strokeText READ strokeText NOTIFY draftChanged)
    Q_PROPERTY(QString durationText READ durationText NOTIFY draftChanged)

    Q_PROPERTY(QSizeF canvasSize READ canvasSize WRITE setCanvasSize NOTIFY placesChanged)
    /// Where the frame is on the canvas.
    Q_PROPERTY(QRectF imageRect READ imageRect NOTIFY placesChanged)
    Q_PROPERTY(QPointF movePoint READ movePoint NOTIFY placesChanged)
    Q_PROPERTY(QPointF end1Point READ end1Point NOTIFY placesChanged)
    Q_PROPERTY(QPointF end2Point READ end2Point NOTIFY placesChanged)
    Q_PROPERTY(double angle READ angle NOTIFY placesChanged)
    Q_PROPERTY(bool hasEnd1 READ hasEnd1 NOTIFY draftChanged)
    /// What dragging an end does.
    Q_PROPERTY(QString endTip READ endTip NOTIFY draftChanged)

public:
    explicit HighlightEditor(QObject* parent = nullptr);

    Session* session() const { return session_; }
    void setSession(Session* session);
    const std::optional<HighlightDraft>& draft() const { return shown_; }
    QString title() const;
    QString momentText() const;
    QString commitText() const;
    QString kind() const;
    void setKind(const QString& kind);
    QColor color() const;
    void setColor(const QColor& color);
    double radiusRatio() const;
    void setRadiusRatio(double ratio);
    double strokeWidthRatio() const;
    void setStrokeWidthRatio(double ratio);
    double durationSec() const;
    void setDurationSec(double seconds);
    QString sizeText() const;
    QString strokeText() const;
    QString durationText() const;

    const QSizeF& canvasSize() const { return canvasSize_; }
    void setCanvasSize(const QSizeF& size);
    QRectF imageRect() const;
    QPointF movePoint() const { return pointOf(Grip::Move); }
    QPointF end1Point() const { return pointOf(Grip::End1); }
    QPointF end2Point() const { return pointOf(Grip::End2); }
    double angle() const;
    bool hasEnd1() const;
    QString endTip() const;

    /// A drag, from the press of the button.
    Q_INVOKABLE void beginDrag(zelvra::grip::Grip grip, const QPointF& position);
    Q_INVOKABLE void dragTo(const QPointF& position);
    Q_INVOKABLE void endDrag();
    /// An arrow key moves the shape or the point that the handle stands for by a pixel of the frame, with
    /// Shift by ten. False for any other key.
    Q_INVOKABLE bool nudge(zelvra::grip::Grip handle, int key, int modifiers);

Q_SIGNALS:
    void draftChanged();
    void placesChanged();

private:
    void takeDraft();
    /// Applies `change` to a copy of the session's draft, and stores the copy in the session.
    template <class Change>
    void edit(Change change);
    void setAnchors(const ShapeAnchors& anchors);
    QPointF pointOf(Grip handle) const;

    Session* session_ = nullptr;
    std::optional<HighlightDraft> shown_;
    QSizeF canvasSize_;
    std::optional<ShapeDrag> drag_;
};

} // namespace zelvra
