// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/editor/ShapeRenderer.h"

#include "ZelvraApp/editor/AspectFit.h"
#include "ZelvraApp/session/Colors.h"

#include <QPainter>

#include <utility>

namespace zelvra {

ShapeRenderer::ShapeRenderer(QQuickItem* parent) : QQuickPaintedItem(parent) {
    setAntialiasing(true);
}

void ShapeRenderer::setHighlight(const std::optional<Highlight>& highlight) {
    highlight_ = highlight;
    outlineMayHaveChanged();
}

void ShapeRenderer::setDraft(const std::optional<HighlightDraft>& draft) {
    draft_ = draft;
    outlineMayHaveChanged();
}

std::optional<DraftShape> ShapeRenderer::shape() const {
    if (draft_) {
        return draft_->shape;
    }
    return highlight_ ? std::optional(draftShape(highlight_->shape)) : std::nullopt;
}

void ShapeRenderer::setImageRect(const QRectF& rect) {
    if (std::exchange(imageRect_, rect) != rect) {
        outlineMayHaveChanged();
        Q_EMIT imageRectChanged();
    }
}

void ShapeRenderer::setPictureSize(const QSizeF& size) {
    pictureSize_ = size;
    fitPicture();
}

void ShapeRenderer::geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) {
    QQuickPaintedItem::geometryChange(newGeometry, oldGeometry);
    fitPicture();
}

void ShapeRenderer::fitPicture() {
    if (!pictureSize_.isEmpty()) {
        setImageRect(aspectFitRect(pictureSize_, size()));
    }
}

void ShapeRenderer::outlineMayHaveChanged() {
    const QRectF before = outline_.bounds();
    outline_ = {};
    if (const std::optional<DraftShape> now = shape()) {
        outline_ = shapeOutline(*now, imageRect_);
        outline_.pen.setColor(toQColor(now->color));
    }
    const QRectF touched = before.united(outline_.bounds()).intersected(boundingRect());
    if (!touched.isEmpty()) {
        update(touched.toAlignedRect());
    }
}

void ShapeRenderer::paint(QPainter* painter) {
    painter->strokePath(outline_.path, outline_.pen);
}

} // namespace zelvra
