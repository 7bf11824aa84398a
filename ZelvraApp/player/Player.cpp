// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/player/Player.h"

#include "ZelvraApp/player/Mpv.h"
#include "ZelvraApp/player/OpenGLPicture.h"
#include "ZelvraApp/player/SeekAim.h"
#include "ZelvraApp/player/SoftwarePicture.h"

#include <QPointer>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <mpv/client.h>
#include <qcoro/qcorofuture.h>
#include <string>
#include <utility>

namespace zelvra {

namespace {

// What the core takes.
constexpr double slowest = 0.01;
constexpr double fastest = 100;

constexpr double maxTimer = 24 * 3600 * 1000; // ms, far below what a timer counts to

/// Seconds as the core reads them, exact to a fraction of any track's tick.
std::string spelled(double seconds) {
    constexpr int decimals = 12;
    return QByteArray::number(seconds, 'f', decimals).toStdString();
}

QSize wholePixels(const Size& size) {
    return {static_cast<int>(std::lround(size.width)), static_cast<int>(std::lround(size.height))};
}

/// The answer to a move that is not made. Qt has renamed its own function for this.
QFuture<bool> noMove() {
    QPromise<bool> answer;
    answer.start();
    answer.addResult(false);
    answer.finish();
    return answer.future();
}

} // namespace

Player::Player(QObject* parent) : QObject(parent) {
    using std::chrono_literals::operator""ms;
    mpv_ = std::make_unique<Mpv>([this] {
        if (!wakeupQueued_.exchange(true)) {
            QMetaObject::invokeMethod(this, &Player::handleEvents, Qt::QueuedConnection);
        }
    });
    usePicture(std::make_unique<SoftwarePicture>(mpv_->handle()));
    periodicTimer_.setTimerType(Qt::PreciseTimer);
    periodicTimer_.setInterval(33ms);
    connect(&periodicTimer_, &QTimer::timeout, this, &Player::observe);
    boundTimer_.setTimerType(Qt::PreciseTimer);
    boundTimer_.setSingleShot(true);
    connect(&boundTimer_, &QTimer::timeout, this, [this] { stopAt(item_->forwardPlaybackEndTime); });
}

Player::~Player() {
    overtakeMoves();
}

OpenGLPicture& Player::drawWithOpenGL() {
    picture_.reset(); // the core draws in one way at a time
    auto picture = std::make_unique<OpenGLPicture>(mpv_->handle());
    OpenGLPicture& drawn = *picture;
    usePicture(std::move(picture));
    return drawn;
}

void Player::usePicture(std::unique_ptr<PlayerPicture> picture) {
    picture_ = std::move(picture);
    connect(picture_.get(), &PlayerPicture::changed, this, &Player::pictureChanged);
    connect(picture_.get(), &PlayerPicture::started, this, &Player::load, Qt::QueuedConnection);
}

void Player::replaceCurrentItem(std::optional<PlayerItem> item) {
    const bool wasPlaying = takeRate(0);
    overtakeMoves();
    underWay_.reset();
    stepping_ = false;
    setMuted(muted_);
    firstLogMessage_.clear();
    failure_.reset();
    entryStarted_ = false;
    startedAgain_ = false;
    item_ = std::move(item);
    if (item_) {
        state_ = State::loading;
        restingTime_ = CMTime(0, frames().timescale());
        syncTimes_ = item_->asset->syncTimes();
        picture_->setNaturalSize(wholePixels(item_->info.naturalSize));
        load();
    } else {
        state_ = State::empty;
        entry_ = 0;
        picture_->setNaturalSize({});
        mpv_->command(0, {"stop"});
    }
    applyRate();
    if (wasPlaying) {
        Q_EMIT rateChanged(0);
    }
}

/// Lets the core load the item, once its pictures can be drawn.
void Player::load() {
    entry_ = 0;
    if (item_ && picture_->isStarted()) {
        entry_ = mpv_->load(item_->path, item_->asset->videoTrackNumber());
    }
}

const PlayerItem* Player::currentItem() const {
    return item_ ? &*item_ : nullptr;
}

void Player::setPlaybackBounds(const CMTime& reverse, const CMTime& forward) {
    if (item_) {
        item_->reversePlaybackEndTime = reverse;
        item_->forwardPlaybackEndTime = forward;
        boundTimer_.stop();
        QMetaObject::invokeMethod(this, &Player::watchBound, Qt::QueuedConnection);
    }
}

void Player::play() {
    if (!item_ || state_ == State::failed || rate_ > 0) {
        return;
    }
    const CMTime& bound = item_->forwardPlaybackEndTime;
    const bool isAtBound = bound.isNumeric() && currentTime() >= bound;
    const bool isAtEnd = state_ == State::ready && !underWay_ && mpv_->flag("eof-reached");
    takeRate(defaultRate_);
    if (isAtBound || isAtEnd) {
        const CMTime& lower = item_->reversePlaybackEndTime;
        moveTo(lower.isNumeric() ? lower : CMTime::zero(), true);
    } else if (!underWay_) {
        applyRate();
    }
    Q_EMIT rateChanged(rate_);
}

void Player::pause() {
    if (takeRate(0)) {
        applyRate();
        Q_EMIT rateChanged(0);
        observe();
    }
}

void Player::setDefaultRate(double rate) {
    defaultRate_ = std::clamp(rate, slowest, fastest);
    if (rate_ > 0 && takeRate(defaultRate_)) {
        mpv_->set("speed", rate_);
        Q_EMIT rateChanged(rate_);
    }
}

/// Returns whether the rate changed. The caller passes it on to the core and emits rateChanged.
bool Player::takeRate(double rate) {
    boundTimer_.stop();
    if (rate > 0 && state_ == State::ready) {
        restingTime_.reset();
    }
    return std::exchange(rate_, rate) != rate;
}

/// Sets the core to the wanted rate. While the core plays some frames for a step, it pauses by itself.
void Player::applyRate() {
    if (rate_ > 0) {
        mpv_->set("speed", rate_);
    }
    if (state_ == State::ready && !stepping_) {
        mpv_->set("pause", rate_ == 0);
    }
    if (state_ == State::ready && rate_ > 0 && observed_) {
        periodicTimer_.start();
    } else {
        periodicTimer_.stop();
    }
}

void Player::setVolume(double volume) {
    constexpr double percent = 100;
    volume_ = std::clamp(volume, 0.0, 1.0);
    mpv_->set("volume", std::cbrt(volume_) * percent); // the core cubes what it is given
}

void Player::setMuted(bool muted) {
    muted_ = muted;
    mpv_->set("mute", muted_ || stepping_);
}

CMTime Player::currentTime() const {
    if (!item_) {
        return CMTime::zero();
    }
    if (waiting_ || underWay_) {
        return waiting_ ? waiting_->restingTime : underWay_->restingTime;
    }
    if (restingTime_) {
        return *restingTime_;
    }
    const CMTime time = screenTime();
    if (rate_ == 0) {
        restingTime_ = time;
    }
    return time;
}

/// When the picture on screen appeared. At the end of sound that is longer than the pictures the core reports
/// the sound's time; this is then the last picture's.
CMTime Player::screenTime() const {
    const double seconds = mpv_->number("time-pos").value_or(0);
    const CMTime time = CMTime::fromSeconds(seconds, frames().timescale());
    return mpv_->flag("eof-reached") && !frames().empty() ? minimum(time, frames().last().time) : time;
}

std::optional<FrameIndex::Frame> Player::frameOnScreen() const {
    return frames().containing(screenTime());
}

CMTime Player::insideMovie(const CMTime& time) const {
    return minimum(maximum(time, CMTime(0, frames().timescale())), item_->asset->duration());
}

void Player::setPeriodicTimeObservation(bool on) {
    observed_ = on;
    applyRate();
}

void Player::observe() {
    if (observed_ && item_) {
        Q_EMIT periodicTime(currentTime());
    }
}

QCoro::Task<bool> Player::seek(CMTime time) {
    QFuture<bool> arrived = moveTo(time, true);
    const bool shown = co_await arrived;
    co_return shown;
}

void Player::scrub(const CMTime& time) {
    moveTo(time, false);
}

QCoro::Task<bool> Player::step(int frameCount) {
    QFuture<bool> arrived = moveBy(frameCount);
    const bool shown = co_await arrived;
    co_return shown;
}

QFuture<bool> Player::moveTo(const CMTime& time, bool exact) {
    if (item_ && time.isNumeric()) {
        const CMTime inside = insideMovie(time);
        if (const auto frame = frames().containing(inside)) {
            return begin({*frame, inside, exact});
        }
    }
    return noMove();
}

QFuture<bool> Player::moveBy(int frameCount) {
    pause();
    const auto from = item_ ? frames().containing(currentTime()) : std::nullopt;
    if (!from) {
        return noMove();
    }
    const auto origin = static_cast<std::int64_t>(from->index);
    const auto last = static_cast<std::int64_t>(frames().count()) - 1;
    const std::int64_t goal = std::clamp(origin + frameCount, std::int64_t{0}, last);
    if (goal == origin) {
        return noMove();
    }
    const FrameIndex::Frame frame = frames().frame(static_cast<std::size_t>(goal));
    return begin({frame, frame.time});
}

QFuture<bool> Player::begin(Move move) {
    overtakeMoves();
    if (state_ != State::loading && state_ != State::ready) {
        return noMove();
    }
    boundTimer_.stop();
    move.arrived = std::make_shared<QPromise<bool>>();
    move.arrived->start();
    QFuture<bool> arrived = move.arrived->future();
    waiting_ = std::move(move);
    carryOutWaiting();
    return arrived;
}

/// The callers of these moves get false. The core still finishes the move under way.
void Player::overtakeMoves() {
    for (std::optional<Move>* move : {&underWay_, &waiting_}) {
        if (*move) {
            answer(**move, false);
        }
    }
    waiting_.reset();
}

void Player::answer(Move& move, bool shown) {
    if (move.arrived) {
        move.arrived->addResult(shown);
        move.arrived->finish();
        move.arrived.reset();
    }
}

void Player::carryOutWaiting() {
    if (state_ != State::ready || underWay_ || !waiting_) {
        return;
    }
    const auto steps = framesToPlay(*waiting_);
    underWay_ = std::exchange(waiting_, std::nullopt);
    restingTime_.reset();
    ++moveId_;
    if (steps == 0) {
        arrive(true);
    } else if (steps) {
        stepping_ = true;
        setMuted(muted_);
        for (std::size_t i = 0; i < *steps; ++i) {
            mpv_->command(moveId_, {"frame-step"});
        }
    } else {
        seekCore(*underWay_);
    }
}

void Player::seekCore(const Move& move) {
    if (move.exact) {
        constexpr double secondTry = 10;
        const SeekAim aim = aimAt(frames(), syncTimes_, move.frame.index);
        mpv_->set("hr-seek-demuxer-offset", aim.demuxerOffset + (move.isSecondTry ? secondTry : 0));
        mpv_->command(moveId_, {"seek", spelled(aim.seconds).c_str(), "absolute+exact"});
    } else {
        mpv_->command(moveId_, {"seek", spelled(move.frame.time.seconds()).c_str(), "absolute+keyframes"});
    }
}

/// How many frames have to be played to get there, if that is quicker than a seek, which decodes from the
/// last sync frame on.
std::optional<std::size_t> Player::framesToPlay(const Move& move) const {
    constexpr std::size_t mostFrames = 4;
    constexpr double mostSeconds = 0.1;
    if (!move.exact || rate_ > 0) {
        return std::nullopt;
    }
    const auto shown = frameOnScreen();
    if (!shown || move.frame.index < shown->index || move.frame.index > shown->index + mostFrames ||
        (move.frame.time - shown->time).seconds() > mostSeconds * mpv_->number("speed").value_or(1)) {
        return std::nullopt;
    }
    return move.frame.index - shown->index;
}

/// Sends the core to the first picture if it shows another one after loading, as with a movie of several
/// edits. Returns whether it did.
bool Player::startsAgain() {
    const auto shown = frameOnScreen();
    if (startedAgain_ || !shown || shown->index == 0) {
        return false;
    }
    startedAgain_ = true;
    ++moveId_;
    seekCore({.frame = frames().first(), .restingTime = CMTime::zero(), .isSecondTry = true});
    return true;
}

/// An exact seek may miss its frame if the file's sync samples cannot be decoded from, or if its index is
/// wrong. If the core found no frame, it is at the end. Seeks once more, from farther back.
bool Player::triesAgain() {
    if (!underWay_->exact || underWay_->isSecondTry || rate_ > 0 || waiting_) {
        return false;
    }
    const auto shown = frameOnScreen();
    const bool foundNothing = mpv_->flag("eof-reached");
    if (!foundNothing && shown && shown->index == underWay_->frame.index) {
        return false;
    }
    underWay_->isSecondTry = true;
    ++moveId_;
    seekCore(*underWay_);
    return true;
}

void Player::arrive(bool shown) {
    Move move = std::move(*underWay_);
    underWay_.reset();
    if (std::exchange(stepping_, false)) {
        setMuted(muted_);
    }
    if (shown && move.exact && rate_ == 0) {
        restingTime_ = move.restingTime;
    }
    answer(move, shown);
    if (waiting_) {
        carryOutWaiting();
    } else {
        applyRate();
        observe();
    }
}

void Player::handleEvents() {
    wakeupQueued_ = false;
    const QPointer<Player> self(this); // a slot may delete the player
    while (self) {
        const mpv_event* event = mpv_->nextEvent();
        if (event == nullptr) {
            break;
        }
        handle(*event);
    }
    if (self && failure_) {
        fail(*std::exchange(failure_, std::nullopt));
    }
}

void Player::handle(const mpv_event& event) {
    switch (event.event_id) {
    case MPV_EVENT_START_FILE:
        entryStarted_ = static_cast<const mpv_event_start_file*>(event.data)->playlist_entry_id == entry_;
        break;
    case MPV_EVENT_END_FILE: {
        const auto& end = *static_cast<const mpv_event_end_file*>(event.data);
        const bool failed = end.reason == MPV_END_FILE_REASON_ERROR || end.reason == MPV_END_FILE_REASON_EOF;
        if (end.playlist_entry_id == entry_ && item_ && failed) {
            failure_ = QString::fromUtf8(mpv_error_string(end.error));
        }
        break;
    }
    case MPV_EVENT_LOG_MESSAGE:
        if (state_ == State::loading && firstLogMessage_.isEmpty()) {
            firstLogMessage_ =
                QString::fromUtf8(static_cast<const mpv_event_log_message*>(event.data)->text).trimmed();
        }
        break;
    case MPV_EVENT_PLAYBACK_RESTART:
        if (state_ == State::loading) {
            if (entryStarted_ && !startsAgain()) {
                becomeReady();
            }
        } else if (underWay_ && !stepping_ && !triesAgain()) {
            arrive(true);
        }
        break;
    case MPV_EVENT_COMMAND_REPLY:
        if (underWay_ && event.reply_userdata == moveId_ && event.error < 0) {
            arrive(false);
        }
        break;
    case MPV_EVENT_PROPERTY_CHANGE: followCore(); break;
    default: break;
    }
}

/// The core's time, its pause or its end has changed.
void Player::followCore() {
    if (state_ != State::ready) {
        return;
    }
    if (stepping_) {
        const bool paused = mpv_->flag("pause");
        const auto shown = frameOnScreen();
        if (paused && (mpv_->flag("eof-reached") || (shown && shown->index >= underWay_->frame.index))) {
            arrive(true);
        }
    } else if (rate_ > 0 && !underWay_ && mpv_->flag("eof-reached")) {
        const CMTime& bound = item_->forwardPlaybackEndTime;
        stopAt(bound.isNumeric() || frames().empty() ? bound : frames().last().time);
    } else {
        watchBound();
    }
}

/// Stops at the upper bound. The bound may be within a frame, but the core only reports when frames appear.
void Player::watchBound() {
    constexpr double near = 0.1;
    constexpr double millisecond = 0.001;
    if (!item_ || state_ != State::ready || rate_ == 0 || underWay_ ||
        !item_->forwardPlaybackEndTime.isNumeric()) {
        return;
    }
    const CMTime& bound = item_->forwardPlaybackEndTime;
    const CMTime time = screenTime();
    if (time >= bound) {
        stopAt(bound);
        return;
    }
    const double left = (bound - time).seconds() / rate_;
    const auto shown = frames().containing(time);
    if (!boundTimer_.isActive() && (left < near || (shown && shown->end() > bound))) {
        boundTimer_.start(static_cast<int>(std::min(left / millisecond, maxTimer)));
    }
}

void Player::stopAt(const CMTime& time) {
    takeRate(0);
    applyRate();
    moveTo(time, true);
    Q_EMIT rateChanged(0);
    Q_EMIT reachedEnd();
}

void Player::becomeReady() {
    if (!mpv_->integer("vid")) {
        mpv_->command(0, {"stop"});
        fail(tr("the pictures cannot be decoded"));
        return;
    }
    state_ = State::ready;
    if (rate_ > 0) {
        restingTime_.reset();
    }
    applyRate();
    carryOutWaiting();
    Q_EMIT itemReady();
    observe();
}

void Player::fail(const QString& reason) {
    const QString cause = firstLogMessage_.isEmpty() ? reason : firstLogMessage_;
    const QString name = QString::fromStdString(item_->path.filename().string());
    entry_ = 0;
    state_ = State::failed;
    const bool wasPlaying = takeRate(0);
    applyRate();
    overtakeMoves();
    underWay_.reset();
    stepping_ = false;
    restingTime_ = CMTime(0, frames().timescale());
    if (wasPlaying) {
        Q_EMIT rateChanged(0);
    }
    Q_EMIT itemFailed(tr("“%1” cannot be played: %2").arg(name, cause));
}

} // namespace zelvra
