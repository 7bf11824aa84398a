// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/player/OpenGLPicture.h"

#include <QImage>
#include <QMatrix4x4>
#include <QObject>
#include <QOpenGLFramebufferObject>
#include <QQuickWindow>
#include <QRectF>
#include <QSGImageNode>
#include <QSGTransformNode>
#include <memory>

namespace zelvra {

/// How a coded picture is placed in an item: its size before turning, and the transform from there to the
/// item.
struct PicturePlacement {
    QRectF coded;
    QMatrix4x4 toItem;
};

/// Scene graph nodes that show a player's picture. They live on the thread that draws the window.
class PictureNode : public QSGTransformNode {
public:
    explicit PictureNode(QQuickWindow& window);

protected:
    void show(QSGTexture* texture, const PicturePlacement& placement);

    QQuickWindow& window_;
    std::unique_ptr<QSGImageNode> image_;
};

class SoftwarePictureNode : public PictureNode {
public:
    using PictureNode::PictureNode;
    void update(const QImage& picture, const PicturePlacement& placement);
};

/// Draws the picture before the window is drawn, into a framebuffer that the window then takes as a texture.
class OpenGLPictureNode : public QObject, public PictureNode {
public:
    OpenGLPictureNode(QQuickWindow& window, OpenGLPicture& picture);
    /// `pixels`: as large as the picture is on the screen, before turning.
    void update(const PicturePlacement& placement, QSize pixels);

private:
    void draw();

    OpenGLPicture& picture_;
    std::unique_ptr<QOpenGLFramebufferObject> framebuffer_;
    bool outdated_ = false;
};

} // namespace zelvra
