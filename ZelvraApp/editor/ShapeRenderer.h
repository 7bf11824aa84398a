// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/editor/ShapeOutline.h"
#include "ZelvraApp/session/HighlightDraft.h"

#include <QQuickPaintedItem>
#include <qqml.h>

#include <optional>

namespace zelvra {

/// Draws one shape over a picture that fills `imageRect` of this item; takes no input. Parts outside the
/// picture are drawn too, as far as the item reaches, so the item fills the view:
///
///     ShapeRenderer {
///         anchors.fill: parent
///         imageRect: ...                                  // or: pictureSize: session.displaySize
///         highlight: session.previewHighlight             // or: draft: editor.draft
///     }
///
/// Draws nothing if neither is set, and the draft if both are. With `pictureSize` the picture is fitted into
/// the item.
class ShapeRenderer : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(std::optional<zelvra::Highlight> highlight READ highlight WRITE setHighlight)
    Q_PROPERTY(std::optional<zelvra::HighlightDraft> draft READ draft WRITE setDraft)
    Q_PROPERTY(QRectF imageRect READ imageRect WRITE setImageRect NOTIFY imageRectChanged)
    Q_PROPERTY(QSizeF pictureSize READ pictureSize WRITE setPictureSize)

public:
    explicit ShapeRenderer(QQuickItem* parent = nullptr);

    const std::optional<Highlight>& highlight() const { return highlight_; }
    void setHighlight(const std::optional<Highlight>& highlight);
    const std::optional<HighlightDraft>& draft() const { return draft_; }
    void setDraft(const std::optional<HighlightDraft>& draft);
    const QRectF& imageRect() const { return imageRect_; }
    void setImageRect(const QRectF& rect);
    const QSizeF& pictureSize() const { return pictureSize_; }
    void setPictureSize(const QSizeF& size);

    void paint(QPainter* painter) override;

Q_SIGNALS:
    void imageRectChanged();

protected:
    void geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) override;

private:
    std::optional<DraftShape> shape() const;
    void fitPicture();
    /// Repaints what the shape covered and what it covers now.
    void outlineMayHaveChanged();

    std::optional<Highlight> highlight_;
    std::optional<HighlightDraft> draft_;
    QRectF imageRect_;
    QSizeF pictureSize_;
    ShapeOutline outline_; ///< pen in the shape's colour
};

} // namespace zelvra
