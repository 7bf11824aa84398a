// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/bridge/Session.h"
#include "ZelvraApp/views/timeline/TimelineGeometry.h"

#include <QColor>
#include <QObject>
#include <QPointer>
#include <qqml.h>

#include <optional>
#include <vector>

namespace zelvra {

/// What the timeline strip shows, and what a pointer or a key does on it. It turns the session's times into
/// positions, and presses, moves and releases into the session's operations. While an edge is dragged the
/// shown window does not change, and the whole drag is one step of undo.
///
/// Positions are in the strip's own logical pixels. Main thread.
class TimelineStripModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(zelvra::Session* session READ session WRITE setSession NOTIFY sessionChanged REQUIRED)
    Q_PROPERTY(double width READ width WRITE setWidth NOTIFY axisChanged)
    Q_PROPERTY(double height MEMBER height_ NOTIFY axisChanged)
    /// Less than the whole source is shown: the ends are labelled, and the trim has handles.
    Q_PROPERTY(bool isZoomed READ isZoomed NOTIFY axisChanged)
    Q_PROPERTY(QString startLabel READ startLabel NOTIFY axisChanged)
    Q_PROPERTY(QString endLabel READ endLabel NOTIFY axisChanged)
    Q_PROPERTY(bool showsPlayhead READ showsPlayhead NOTIFY playheadChanged)
    Q_PROPERTY(double playheadX READ playheadX NOTIFY playheadChanged)
    Q_PROPERTY(bool showsTrim READ showsTrim NOTIFY trimChanged)
    Q_PROPERTY(bool showsHandles READ showsHandles NOTIFY trimChanged)
    Q_PROPERTY(double trimX READ trimX NOTIFY trimChanged)
    Q_PROPERTY(double trimWidth READ trimWidth NOTIFY trimChanged)
    Q_PROPERTY(double startHandleX READ startHandleX NOTIFY trimChanged)
    Q_PROPERTY(double endHandleX READ endHandleX NOTIFY trimChanged)
    Q_PROPERTY(bool draggingEdge READ draggingEdge NOTIFY draggingEdgeChanged)
    /// Of what the pointer is over: its tooltip, the tooltip's place, and whether it can be dragged or
    /// clicked.
    Q_PROPERTY(QString tip READ tip NOTIFY hoverChanged)
    Q_PROPERTY(double tipX READ tipX NOTIFY hoverChanged)
    Q_PROPERTY(bool overHandle READ overHandle NOTIFY hoverChanged)
    Q_PROPERTY(bool overDot READ overDot NOTIFY hoverChanged)
    /// Of the dot that keys act on.
    Q_PROPERTY(QString currentDotTip READ currentDotTip NOTIFY currentDotChanged)

public:
    /// A highlight.
    struct Dot {
        QString id;
        double seconds = 0;
        double x = 0;
        QColor color;
    };
    enum class Edge { start, end };

    using QObject::QObject;

    Session* session() const { return session_; }
    void setSession(Session* session);
    double width() const { return axis_.width(); }
    void setWidth(double width);
    bool isZoomed() const;
    QString startLabel() const;
    QString endLabel() const;
    bool showsPlayhead() const;
    double playheadX() const;
    bool showsTrim() const;
    bool showsHandles() const { return showsTrim() && isZoomed(); }
    double trimX() const;
    double trimWidth() const;
    double startHandleX() const;
    double endHandleX() const;
    bool draggingEdge() const { return frozenWindow_.has_value(); }
    QString tip() const;
    double tipX() const;
    bool overHandle() const;
    bool overDot() const;
    /// The dot that keys act on, by its place; -1 if there is none.
    int currentDot() const { return currentDot_; }
    QString currentDotTip() const;

    /// Of all marked clips but the one that is edited; those outside the window are at its ends.
    const std::vector<TimelineBar>& clipBars() const { return clipBars_; }
    /// Of the highlights in the window.
    const std::vector<Dot>& dots() const { return dots_; }

    // The pointer over the strip. A press on an edge's handle that then moves drags the edge; one that is
    // released in the same place is a click.
    Q_INVOKABLE void hover(double x, double y);
    Q_INVOKABLE void leave();
    Q_INVOKABLE void press(double x, double y);
    Q_INVOKABLE void move(double x);
    Q_INVOKABLE void release(double x, double y);
    Q_INVOKABLE void cancel();

    // Keys. An arrow key nudges the edge whose handle has the focus; false for any other key. Nudges that
    // follow each other while the key is held are one step of undo.
    Q_INVOKABLE bool nudgeStart(int key, int modifiers, bool keyWasHeld);
    Q_INVOKABLE bool nudgeEnd(int key, int modifiers, bool keyWasHeld);
    Q_INVOKABLE void goToDot(int step);
    Q_INVOKABLE void editCurrentDot();

Q_SIGNALS:
    void sessionChanged();
    void axisChanged();
    void playheadChanged();
    void trimChanged();
    void draggingEdgeChanged();
    void hoverChanged();
    void currentDotChanged();
    void clipBarsChanged();
    void dotsChanged();

private:
    double duration() const { return session_ ? session_->duration() : 0; }
    std::optional<TimeSpan> trim() const;
    std::optional<TimeSpan> handles() const;
    TimelineTarget targetAtPoint(double x, double y) const;
    QString tipOf(const Dot& dot) const;
    void updateAxis();
    void updateClipBars();
    void updateDots();
    void updateTrim();
    void setTarget(std::optional<TimelineTarget> target);
    void setCurrentDot(int dot);
    void beginDrag();
    void endDrag();
    void dragEdge(Edge edge, double toSeconds);
    bool nudge(Edge edge, std::optional<double> seconds, bool keyWasHeld);

    QPointer<Session> session_;
    TimelineAxis axis_;
    double height_ = 0;
    std::optional<TimeSpan> frozenWindow_; ///< present while an edge is dragged
    std::vector<TimelineBar> clipBars_;
    std::vector<Dot> dots_;
    std::optional<TimelineTarget> hovered_;
    std::optional<TimelineTarget> pressed_;
    double pressX_ = 0;
    int currentDot_ = -1;
};

} // namespace zelvra
