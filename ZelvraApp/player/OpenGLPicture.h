// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/player/PlayerPicture.h"

#include <atomic>
#include <memory>

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
    /// `cores` must be initialised and outlive this object.
    explicit OpenGLPicture(const PictureCores& cores, QObject* parent = nullptr);
    ~OpenGLPicture() override;

    void setNaturalSize(QSize size) override;
    void showFilm() override;
    void showStills() override;
    bool isStarted() const override { return started_; }

    /// Emits `failed` if the context lacks what drawing needs.
    void start();
    /// The newest picture over the whole framebuffer, its first row at the framebuffer's first.
    void draw(unsigned framebuffer, QSize size);
    void stop();

private:
    struct Free {
        void operator()(mpv_render_context* context) const;
    };
    using RenderContext = std::unique_ptr<mpv_render_context, Free>;

    RenderContext makeContext(mpv_handle& core);

    const PictureCores cores_;
    RenderContext film_;
    RenderContext stills_;
    const RenderContext* shown_ = &film_;
    std::atomic<bool> wantsStills_ = false;
    std::atomic<bool> started_ = false;
};

} // namespace zelvra
