// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/views/player/FilmStrip.h"

#include "ZelvraApp/session/Background.h"
#include "ZelvraCore/Thumbnails.h"

#include <QCoreApplication>
#include <QPainter>
#include <QPointer>
#include <QQuickWindow>

#include <algorithm>
#include <cmath>

namespace zelvra {

namespace {

QImage copyOf(const Image& picture) {
    const Image::Raster& raster = picture.raster();
    constexpr int pixelBytes = 4;
    return QImage(raster.rgba.data(), raster.width, raster.height, raster.width * pixelBytes,
                  QImage::Format_RGBA8888_Premultiplied)
        .convertToFormat(QImage::Format_RGB32);
}

/// The middle of the picture that fills the place.
QRectF filling(const QSizeF& place, const QImage& picture) {
    const QSizeF part = place.scaled(picture.size(), Qt::KeepAspectRatio);
    return {(picture.width() - part.width()) / 2, (picture.height() - part.height()) / 2, part.width(),
            part.height()};
}

} // namespace

FilmStrip::FilmStrip(QQuickItem* parent) : QQuickPaintedItem(parent) {
    setOpaquePainting(true);
}

FilmStrip::~FilmStrip() {
    stop_.request_stop();
}

void FilmStrip::setSession(Session* session) {
    session_ = session;
    connect(session, &Session::sourceInfoChanged, this, &FilmStrip::refresh);
    Q_EMIT sessionChanged();
    refresh();
}

void FilmStrip::paint(QPainter* painter) {
    painter->fillRect(boundingRect(), Qt::black);
    painter->setRenderHint(QPainter::SmoothPixmapTransform);
    const double share = width() / static_cast<double>(std::max<std::size_t>(1, thumbnails_.size()));
    for (std::size_t i = 0; i < thumbnails_.size(); ++i) {
        if (!thumbnails_[i].isNull()) {
            const QRectF place(share * static_cast<double>(i), 0, share, height());
            painter->drawImage(place, thumbnails_[i], filling(place.size(), thumbnails_[i]));
        }
    }
}

void FilmStrip::geometryChange(const QRectF& now, const QRectF& before) {
    QQuickPaintedItem::geometryChange(now, before);
    refresh();
}

void FilmStrip::itemChange(ItemChange change, const ItemChangeData& data) {
    QQuickPaintedItem::itemChange(change, data);
    if (change == ItemVisibleHasChanged) {
        refresh();
    }
}

void FilmStrip::refresh() {
    const PlayerItem* item = session_ ? session_->state()->player().currentItem() : nullptr;
    if (!item || !isVisible() || !window() || size().isEmpty()) {
        return;
    }
    const QSize pixels = (size() * window()->effectiveDevicePixelRatio()).toSize();
    if (movie_.lock() == item->asset && madeFor_ == pixels) {
        return;
    }
    stop_.request_stop();
    stop_ = std::stop_source();
    movie_ = item->asset;
    madeFor_ = pixels;
    const Size shape = item->info.displaySize;
    const double one = pixels.height() * shape.width / std::max(1.0, shape.height);
    const auto count = static_cast<int>(std::lround(std::max(1.0, pixels.width() / std::max(1.0, one))));
    thumbnails_.assign(static_cast<std::size_t>(count), {});
    update();

    // Called on the worker thread. The program outlives the workers; this item may not.
    const auto show = [self = QPointer(this), stop = stop_.get_token()](std::size_t index,
                                                                        const zelvra::Image& thumbnail) {
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [self, stop, index, picture = copyOf(thumbnail)] {
                if (self && !stop.stop_requested()) {
                    self->take(index, picture);
                }
            },
            Qt::QueuedConnection);
    };
    onWorkerThread([asset = item->asset, request = ThumbnailRequest{count, pixels.height()}, show,
                    stop = stop_.get_token()] {
        try {
            makeThumbnails(*asset, request, show, stop);
        } catch (const std::exception&) {
            // The strip only helps to find one's way. Without it, the times and the player's picture still
            // do.
        }
    });
}

void FilmStrip::take(std::size_t index, const QImage& thumbnail) {
    if (index < thumbnails_.size()) {
        thumbnails_[index] = thumbnail;
        update();
    }
}

} // namespace zelvra
