// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/player/PlayerPicture.h"

#include <atomic>
#include <memory>

struct mpv_handle;
struct mpv_render_context;

namespace zelvra {

/// The player's pictures drawn by the graphics processor, straight into a framebuffer of the window's own
/// OpenGL context: for windows that have a real one.
///
/// `start`, `draw` and `stop` are called on the thread that draws the window, with its context current. That
/// may be another thread than this object's. The player loads no movie before `start` has returned.
class OpenGLPicture : public PlayerPicture {
    Q_OBJECT
public:
    /// `core` must be initialised and outlive this object.
    explicit OpenGLPicture(mpv_handle& core, QObject* parent = nullptr);
    ~OpenGLPicture() override;

    void setNaturalSize(QSize size) override;
    /// Does nothing: each draw has its own size.
    void setGreatestSize(QSize size) override;
    bool isStarted() const override { return started_; }

    /// Throws MediaError if the context lacks what drawing needs.
    void start();
    /// The newest picture over the whole framebuffer, its first row at the framebuffer's first.
    void draw(unsigned framebuffer, QSize size);
    void stop();

private:
    struct Free {
        void operator()(mpv_render_context* context) const;
    };

    mpv_handle& core_;
    std::unique_ptr<mpv_render_context, Free> context_;
    std::atomic<bool> started_ = false;
};

} // namespace zelvra
