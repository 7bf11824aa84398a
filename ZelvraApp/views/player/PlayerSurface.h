// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/bridge/Session.h"

#include <QQuickItem>
#include <qqml.h>

namespace zelvra {

/// The player's picture in a window: as large as fits, in the middle, upright, in the movie's own shape. The
/// player draws it at its size on the screen, so it is not scaled twice. Draws nothing if there is no
/// picture.
class PlayerSurface : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(zelvra::Session* session READ session WRITE setSession NOTIFY sessionChanged REQUIRED)

public:
    explicit PlayerSurface(QQuickItem* parent = nullptr);

    Session* session() const { return session_; }
    void setSession(Session* session);
    /// Where the picture is, in this item's coordinates.
    QRectF pictureRect() const { return pictureRect_; }

Q_SIGNALS:
    void sessionChanged();

protected:
    QSGNode* updatePaintNode(QSGNode* old, UpdatePaintNodeData* data) override;
    void geometryChange(const QRectF& now, const QRectF& before) override;
    void itemChange(ItemChange change, const ItemChangeData& data) override;

private:
    void place();

    Session* session_ = nullptr;
    QRectF pictureRect_;
    QSize greatestSize_; ///< of the picture on the screen, in pixels, before turning
};

} // namespace zelvra
