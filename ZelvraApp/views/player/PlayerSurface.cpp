// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/views/player/PlayerSurface.h"

#include "ZelvraApp/editor/AspectFit.h"
#include "ZelvraApp/player/OpenGLPicture.h"
#include "ZelvraApp/player/SoftwarePicture.h"
#include "ZelvraApp/views/player/PictureNodes.h"

#include <QImage>
#include <QMatrix4x4>
#include <QQuickWindow>
#include <QTransform>

#include <cmath>
#include <memory>

namespace zelvra {

namespace {

QTransform turnOf(const SourceInfo& info) {
    const AffineTransform& turn = info.preferredTransform;
    return {turn.a, turn.b, turn.c, turn.d, turn.tx, turn.ty};
}

bool isOnItsSide(const SourceInfo& info) {
    return turnOf(info).m11() == 0;
}

/// Upright pictures keep the plain rectangle, which is the fastest to draw.
PicturePlacement placement(const SourceInfo& info, const QRectF& shown) {
    if (info.preferredTransform.isIdentity()) {
        return {shown, {}};
    }
    const QTransform turn = turnOf(info);
    const QRectF coded(0, 0, info.naturalSize.width, info.naturalSize.height);
    const QRectF upright = turn.mapRect(coded);
    return {coded, QMatrix4x4(turn * QTransform::fromTranslate(-upright.x(), -upright.y()) *
                              QTransform::fromScale(shown.width() / upright.width(),
                                                    shown.height() / upright.height()) *
                              QTransform::fromTranslate(shown.x(), shown.y()))};
}

/// On whole pixels of the screen, so that a picture of that size is copied and not blurred.
QRectF onPixels(const QRectF& rect, double ratio) {
    const QRect whole = QRectF(rect.topLeft() * ratio, rect.size() * ratio).toRect();
    return {QPointF(whole.topLeft()) / ratio, QSizeF(whole.size()) / ratio};
}

} // namespace

PlayerSurface::PlayerSurface(QQuickItem* parent) : QQuickItem(parent) {
    setFlag(ItemHasContents);
}

void PlayerSurface::setSession(Session* session) {
    session_ = session;
    connect(&session->state()->player(), &Player::pictureChanged, this, &QQuickItem::update);
    connect(session, &Session::sourceInfoChanged, this, &PlayerSurface::place);
    place();
    Q_EMIT sessionChanged();
}

/// Called on the scene graph's thread while the main thread waits.
QSGNode* PlayerSurface::updatePaintNode(QSGNode* old, UpdatePaintNodeData* /*data*/) {
    std::unique_ptr<QSGNode> node(old);
    Player& player = session_->state()->player();
    const PlayerItem* item = player.currentItem();
    if (!item || pictureRect_.isEmpty()) {
        return nullptr;
    }
    const PicturePlacement place = placement(item->info, pictureRect_);
    if (auto* drawn = qobject_cast<OpenGLPicture*>(&player.picture())) {
        if (dynamic_cast<OpenGLPictureNode*>(node.get()) == nullptr) {
            node = std::make_unique<OpenGLPictureNode>(*window(), *drawn);
        }
        static_cast<OpenGLPictureNode&>(*node).update(place, greatestSize_);
        return node.release();
    }
    const QImage image = static_cast<const SoftwarePicture&>(player.picture()).image();
    if (image.isNull()) {
        return nullptr;
    }
    if (dynamic_cast<SoftwarePictureNode*>(node.get()) ==
        nullptr) { // it may have been drawn by OpenGL before
        node = std::make_unique<SoftwarePictureNode>(*window());
    }
    static_cast<SoftwarePictureNode&>(*node).update(image, place);
    return node.release();
}

void PlayerSurface::geometryChange(const QRectF& now, const QRectF& before) {
    QQuickItem::geometryChange(now, before);
    place();
}

void PlayerSurface::itemChange(ItemChange change, const ItemChangeData& data) {
    QQuickItem::itemChange(change, data);
    if (change == ItemDevicePixelRatioHasChanged || (change == ItemSceneChange && data.window)) {
        place();
    }
}

void PlayerSurface::place() {
    if (!session_ || !window()) {
        return;
    }
    pictureRect_ = {};
    if (const auto& info = session_->state()->sourceInfo()) {
        const double ratio = window()->effectiveDevicePixelRatio();
        pictureRect_ = onPixels(aspectFitRect(session_->displaySize(), size()), ratio);
        QSizeF pixels = pictureRect_.size() * ratio;
        if (isOnItsSide(*info)) {
            pixels.transpose();
        }
        greatestSize_ = pixels.toSize();
        session_->state()->player().picture().setGreatestSize(greatestSize_);
    }
    update();
}

} // namespace zelvra
