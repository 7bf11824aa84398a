// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/player/Stills.h"

#include <chrono>
#include <utility>

namespace zelvra {

namespace {

std::size_t distance(std::size_t a, std::size_t b) {
    return a < b ? b - a : a - b;
}

} // namespace

Stills::Stills(QObject* parent) : QObject(parent) {
    core_ = std::make_unique<StillCore>([this] {
        if (!wakeupQueued_.exchange(true)) {
            QMetaObject::invokeMethod(this, &Stills::handleEvents, Qt::QueuedConnection);
        }
    });
    using std::chrono_literals::operator""ms;
    pace_.setSingleShot(true);
    pace_.setTimerType(Qt::PreciseTimer);
    pace_.setInterval(16ms);
    connect(&pace_, &QTimer::timeout, this, &Stills::showNext);
    poll_.setInterval(5ms);
    connect(&poll_, &QTimer::timeout, this, &Stills::handleEvents);
    reel_ = std::make_unique<media::PictureReel>([this] {
        if (!decodedQueued_.exchange(true)) {
            QMetaObject::invokeMethod(this, &Stills::handleDecoded, Qt::QueuedConnection);
        }
    });
}

Stills::~Stills() = default;

void Stills::open(std::shared_ptr<const Asset> asset, std::vector<std::int64_t> syncTimes, const Mpv& film) {
    core_->interpretAs(film);
    reel_->open(std::move(asset), std::move(syncTimes));
    queue_.reset(std::nullopt);
    dragTarget_.reset();
}

void Stills::close() {
    core_->clear();
    reel_->open(nullptr, {});
    queue_.reset(std::nullopt);
    dragTarget_.reset();
}

void Stills::yieldTo(std::optional<std::size_t> frame) {
    queue_.reset(frame);
    dragTarget_.reset();
}

void Stills::giveUpPictures() {
    reel_->clear();
}

void Stills::jump(std::size_t frame, media::ReelMotion motion, std::size_t stride) {
    dragTarget_.reset();
    pace_.stop();
    queue_.jump(frame);
    aim(motion, stride);
    showNext();
}

void Stills::append(std::size_t frame, media::ReelMotion motion) {
    dragTarget_.reset();
    queue_.append(frame);
    aim(motion);
    showNext();
}

void Stills::drag(std::size_t frame) {
    dragTarget_ = frame;
    reel_->aim({frame, media::ReelMotion::dragged, 1});
    showNearest();
}

void Stills::prepare(std::size_t frame) {
    reel_->aim({frame, media::ReelMotion::resting, 1});
}

void Stills::aim(media::ReelMotion motion, std::size_t stride) {
    if (const auto wanted = queue_.wanted()) {
        reel_->aim({*wanted, motion, stride});
    }
}

void Stills::showNearest() {
    if (!dragTarget_) {
        return;
    }
    const std::size_t target = *dragTarget_;
    const auto isCloser = [&](std::size_t frame) {
        const auto shown = queue_.latest();
        return !shown || distance(frame, target) < distance(*shown, target);
    };
    if (const auto nearest = reel_->nearest(target); nearest && isCloser(*nearest)) {
        queue_.jump(*nearest);
        showNext();
    }
}

void Stills::showNext() {
    if (core_->isBusy() || pace_.isActive()) {
        return;
    }
    std::shared_ptr<const media::RawPicture> picture;
    const auto next = queue_.next([&](std::size_t frame) {
        picture = reel_->at(frame);
        return picture != nullptr;
    });
    if (next) {
        Q_EMIT begun();
        core_->show(*picture);
        poll_.start();
    } else if (!queue_.isIdle() && reel_->isMissing(*queue_.wanted())) {
        queue_.reset(queue_.onScreen());
        Q_EMIT missed();
    }
}

void Stills::handleEvents() {
    wakeupQueued_ = false;
    const bool hasArrived = core_->handleEvents();
    if (!core_->isBusy()) {
        poll_.stop();
    }
    if (hasArrived) {
        const bool isAwaited = queue_.isOnItsWay(); // else it came too late
        if (isAwaited) {
            queue_.arrived();
            if (!queue_.isIdle() && !dragTarget_) {
                pace_.start();
            }
        }
        showNearest();
        showNext();
        if (isAwaited) {
            Q_EMIT arrived();
        }
    }
}

void Stills::handleDecoded() {
    decodedQueued_ = false;
    showNearest();
    showNext();
    Q_EMIT decoded();
}

} // namespace zelvra
