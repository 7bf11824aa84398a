// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/editor/FramePicture.h"

#include <QQuickWindow>
#include <QSGImageNode>
#include <QSGTexture>

#include <algorithm>
#include <cmath>
#include <memory>
#include <utility>

namespace zelvra {

namespace {

/// Opaque, in the layout that a raster window copies fastest.
QImage scaledTo(const QSize& size, const Image& frame) {
    const Image::Raster& raster = frame.raster();
    const QImage whole(raster.rgba.data(), raster.width, raster.height, qsizetype{4} * raster.width,
                       QImage::Format_RGBA8888_Premultiplied);
    return whole.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
        .convertToFormat(QImage::Format_RGB32);
}

} // namespace

QRectF onWholePixels(const QRectF& rect, double pixelRatio) {
    const double left = std::round(rect.left() * pixelRatio);
    const double top = std::round(rect.top() * pixelRatio);
    const double width = std::max(std::round(rect.right() * pixelRatio) - left, 1.0);
    const double height = std::max(std::round(rect.bottom() * pixelRatio) - top, 1.0);
    return {left / pixelRatio, top / pixelRatio, width / pixelRatio, height / pixelRatio};
}

FramePicture::FramePicture(QQuickItem* parent) : QQuickItem(parent) {
    setFlag(ItemHasContents);
}

void FramePicture::setDraft(const std::optional<HighlightDraft>& draft) {
    const auto pixels = [](const std::optional<HighlightDraft>& of) {
        return of ? &of->frame.raster() : nullptr;
    };
    const bool other = pixels(draft) != pixels(draft_);
    draft_ = draft;
    if (other) {
        otherFrame_ = true;
        update();
    }
}

void FramePicture::setImageRect(const QRectF& rect) {
    if (std::exchange(imageRect_, rect) != rect) {
        update();
    }
}

void FramePicture::itemChange(ItemChange change, const ItemChangeData& value) {
    QQuickItem::itemChange(change, value);
    if (change == ItemDevicePixelRatioHasChanged) {
        update();
    }
}

QSGNode* FramePicture::updatePaintNode(QSGNode* old, UpdatePaintNodeData* /*data*/) {
    std::unique_ptr<QSGImageNode> node(static_cast<QSGImageNode*>(old));
    if (!draft_ || draft_->frame.width() == 0 || draft_->frame.height() == 0 || imageRect_.isEmpty()) {
        return nullptr;
    }
    if (!node) {
        node.reset(window()->createImageNode());
        node->setOwnsTexture(true);
        node->setFiltering(QSGTexture::Linear);
    }
    const double pixelRatio = window()->effectiveDevicePixelRatio();
    const QRectF rect = onWholePixels(imageRect_, pixelRatio);
    const QSize pixels = (rect.size() * pixelRatio).toSize();
    if (std::exchange(otherFrame_, false) || node->texture() == nullptr ||
        node->texture()->textureSize() != pixels) {
        node->setTexture(
            window()->createTextureFromImage(scaledTo(pixels, draft_->frame), QQuickWindow::TextureIsOpaque));
    }
    node->setRect(rect);
    return node.release();
}

} // namespace zelvra
