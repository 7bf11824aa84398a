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

bool hasNewFrame(mpv_render_context& context) {
    return (mpv_render_context_update(&context) & MPV_RENDER_UPDATE_FRAME) != 0;
}

/// Takes a frame that is not shown. The core waits for that.
void skipFrame(mpv_render_context& context) {
    int skip = 1;
    std::array parameters{mpv_render_param{MPV_RENDER_PARAM_SKIP_RENDERING, &skip},
                          mpv_render_param{MPV_RENDER_PARAM_INVALID, nullptr}};
    mpv_render_context_render(&context, parameters.data());
}

} // namespace

void OpenGLPicture::Free::operator()(mpv_render_context* context) const {
    mpv_render_context_free(context);
}

OpenGLPicture::OpenGLPicture(const PictureCores& cores, QObject* parent)
    : PlayerPicture(parent), cores_(cores) {}

OpenGLPicture::~OpenGLPicture() = default;

void OpenGLPicture::setNaturalSize(QSize /*size*/) {
    Q_EMIT changed();
}

void OpenGLPicture::showFilm() {
    wantsStills_ = false;
    Q_EMIT changed();
}

void OpenGLPicture::showStills() {
    wantsStills_ = true;
}

void OpenGLPicture::start() {
    try {
        film_ = makeContext(cores_.film);
        stills_ = makeContext(cores_.stills);
    } catch (const MediaError& error) {
        stop();
        Q_EMIT failed(QString::fromUtf8(error.what()));
        return;
    }
    started_ = true;
    Q_EMIT started();
}

OpenGLPicture::RenderContext OpenGLPicture::makeContext(mpv_handle& core) {
    std::string api = MPV_RENDER_API_TYPE_OPENGL;
    mpv_opengl_init_params functions{address, nullptr};
    std::array parameters{mpv_render_param{MPV_RENDER_PARAM_API_TYPE, api.data()},
                          mpv_render_param{MPV_RENDER_PARAM_OPENGL_INIT_PARAMS, &functions},
                          mpv_render_param{MPV_RENDER_PARAM_INVALID, nullptr}};
    mpv_render_context* context = nullptr;
    const int error = mpv_render_context_create(&context, &core, parameters.data());
    if (error < 0) {
        throw MediaError(MediaError::Cause::unsupported,
                         std::string("the player cannot draw: ") + mpv_error_string(error));
    }
    mpv_render_context_set_update_callback(
        context,
        [](void* self) {
            QMetaObject::invokeMethod(static_cast<OpenGLPicture*>(self), &PlayerPicture::changed,
                                      Qt::QueuedConnection);
        },
        this);
    return RenderContext(context);
}

void OpenGLPicture::draw(unsigned framebuffer, QSize size) {
    const bool hasFilm = hasNewFrame(*film_);
    const bool hasStill = hasNewFrame(*stills_);
    if (!wantsStills_) {
        shown_ = &film_;
    } else if (hasStill) {
        shown_ = &stills_;
    }
    if (hasFilm && shown_ != &film_) {
        skipFrame(*film_);
    }
    if (hasStill && shown_ != &stills_) {
        skipFrame(*stills_);
    }
    mpv_opengl_fbo target{static_cast<int>(framebuffer), size.width(), size.height(), 0};
    int wait = 0; // the window's own rhythm is enough
    std::array parameters{mpv_render_param{MPV_RENDER_PARAM_OPENGL_FBO, &target},
                          mpv_render_param{MPV_RENDER_PARAM_BLOCK_FOR_TARGET_TIME, &wait},
                          mpv_render_param{MPV_RENDER_PARAM_INVALID, nullptr}};
    mpv_render_context_render(shown_->get(), parameters.data());
}

void OpenGLPicture::stop() {
    started_ = false;
    stills_.reset();
    film_.reset();
}

} // namespace zelvra
