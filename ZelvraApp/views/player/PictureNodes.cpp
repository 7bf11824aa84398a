// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/views/player/PictureNodes.h"

#include <QSGTexture>

namespace zelvra {

PictureNode::PictureNode(QQuickWindow& window) : window_(window), image_(window.createImageNode()) {
    image_->setOwnsTexture(true);
    image_->setFiltering(QSGTexture::Linear);
    appendChildNode(image_.get());
}

void PictureNode::show(QSGTexture* texture, const PicturePlacement& placement) {
    image_->setTexture(texture);
    image_->setRect(placement.coded);
    setMatrix(placement.toItem);
}

void SoftwarePictureNode::update(const QImage& picture, const PicturePlacement& placement) {
    show(window_.createTextureFromImage(picture, QQuickWindow::TextureIsOpaque), placement);
}

OpenGLPictureNode::OpenGLPictureNode(QQuickWindow& window, OpenGLPicture& picture)
    : PictureNode(window), picture_(picture) {
    connect(&window, &QQuickWindow::beforeRendering, this, [this] { draw(); }, Qt::DirectConnection);
}

void OpenGLPictureNode::update(const PicturePlacement& placement, QSize pixels) {
    if (!framebuffer_ || framebuffer_->size() != pixels) {
        framebuffer_ = std::make_unique<QOpenGLFramebufferObject>(pixels);
        show(QNativeInterface::QSGOpenGLTexture::fromNative(framebuffer_->texture(), &window_, pixels),
             placement);
    } else {
        image_->setRect(placement.coded);
        setMatrix(placement.toItem);
    }
    outdated_ = true;
}

void OpenGLPictureNode::draw() {
    if (outdated_ && picture_.isStarted()) {
        outdated_ = false;
        window_.beginExternalCommands();
        picture_.draw(framebuffer_->handle(), framebuffer_->size());
        window_.endExternalCommands();
        image_->markDirty(QSGNode::DirtyMaterial);
    }
}

} // namespace zelvra
