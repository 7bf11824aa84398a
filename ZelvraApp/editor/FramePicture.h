// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/session/HighlightDraft.h"

#include <QQuickItem>
#include <qqml.h>

#include <optional>

namespace zelvra {

/// Shows a draft's frame in `imageRect`, moved by less than a pixel onto the screen's pixels. The frame is
/// scaled once for each size, and not while a shape moves over it.
class FramePicture : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(std::optional<zelvra::HighlightDraft> draft READ draft WRITE setDraft)
    Q_PROPERTY(QRectF imageRect READ imageRect WRITE setImageRect)

public:
    explicit FramePicture(QQuickItem* parent = nullptr);

    const std::optional<HighlightDraft>& draft() const { return draft_; }
    void setDraft(const std::optional<HighlightDraft>& draft);
    const QRectF& imageRect() const { return imageRect_; }
    void setImageRect(const QRectF& rect);

protected:
    QSGNode* updatePaintNode(QSGNode* old, UpdatePaintNodeData* data) override;
    void itemChange(ItemChange change, const ItemChangeData& value) override;

private:
    std::optional<HighlightDraft> draft_;
    QRectF imageRect_;
    bool otherFrame_ = false;
};

/// `rect` with its edges on whole pixels of a screen with `pixelRatio` pixels to a logical one; at least a
/// pixel large.
QRectF onWholePixels(const QRectF& rect, double pixelRatio);

} // namespace zelvra
