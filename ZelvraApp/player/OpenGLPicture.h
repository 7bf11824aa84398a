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
/// `start`, `draw` and `stop` are called on the thread that draws the window, its context current; that
/// between them may be another than this object's. The player waits with loading until `start` is through.
class OpenGLPicture : public PlayerPicture {
    Q_OBJECT
public:
    /// `core` must be initialised and outlive this object.
    explicit OpenGLPicture(mpv_handle& core, QObject* parent = nullptr);
    ~OpenGLPicture() override;

    void setNaturalSize(QSize size) override;
    /// Nothing to do: each draw says how large.
    void setGreatestSize(QSize size) override;
    bool isStarted() const override { return started_; }

    /// Throws MediaError where the context cannot do what drawing needs.
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
