// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/player/OpenGLPicture.h"

#include "ZelvraCore/records/MediaError.h"

#include <QOpenGLContext>

#include <array>
#include <mpv/render.h>
#include <mpv/render_gl.h>
#include <string>

namespace zelvra {

namespace {

void* address(void* /*unused*/, const char* name) {
    return reinterpret_cast<void*>(QOpenGLContext::currentContext()->getProcAddress(name));
}

} // namespace

void OpenGLPicture::Free::operator()(mpv_render_context* context) const {
    mpv_render_context_free(context);
}

OpenGLPicture::OpenGLPicture(mpv_handle& core, QObject* parent) : PlayerPicture(parent), core_(core) {}

OpenGLPicture::~OpenGLPicture() = default;

void OpenGLPicture::setNaturalSize(QSize /*size*/) {
    Q_EMIT changed();
}

void OpenGLPicture::setGreatestSize(QSize /*size*/) {}

void OpenGLPicture::start() {
    std::string api = MPV_RENDER_API_TYPE_OPENGL;
    mpv_opengl_init_params functions{address, nullptr};
    std::array parameters{mpv_render_param{MPV_RENDER_PARAM_API_TYPE, api.data()},
                          mpv_render_param{MPV_RENDER_PARAM_OPENGL_INIT_PARAMS, &functions},
                          mpv_render_param{MPV_RENDER_PARAM_INVALID, nullptr}};
    mpv_render_context* context = nullptr;
    const int error = mpv_render_context_create(&context, &core_, parameters.data());
    if (error < 0) {
        throw MediaError(MediaError::Cause::unsupported,
                         std::string("the player cannot draw: ") + mpv_error_string(error));
    }
    context_.reset(context);
    mpv_render_context_set_update_callback(
        context,
        [](void* self) {
            QMetaObject::invokeMethod(static_cast<OpenGLPicture*>(self), &PlayerPicture::changed,
                                      Qt::QueuedConnection);
        },
        this);
    started_ = true;
    Q_EMIT started();
}

void OpenGLPicture::draw(unsigned framebuffer, QSize size) {
    mpv_render_context_update(context_.get());
    mpv_opengl_fbo target{static_cast<int>(framebuffer), size.width(), size.height(), 0};
    int wait = 0; // the window's own rhythm is enough
    std::array parameters{mpv_render_param{MPV_RENDER_PARAM_OPENGL_FBO, &target},
                          mpv_render_param{MPV_RENDER_PARAM_BLOCK_FOR_TARGET_TIME, &wait},
                          mpv_render_param{MPV_RENDER_PARAM_INVALID, nullptr}};
    mpv_render_context_render(context_.get(), parameters.data());
}

void OpenGLPicture::stop() {
    started_ = false;
    context_.reset();
}

} // namespace zelvra
