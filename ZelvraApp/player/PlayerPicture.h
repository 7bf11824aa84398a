// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QSize>

namespace zelvra {

/// The pictures of a player on their way to a window. How they get there depends on what the window is drawn
/// with: SoftwarePicture draws into memory and works everywhere; a path over OpenGL draws into the window's
/// own texture. A player has one at a time, gives it the size of its item's pictures, and frees it before its
/// core ends.
///
/// Pictures are as coded, in square pixels but not turned: the view turns them by the item's
/// `preferredTransform`.
class PlayerPicture : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

    /// The size of the pictures to come, in square pixels before turning; empty: nothing to show.
    virtual void setNaturalSize(QSize size) = 0;
    /// No larger than needed: the greatest size in device pixels in which the view shows them, before
    /// turning.
    virtual void setGreatestSize(QSize size) = 0;

    /// Whether pictures can be drawn, without which the core does not load a movie.
    virtual bool isStarted() const { return true; }

Q_SIGNALS:
    /// It `isStarted` now. Any thread.
    void started();
    /// There is a new picture. Emitted on the thread of this object.
    void changed();
};

} // namespace zelvra
