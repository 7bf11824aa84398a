// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QSize>

struct mpv_handle;

namespace zelvra {

/// The two cores whose pictures a player shows, one at a time.
struct PictureCores {
    mpv_handle& film;   ///< plays
    mpv_handle& stills; ///< shows single pictures
};

/// Brings a player's pictures to a window. How depends on what the window is drawn with: SoftwarePicture
/// draws into memory and works everywhere; OpenGLPicture draws into a texture of the window. A player has one
/// at a time, sets it to the size of its item's pictures, and frees it before its cores end.
///
/// Pictures are as coded, in square pixels but not turned: the view turns them by the item's
/// `preferredTransform`.
class PlayerPicture : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

    /// The size of the next pictures, in square pixels before turning. Empty: there is nothing to show.
    virtual void setNaturalSize(QSize size) = 0;
    /// The greatest size in device pixels in which the view shows them, before turning: they are drawn no
    /// larger.
    virtual void setGreatestSize(QSize size) { greatestSize_ = size; }
    QSize greatestSize() const { return greatestSize_; }

    /// Shows what the film's core shows, from now on.
    virtual void showFilm() = 0;
    /// Shows the next picture of the stills' core as soon as it comes, and those after it.
    virtual void showStills() = 0;

    /// Whether pictures can be drawn. Before that the cores load no movie.
    virtual bool isStarted() const { return true; }

Q_SIGNALS:
    /// It `isStarted` now. Any thread.
    void started();
    /// It can never start: one line gives the cause. Any thread.
    void failed(QString reason);
    /// There is a new picture. Emitted on the thread of this object.
    void changed();

private:
    QSize greatestSize_;
};

} // namespace zelvra
