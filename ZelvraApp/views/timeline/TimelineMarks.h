// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/views/timeline/TimelineStripModel.h"

#include <QQuickPaintedItem>
#include <qqml.h>

namespace zelvra {

/// Marks of the timeline strip of which there may be hundreds, painted as one item: the marked clips, or the
/// highlights' dots. It is painted again only when the marks change, not while an edge is dragged or the
/// playhead moves.
///
/// It reaches beyond the strip by `overhang` on both sides, as dots at the ends need room.
class TimelineMarks : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(zelvra::TimelineStripModel* strip READ strip WRITE setStrip NOTIFY stripChanged REQUIRED)
    Q_PROPERTY(Kind kind READ kind WRITE setKind NOTIFY kindChanged)
    Q_PROPERTY(double overhang MEMBER overhang_ CONSTANT)
    /// Shows which dot keys act on.
    Q_PROPERTY(
        bool showsCurrentDot READ showsCurrentDot WRITE setShowsCurrentDot NOTIFY showsCurrentDotChanged)

public:
    enum Kind { Clips, Highlights };
    Q_ENUM(Kind)

    using QQuickPaintedItem::QQuickPaintedItem;

    TimelineStripModel* strip() const { return strip_; }
    void setStrip(TimelineStripModel* strip);
    Kind kind() const { return kind_; }
    void setKind(Kind kind);
    bool showsCurrentDot() const { return showsCurrentDot_; }
    void setShowsCurrentDot(bool on);

    void paint(QPainter* painter) override;

Q_SIGNALS:
    void stripChanged();
    void kindChanged();
    void showsCurrentDotChanged();

private:
    void paintClips(QPainter& painter) const;
    void paintDots(QPainter& painter) const;

    QPointer<TimelineStripModel> strip_;
    Kind kind_ = Clips;
    double overhang_ = 10;
    bool showsCurrentDot_ = false;
};

} // namespace zelvra
