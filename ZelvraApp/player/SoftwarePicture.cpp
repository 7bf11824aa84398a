// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/player/SoftwarePicture.h"

#include "ZelvraCore/records/MediaError.h"

#include <algorithm>
#include <array>
#include <condition_variable>
#include <cstdlib>
#include <exception>
#include <functional>
#include <future>
#include <mpv/render.h>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace zelvra {

namespace {

struct FreeContext {
    void operator()(mpv_render_context* context) const { mpv_render_context_free(context); }
};
using RenderContext = std::unique_ptr<mpv_render_context, FreeContext>;

RenderContext makeContext(mpv_handle& core) {
    std::string api = MPV_RENDER_API_TYPE_SW;
    std::array parameters{mpv_render_param{MPV_RENDER_PARAM_API_TYPE, api.data()},
                          mpv_render_param{MPV_RENDER_PARAM_INVALID, nullptr}};
    mpv_render_context* context = nullptr;
    const int error = mpv_render_context_create(&context, &core, parameters.data());
    if (error < 0) {
        throw MediaError(MediaError::Cause::unsupported,
                         std::string("the player cannot draw: ") + mpv_error_string(error));
    }
    return RenderContext(context);
}

/// The core leaves the fourth byte undefined; Format_RGB32 needs 255.
void makeOpaque(QImage& image) {
    for (int y = 0; y < image.height(); ++y) {
        auto* pixels = reinterpret_cast<QRgb*>(image.scanLine(y));
        std::transform(pixels, pixels + image.width(), pixels,
                       [](QRgb pixel) { return pixel | 0xff000000U; });
    }
}

void drawInto(mpv_render_context& context, QImage& image) {
    std::array size{image.width(), image.height()};
    std::string format = "bgr0"; // the bytes of Format_RGB32 on a little-endian machine
    auto stride = static_cast<std::size_t>(image.bytesPerLine());
    std::array parameters{mpv_render_param{MPV_RENDER_PARAM_SW_SIZE, size.data()},
                          mpv_render_param{MPV_RENDER_PARAM_SW_FORMAT, format.data()},
                          mpv_render_param{MPV_RENDER_PARAM_SW_STRIDE, &stride},
                          mpv_render_param{MPV_RENDER_PARAM_SW_POINTER, image.bits()},
                          mpv_render_param{MPV_RENDER_PARAM_INVALID, nullptr}};
    mpv_render_context_render(&context, parameters.data());
    makeOpaque(image);
}

/// Takes a frame that is not shown. The core waits for that.
void skipFrame(mpv_render_context& context) {
    int skip = 1;
    std::array parameters{mpv_render_param{MPV_RENDER_PARAM_SKIP_RENDERING, &skip},
                          mpv_render_param{MPV_RENDER_PARAM_INVALID, nullptr}};
    mpv_render_context_render(&context, parameters.data());
}

/// Rows and start are aligned to 64 bytes, which makes the core's vector code fast.
QImage alignedImage(QSize size) {
    constexpr std::size_t alignment = 64;
    constexpr std::size_t pixelBytes = 4;
    const std::size_t row = static_cast<std::size_t>(size.width()) * pixelBytes;
    const std::size_t stride = (row + alignment - 1) / alignment * alignment;
    void* memory = std::aligned_alloc(alignment, stride * static_cast<std::size_t>(size.height()));
    return {static_cast<uchar*>(memory), size.width(), size.height(), static_cast<qsizetype>(stride),
            QImage::Format_RGB32,        std::free,    memory};
}

/// Images to draw into. One that is still shown is not used again.
class ImagePool {
public:
    QImage take(QSize size) {
        std::erase_if(images_, [&](const QImage& image) { return image.size() != size; });
        const auto unused = std::ranges::find_if(images_, &QImage::isDetached);
        if (unused == images_.end()) {
            return alignedImage(size);
        }
        QImage image = std::move(*unused);
        images_.erase(unused);
        return image;
    }
    void keep(const QImage& image) { images_.push_back(image); }

private:
    std::vector<QImage> images_;
};

/// A core's pictures. Used by one thread, except for `isUpdated`.
struct Screen {
    RenderContext context;
    bool isUpdated = false; ///< the core may have something new; guarded by the worker's mutex

    bool hasNewFrame() const {
        return (mpv_render_context_update(context.get()) & MPV_RENDER_UPDATE_FRAME) != 0;
    }
};

} // namespace

/// The thread that makes the render contexts, draws whenever the core that is shown has something new, and
/// frees them.
class SoftwarePicture::Worker {
public:
    Worker(const PictureCores& cores, std::function<void()> drawn) : drawn_(std::move(drawn)) {
        std::promise<void> started;
        std::future<void> start = started.get_future();
        thread_ = std::thread([this, cores, &started] { run(cores, started); });
        try {
            start.get();
        } catch (...) {
            thread_.join();
            throw;
        }
    }

    ~Worker() {
        change([this] { stopping_ = true; });
        thread_.join();
    }
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;

    void setNaturalSize(QSize size) {
        change([&] {
            naturalSize_ = size;
            image_ = {};
        });
    }

