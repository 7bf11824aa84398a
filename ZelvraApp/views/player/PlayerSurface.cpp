#include "ZelvraApp/views/player/PlayerSurface.h"

#include "ZelvraApp/editor/AspectFit.h"
#include "ZelvraApp/platform/SoftwarePicture.h"

#include <QImage>
#include <QMatrix4x4>
#include <QQuickWindow>
#include <QSGImageNode>
#include <QSGTransformNode>
#include <QTransform>

#include <cmath>
#include <memory>

namespace zelvra {

namespace {

QTransform turnOf(const SourceInfo& info) {
    const AffineTransform& turn = info.preferredTransform;
    return {turn.a, turn.b, turn.c, turn.d, turn.tx, turn.ty};
}

/// From the picture as it is coded, in square pixels, to where it is shown.
QTransform placement(const SourceInfo& info, const QRectF& shown) {
    const QTransform turn = turnOf(info);
    const QRectF upright = turn.mapRect(QRectF(0, 0, info.naturalSize.width, info.naturalSize.height));
    return turn * QTransform::fromTranslate(-upright.x(), -upright.y()) *
           QTransform::fromScale(shown.width() / upright.width(), shown.height() / upright.height()) *
           QTransform::fromTranslate(shown.x(), shown.y());
}

/// On whole pixels of the screen, so that a picture of that size is copied and not blurred.
QRectF onPixels(const QRectF& rect, double ratio) {
    const QRect whole = QRectF(rect.topLeft() * ratio, rect.size() * ratio).toRect();
    return {QPointF(whole.topLeft()) / ratio, QSizeF(whole.size()) / ratio};
}

class PictureNode : public QSGTransformNode {
public:
    explicit PictureNode(QQuickWindow& window) : picture_(window.createImageNode()) {
        picture_->setOwnsTexture(true);
        picture_->setFiltering(QSGTexture::Linear);
        appendChildNode(picture_.get());
    }

    void show(QSGTexture* texture, const SourceInfo& info, const QRectF& shown) {
        picture_->setTexture(texture);
        if (info.preferredTransform.isIdentity()) {
            setMatrix({});
            picture_->setRect(shown);
        } else {
            setMatrix(QMatrix4x4(placement(info, shown)));
            picture_->setRect(0, 0, info.naturalSize.width, info.naturalSize.height);
        }
    }

private:
    std::unique_ptr<QSGImageNode> picture_;
};

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

/// The thread of the window's pictures, while this one waits.
QSGNode* PlayerSurface::updatePaintNode(QSGNode* old, UpdatePaintNodeData* /*data*/) {
    auto node = std::unique_ptr<PictureNode>(static_cast<PictureNode*>(old));
    const PlayerItem* item = session_->state()->player().currentItem();
    const auto* picture = qobject_cast<const SoftwarePicture*>(&session_->state()->player().picture());
    const QImage image = picture && item ? picture->image() : QImage();
    if (image.isNull() || pictureRect_.isEmpty()) {
        return nullptr;
    }
    if (!node) {
        node = std::make_unique<PictureNode>(*window());
    }
    node->show(window()->createTextureFromImage(image, QQuickWindow::TextureIsOpaque), item->info,
               pictureRect_);
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
    QRectF shown;
    if (const auto& info = session_->state()->sourceInfo()) {
        const double ratio = window()->effectiveDevicePixelRatio();
        shown = onPixels(aspectFitRect(session_->displaySize(), size()), ratio);
        QSizeF pixels = shown.size() * ratio;
        if (turnOf(*info).m11() == 0) {
            pixels.transpose();
        }
        session_->state()->player().picture().setGreatestSize(pixels.toSize());
    }
    if (shown != pictureRect_) {
        pictureRect_ = shown;
        Q_EMIT pictureRectChanged();
    }
    update();
}

} // namespace zelvra
