// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/player/Film.h"

#include "ZelvraApp/player/SeekAim.h"

#include <QPointer>
#include <mpv/client.h>
#include <string>
#include <utility>

namespace zelvra {

namespace {

/// Seconds as the core reads them, exact to a fraction of any track's tick.
std::string spelled(double seconds) {
    constexpr int decimals = 12;
    return QByteArray::number(seconds, 'f', decimals).toStdString();
}

} // namespace

Film::Film(QObject* parent) : QObject(parent) {
    mpv_ = std::make_unique<Mpv>(Mpv::Use::film, [this] {
        if (!wakeupQueued_.exchange(true)) {
            QMetaObject::invokeMethod(this, &Film::handleEvents, Qt::QueuedConnection);
        }
    });
}

Film::~Film() = default;

void Film::load(const std::filesystem::path& path, std::shared_ptr<const Asset> asset) {
    reset();
    asset_ = std::move(asset);
    syncTimes_ = asset_->syncTimes();
    mpv_->set("pause", true);
    // Starting with a seek: pictures that the first edit hides might be shown otherwise.
    entry_ = mpv_->load(path.string(), "start=0,vid=" + std::to_string(asset_->videoTrackNumber()));
}

void Film::unload() {
    mpv_->command(0, {"stop"});
    reset();
}

void Film::reset() {
    entry_ = 0;
    entryStarted_ = false;
    isLoaded_ = false;
    startedAgain_ = false;
    isPlaying_ = false;
    seeks_.reset();
    firstLogMessage_.clear();
    failure_.reset();
}

void Film::play(double rate) {
    if (isLoaded_) {
        if (!seeks_.isSeeking()) {
            seeks_.reset();
        }
        isPlaying_ = true;
        mpv_->set("speed", rate);
        mpv_->set("pause", false);
    }
}

void Film::pause() {
    if (std::exchange(isPlaying_, false)) {
        mpv_->set("pause", true);
    }
}

void Film::seek(std::size_t frame) {
    if (const auto seek = seeks_.seek(frame)) {
        carryOut(*seek);
    }
}

void Film::carryOut(const CoreSeek& seek) {
    constexpr double fartherBack = 10; // seconds
    const SeekAim aim = aimAt(frames(), syncTimes_, seek.frame);
    mpv_->set("hr-seek-demuxer-offset", aim.demuxerOffset + (seek.isSecondTry ? fartherBack : 0));
    mpv_->command(++seekId_, {"seek", spelled(aim.seconds).c_str(), "absolute+exact"});
}

/// At the end of sound that is longer than the pictures the core reports the sound's time; this is then the
/// last picture's.
CMTime Film::time() const {
    const double seconds = mpv_->number("time-pos").value_or(0);
    const CMTime time = CMTime::fromSeconds(seconds, frames().timescale());
    return isAtEnd() && !frames().empty() ? minimum(time, frames().last().time) : time;
}

std::optional<FrameIndex::Frame> Film::frameOnScreen() const {
    return frames().containing(time());
}

bool Film::isAtEnd() const {
    return mpv_->flag("eof-reached");
}

void Film::handleEvents() {
    wakeupQueued_ = false;
    const QPointer<Film> self(this); // a slot may delete the player
    while (self) {
        const mpv_event* event = mpv_->nextEvent();
        if (event == nullptr) {
            break;
        }
        handle(*event);
    }
    if (self && failure_) {
        const QString cause = *std::exchange(failure_, std::nullopt);
        const QString reason = firstLogMessage_.isEmpty() ? cause : firstLogMessage_;
        unload();
        Q_EMIT failed(reason);
    }
}

void Film::handle(const mpv_event& event) {
    switch (event.event_id) {
    case MPV_EVENT_START_FILE:
        entryStarted_ = static_cast<const mpv_event_start_file*>(event.data)->playlist_entry_id == entry_;
        break;
    case MPV_EVENT_END_FILE: {
        const auto& end = *static_cast<const mpv_event_end_file*>(event.data);
        const bool failed = end.reason == MPV_END_FILE_REASON_ERROR || end.reason == MPV_END_FILE_REASON_EOF;
        if (entry_ != 0 && end.playlist_entry_id == entry_ && failed) {
            failure_ = QString::fromUtf8(mpv_error_string(end.error));
        }
        break;
    }
    case MPV_EVENT_LOG_MESSAGE:
        if (entry_ != 0 && !isLoaded_ && firstLogMessage_.isEmpty()) {
            firstLogMessage_ =
                QString::fromUtf8(static_cast<const mpv_event_log_message*>(event.data)->text).trimmed();
        }
        break;
    case MPV_EVENT_PLAYBACK_RESTART:
        if (!entryStarted_) {
            break;
        }
        if (seeks_.isSeeking()) {
            seekEnded();
        } else if (!isLoaded_ && !startsAgain()) {
            isLoaded_ = true;
            if (mpv_->integer("vid")) {
                Q_EMIT loaded();
            } else {
                failure_ = tr("the pictures cannot be decoded");
            }
        }
        break;
    case MPV_EVENT_COMMAND_REPLY:
        if (event.reply_userdata == seekId_ && event.error < 0 && seeks_.isSeeking()) {
            seeks_.reset();
            Q_EMIT sought();
        }
        break;
    case MPV_EVENT_PROPERTY_CHANGE:
        if (isLoaded_ && !seeks_.isSeeking()) {
            Q_EMIT moved();
        }
        break;
    default: break;
    }
}

void Film::seekEnded() {
    const auto shown = frameOnScreen();
    const auto found = shown && !isAtEnd() ? std::optional(shown->index) : std::nullopt;
    if (const auto next = seeks_.ended(found, isPlaying_)) {
        carryOut(*next);
    } else if (isLoaded_) {
        Q_EMIT sought();
    } else {
        isLoaded_ = true;
        Q_EMIT loaded();
    }
}

/// Sends the core to the first picture if it shows another one after loading, as with a movie of several
/// edits. Returns whether it did.
bool Film::startsAgain() {
    const auto shown = frameOnScreen();
    if (startedAgain_ || !shown || shown->index == 0) {
        return false;
    }
    startedAgain_ = true;
    seek(0);
    return true;
}

} // namespace zelvra