    void setGreatestSize(QSize size) {
        change([&] {
            greatestSize_ = size;
            redraw_ = !image_.isNull();
        });
    }

    void showFilm() {
        change([&] {
            redraw_ = redraw_ || std::exchange(shown_, &film_) != &film_;
            awaitsStill_ = false;
        });
    }

    void showStills() {
        change([&] { awaitsStill_ = true; });
    }

    QImage image() const {
        const std::scoped_lock lock(mutex_);
        return image_;
    }

    bool isDrawing() const {
        const std::scoped_lock lock(mutex_);
        return film_.isUpdated || stills_.isUpdated || redraw_ || drawing_;
    }

private:
    template <typename Change>
    void change(const Change& apply) {
        {
            const std::scoped_lock lock(mutex_);
            apply();
        }
        wake_.notify_one();
    }

    QSize pictureSize() const {
        const bool shrinks = !greatestSize_.isEmpty() && (greatestSize_.width() < naturalSize_.width() ||
                                                          greatestSize_.height() < naturalSize_.height());
        return shrinks ? naturalSize_.scaled(greatestSize_, Qt::KeepAspectRatio).expandedTo({1, 1})
                       : naturalSize_;
    }

    void run(const PictureCores& cores, std::promise<void>& started) {
        try {
            film_.context = makeContext(cores.film);
            stills_.context = makeContext(cores.stills);
        } catch (...) {
            film_.context.reset();
            started.set_exception(std::current_exception());
            return;
        }
        mpv_render_context_set_update_callback(
            film_.context.get(), [](void* self) { static_cast<Worker*>(self)->noteUpdate(&Worker::film_); },
            this);
        mpv_render_context_set_update_callback(
            stills_.context.get(),
            [](void* self) { static_cast<Worker*>(self)->noteUpdate(&Worker::stills_); }, this);
        started.set_value();
        drawAll();
        film_.context.reset();
        stills_.context.reset();
    }

    void noteUpdate(Screen Worker::* screen) {
        change([&] { (this->*screen).isUpdated = true; });
    }

    void drawAll() {
        std::unique_lock lock(mutex_);
        while (true) {
            wake_.wait(lock, [this] { return stopping_ || film_.isUpdated || stills_.isUpdated || redraw_; });
            if (stopping_) {
                return;
            }
            drawNewest(lock);
        }
    }

    /// The lock is free while this calls the cores.
    void drawNewest(std::unique_lock<std::mutex>& lock) {
        const bool redraw = std::exchange(redraw_, false);
        const bool isFilmUpdated = std::exchange(film_.isUpdated, false);
        const bool isStillUpdated = std::exchange(stills_.isUpdated, false);
        drawing_ = true;
        lock.unlock();
        const bool hasFilm = isFilmUpdated && film_.hasNewFrame();
        const bool hasStill = isStillUpdated && stills_.hasNewFrame();
        lock.lock();
        if (hasStill && awaitsStill_) {
            shown_ = &stills_;
        }
        const Screen* const shown = shown_;
        const QSize size = pictureSize();
        lock.unlock();
        const bool isNew = shown == &film_ ? hasFilm : hasStill;
        for (const auto& [screen, hasFrame] : {std::pair{&film_, hasFilm}, std::pair{&stills_, hasStill}}) {
            if (hasFrame && (screen != shown || size.isEmpty())) {
                skipFrame(*screen->context);
            }
        }
        QImage picture;
        if ((isNew || redraw) && !size.isEmpty()) {
            picture = pool_.take(size);
            drawInto(*shown->context, picture);
            pool_.keep(picture);
        }
        lock.lock();
        drawing_ = false;
        if (!picture.isNull() && size == pictureSize() && shown == shown_) {
            image_ = std::move(picture);
            drawn_();
        }
    }

    const std::function<void()> drawn_;
    mutable std::mutex mutex_;
    std::condition_variable wake_;
    Screen film_;
    Screen stills_;
    const Screen* shown_ = &film_;
    bool awaitsStill_ = false; ///< the next still is shown
    bool stopping_ = false;
    bool redraw_ = false;
    bool drawing_ = false;
    QSize naturalSize_;
    QSize greatestSize_;
    QImage image_;
    ImagePool pool_; ///< of the thread alone
    std::thread thread_;
};

SoftwarePicture::SoftwarePicture(const PictureCores& cores, QObject* parent)
    : PlayerPicture(parent), worker_(std::make_unique<Worker>(cores, [this] {
          QMetaObject::invokeMethod(this, &PlayerPicture::changed, Qt::QueuedConnection);
      })) {}

SoftwarePicture::~SoftwarePicture() = default;

void SoftwarePicture::setNaturalSize(QSize size) {
    worker_->setNaturalSize(size);
    Q_EMIT changed();
}

void SoftwarePicture::setGreatestSize(QSize size) {
    PlayerPicture::setGreatestSize(size);
    worker_->setGreatestSize(size);
}

void SoftwarePicture::showFilm() {
    worker_->showFilm();
}

void SoftwarePicture::showStills() {
    worker_->showStills();
}

QImage SoftwarePicture::image() const {
    return worker_->image();
}

bool SoftwarePicture::isDrawing() const {
    return worker_->isDrawing();
}

} // namespace zelvra
