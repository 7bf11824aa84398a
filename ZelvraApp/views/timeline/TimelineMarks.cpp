// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/views/timeline/TimelineMarks.h"

#include "ZelvraApp/controls/DiscShadow.h"

#include <QPainter>
#include <QPainterPath>

namespace zelvra {

namespace {

constexpr double clipHeight = 5;
constexpr double dotBorder = 1.5;

QColor translucent(const QColor& color, float opacity) {
    QColor result = color;
    result.setAlphaF(opacity);
    return result;
}

void paintDot(QPainter& painter, const QPointF& center, const QColor& color) {
    const double radius = timelineDotDiameter / 2;
    paintDiscShadow(painter, center, radius);
    painter.setBrush(color);
    painter.drawEllipse(center, radius, radius);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(translucent(Qt::white, 0.9F), dotBorder));
    painter.drawEllipse(center, radius - dotBorder / 2, radius - dotBorder / 2);
    painter.setPen(Qt::NoPen);
}

} // namespace

void TimelineMarks::setStrip(TimelineStripModel* strip) {
    if (strip_ == strip) {
        return;
    }
    strip_ = strip;
    if (strip != nullptr) {
        const auto repaint = [this](Kind kind) {
            if (kind_ == kind) {
                update();
            }
        };
        connect(strip, &TimelineStripModel::clipBarsChanged, this, [repaint] { repaint(Clips); });
        connect(strip, &TimelineStripModel::dotsChanged, this, [repaint] { repaint(Highlights); });
        connect(strip, &TimelineStripModel::currentDotChanged, this, [repaint] { repaint(Highlights); });
    }
    Q_EMIT stripChanged();
}

void TimelineMarks::setKind(Kind kind) {
    kind_ = kind;
    update();
    Q_EMIT kindChanged();
}

void TimelineMarks::setShowsCurrentDot(bool on) {
    showsCurrentDot_ = on;
    update();
    Q_EMIT showsCurrentDotChanged();
}

void TimelineMarks::paint(QPainter* painter) {
    if (!strip_) {
        return;
    }
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    painter->translate(overhang_, height() / 2);
    if (kind_ == Clips) {
        paintClips(*painter);
    } else {
        paintDots(*painter);
    }
}

/// As one outline, so that clips that overlap, or gather at an end, are no brighter than others.
void TimelineMarks::paintClips(QPainter& painter) const {
    QPainterPath outline;
    outline.setFillRule(Qt::WindingFill);
    for (const TimelineBar& bar : strip_->clipBars()) {
        outline.addRoundedRect(QRectF(bar.x, -clipHeight / 2, bar.width, clipHeight),
                               std::min(bar.width, clipHeight) / 2, clipHeight / 2);
    }
    painter.fillPath(outline, translucent(Qt::white, 0.28F));
}

void TimelineMarks::paintDots(QPainter& painter) const {
    for (const TimelineStripModel::Dot& dot : strip_->dots()) {
        paintDot(painter, {dot.x, 0}, dot.color);
    }
    if (showsCurrentDot_ && strip_->currentDot() >= 0) {
        const double x = strip_->dots()[static_cast<std::size_t>(strip_->currentDot())].x;
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(Qt::white, 2));
        painter.drawEllipse(QPointF(x, 0), timelineDotDiameter / 2 + 2, timelineDotDiameter / 2 + 2);
    }
}

} // namespace zelvra
