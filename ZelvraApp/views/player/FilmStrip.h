// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/bridge/Session.h"

#include <QImage>
#include <QQuickPaintedItem>
#include <qqml.h>

#include <memory>
#include <stop_token>
#include <vector>

namespace zelvra {

/// Small pictures of the open movie side by side, the whole movie over the item's width. They are made when
/// the item is first shown for a movie, one after the other on a worker thread. Each is drawn as soon as it
/// is made.
class FilmStrip : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(zelvra::Session* session READ session WRITE setSession NOTIFY sessionChanged REQUIRED)

public:
    explicit FilmStrip(QQuickItem* parent = nullptr);
    ~FilmStrip() override;

    Session* session() const { return session_; }
    void setSession(Session* session);

    void paint(QPainter* painter) override;

Q_SIGNALS:
    void sessionChanged();

protected:
    void geometryChange(const QRectF& now, const QRectF& before) override;
    void itemChange(ItemChange change, const ItemChangeData& data) override;

private:
    /// Makes the pictures if the present ones do not fit the movie and the size.
    void refresh();
    void take(std::size_t index, const QImage& thumbnail);

    Session* session_ = nullptr;
    std::weak_ptr<const Asset> movie_; ///< that the pictures show
    std::vector<QImage> thumbnails_;   ///< null: not made yet
    QSize madeFor_;                    ///< pixels of the screen
    std::stop_source stop_;
};

} // namespace zelvra
