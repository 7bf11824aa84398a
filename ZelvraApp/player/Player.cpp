// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/player/Player.h"

#include "ZelvraApp/player/Film.h"
#include "ZelvraApp/player/OpenGLPicture.h"
#include "ZelvraApp/player/SoftwarePicture.h"
#include "ZelvraApp/player/Stills.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <qcoro/qcorofuture.h>
#include <utility>

namespace zelvra {

namespace {

using media::ReelMotion;

// What the core takes.
constexpr double slowest = 0.01;
constexpr double fastest = 100;

constexpr double millisecond = 0.001;
constexpr double maxTimer = 24 * 3600 * 1000; // ms, far below what a timer counts to

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

/// Playing backward at that rate shows one picture of so many.
std::size_t strideOf(const FrameIndex& frames, double rate) {
    constexpr double mostPictures = 40; // a second
    const double pictures = static_cast<double>(frames.count()) / frames.end().seconds() * rate;
    return static_cast<std::size_t>(std::max(1.0, std::ceil(pictures / mostPictures)));
}

} // namespace

Player::Player(QObject* parent) : QObject(parent) {
    using std::chrono_literals::operator""ms;
    film_ = std::make_unique<Film>();
    connect(film_.get(), &Film::loaded, this, &Player::becomeReady);
    connect(film_.get(), &Film::failed, this, &Player::fail);
    connect(film_.get(), &Film::sought, this, &Player::filmArrived);
    connect(film_.get(), &Film::moved, this, &Player::followFilm);
    stills_ = std::make_unique<Stills>();
    connect(stills_.get(), &Stills::begun, this, [this] {
        isFilmOnScreen_ = false;
        picture_->showStills();
    });
    connect(stills_.get(), &Stills::arrived, this, &Player::stillArrived);
    connect(stills_.get(), &Stills::missed, this, [this] { arrive(false); });
    connect(stills_.get(), &Stills::decoded, this, &Player::settle);
    usePicture(std::make_unique<SoftwarePicture>(PictureCores{film_->core().handle(), stills_->handle()}));

    periodicTimer_.setTimerType(Qt::PreciseTimer);
    periodicTimer_.setInterval(33ms);
    connect(&periodicTimer_, &QTimer::timeout, this, &Player::observe);
    boundTimer_.setTimerType(Qt::PreciseTimer);
    boundTimer_.setSingleShot(true);
    connect(&boundTimer_, &QTimer::timeout, this, [this] { stopAt(item_->forwardPlaybackEndTime); });
    backwardTimer_.setTimerType(Qt::PreciseTimer);
    backwardTimer_.setSingleShot(true);
    connect(&backwardTimer_, &QTimer::timeout, this, &Player::continueBackward);
    dragTimer_.setSingleShot(true);
    dragTimer_.setInterval(150ms);
    connect(&dragTimer_, &QTimer::timeout, this, &Player::carryOutMove);
    settleTimer_.setSingleShot(true);
    connect(&settleTimer_, &QTimer::timeout, this, &Player::settle);
}

Player::~Player() {
    overtakeMove();
}

OpenGLPicture& Player::drawWithOpenGL() {
    picture_.reset(); // the cores draw in one way at a time
    auto picture = std::make_unique<OpenGLPicture>(PictureCores{film_->core().handle(), stills_->handle()});
    OpenGLPicture& drawn = *picture;
    usePicture(std::move(picture));
    return drawn;
}

void Player::drawIntoMemory(const QString& reason) {
    qWarning("%s; drawing into memory instead", qUtf8Printable(reason));
    const QSize greatest = picture_->greatestSize();
    picture_.reset();
    usePicture(std::make_unique<SoftwarePicture>(PictureCores{film_->core().handle(), stills_->handle()}));
    picture_->setGreatestSize(greatest);
    if (item_) {
        picture_->setNaturalSize(wholePixels(item_->info.naturalSize));
    }
    load();
}

void Player::usePicture(std::unique_ptr<PlayerPicture> picture) {
    picture_ = std::move(picture);
    connect(picture_.get(), &PlayerPicture::changed, this, &Player::pictureChanged);
    connect(picture_.get(), &PlayerPicture::started, this, &Player::load, Qt::QueuedConnection);
    connect(picture_.get(), &PlayerPicture::failed, this, &Player::drawIntoMemory, Qt::QueuedConnection);
}

void Player::replaceCurrentItem(std::optional<PlayerItem> item) {
    const bool wasPlaying = takeRate(0);
    overtakeMove();
    rest();
    settleTimer_.stop();
    stills_->close();
    isFilmOnScreen_ = true;
    picture_->showFilm();
    item_ = std::move(item);
    if (item_) {
        state_ = State::loading;
        restingTime_ = CMTime(0, frames().timescale());
        picture_->setNaturalSize(wholePixels(item_->info.naturalSize));
        load();
    } else {
        state_ = State::empty;
        picture_->setNaturalSize({});
        film_->unload();
    }
    if (wasPlaying) {
        Q_EMIT rateChanged(0);
    }
}

/// Lets the core load the item, once its pictures can be drawn.
void Player::load() {
    if (!item_) {
        return;
    }
    if (picture_->isStarted()) {
        film_->load(item_->path, item_->asset);
    } else {
        film_->unload();
    }
}

const PlayerItem* Player::currentItem() const {
    return item_ ? &*item_ : nullptr;
}

void Player::becomeReady() {
    state_ = State::ready;
    stills_->open(item_->asset, film_->syncTimes(), film_->core());
    stills_->yieldTo(frameOnScreen());
    if (rate_ > 0) {
        startFilm();
    } else if (move_) {
        carryOutMove();
    } else {
        settleSoon();
    }
    Q_EMIT itemReady();
    observe();
}

void Player::fail(const QString& reason) {
    const QString name = QString::fromStdString(item_->path.filename().string());
    state_ = State::failed;
    const bool wasPlaying = takeRate(0);
    rest();
    overtakeMove();
    stills_->close();
    restingTime_ = CMTime(0, frames().timescale());
    if (wasPlaying) {
        Q_EMIT rateChanged(0);
    }
    Q_EMIT itemFailed(tr("“%1” cannot be played: %2").arg(name, reason));
}

void Player::setPlaybackBounds(const CMTime& reverse, const CMTime& forward) {
    if (item_) {
        item_->reversePlaybackEndTime = reverse;
        item_->forwardPlaybackEndTime = forward;
        boundTimer_.stop();
        QMetaObject::invokeMethod(this, &Player::watchBound, Qt::QueuedConnection);
    }
}

// --- Playing forward

void Player::play() {
    if (!item_ || state_ == State::failed || rate_ > 0) {
        return;
    }
    const CMTime& bound = item_->forwardPlaybackEndTime;
    const CMTime now = currentTime();
    const bool isAtBound = bound.isNumeric() && now >= bound;
    const bool isAtEnd = state_ == State::ready && isFilmOnScreen_ && !move_ && film_->isAtEnd();
    rest();
    restingTime_ = now;
    takeRate(defaultRate_);
    if (isAtBound || isAtEnd) {
        const CMTime& lower = item_->reversePlaybackEndTime;
        overtakeMove();
        move_ = moveTo(lower.isNumeric() ? lower : CMTime::zero());
        observe();
    }
    if (state_ == State::ready) {
        startFilm();
    }
    Q_EMIT rateChanged(rate_);
}

/// Brings the film to the playhead, if stills have moved it, and plays.
void Player::startFilm() {
    motion_ = Motion::starting;
    settleTimer_.stop();
    const auto from = frames().containing(currentTime());
    const bool isThere = film_->goal() ? from && film_->goal() == from->index : isFilmOnScreen_ && !move_;
    if (from && !isThere) {
        film_->seek(from->index);
    } else if (!film_->isSeeking()) {
        runFilm();
    }
}

void Player::runFilm() {
    motion_ = Motion::forward;
    restingTime_.reset();
    isFilmOnScreen_ = true;
    picture_->showFilm();
    film_->play(rate_);
    stills_->yieldTo(std::nullopt);
    stills_->giveUpPictures();
    if (observed_) {
        periodicTimer_.start();
    }
    if (move_) {
        arrive(true);
    }
}

/// A seek of the film has ended.
void Player::filmArrived() {
    switch (motion_) {
    case Motion::starting: runFilm(); break;
    case Motion::forward:
        if (move_) {
            arrive(true);
        }
        break;
    case Motion::resting:
        if (move_ && film_->goal() == move_->frame.index) { // it was quicker than the stills
            isFilmOnScreen_ = true;
            picture_->showFilm();
            stills_->yieldTo(move_->frame.index);
            arrive(true);
        }
        break;
    case Motion::backward: break;
    }
}

/// The film's time or its end has changed.
void Player::followFilm() {
    if (motion_ == Motion::forward && film_->isAtEnd()) {
        const CMTime& bound = item_->forwardPlaybackEndTime;
        stopAt(bound.isNumeric() || frames().empty() ? bound : frames().last().time);
    } else {
        watchBound();
    }
}

/// Stops at the upper bound. The bound may be within a frame, but the core only reports when frames appear.
void Player::watchBound() {
    constexpr double near = 0.1;
    if (motion_ != Motion::forward || film_->isSeeking() || !item_->forwardPlaybackEndTime.isNumeric()) {
        return;
    }
    const CMTime& bound = item_->forwardPlaybackEndTime;
    const CMTime time = film_->time();
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
    rest();
    begin(moveTo(time));
    Q_EMIT rateChanged(0);
    Q_EMIT reachedEnd();
}

// --- Playing backward

void Player::playBackward(double rate) {
    const double wanted = -std::clamp(rate, slowest, fastest);
    if (state_ != State::ready || frames().empty() || rate_ == wanted) {
        return;
    }
    const CMTime now = currentTime();
    const std::size_t from = frames().containing(now)->index;
    const CMTime& lower = item_->reversePlaybackEndTime;
    rest();
    overtakeMove();
    takeRate(wanted);
    motion_ = Motion::backward;
    settleTimer_.stop();
    backwardEnd_ = lower.isNumeric() && now > lower ? frames().containing(lower)->index : 0;
    backwardStride_ = strideOf(frames(), -wanted);
    restingTime_ = now;
    backwardFrom_ = now;
    backwardSince_.start();
    if (isFilmOnScreen_) {
        stills_->yieldTo(frameOnScreen());
    }
    stills_->jump(from, ReelMotion::backward, backwardStride_);
    Q_EMIT rateChanged(rate_);
    continueBackward();
}

/// Shows the picture before the one on screen when it is due. If one comes late, the clock waits for it:
/// nothing is left out.
void Player::continueBackward() {
    if (motion_ != Motion::backward || !stills_->isIdle() || move_) {
        return;
    }
    const std::size_t shown = *stills_->onScreen();
    if (shown <= backwardEnd_) {
        stopBackward();
        return;
    }
    const std::size_t next = std::max(backwardEnd_, (shown - 1) / backwardStride_ * backwardStride_);
    const double elapsed = static_cast<double>(backwardSince_.nsecsElapsed()) / 1e9;
    const double early = (backwardFrom_ - frames().frame(shown).time).seconds() / -rate_ - elapsed;
    if (early > 0) {
        backwardTimer_.start(static_cast<int>(std::ceil(std::min(early / millisecond, maxTimer))));
        return;
    }
    constexpr double late = -0.1;
    if (early < late) {
        backwardFrom_ = frames().frame(shown).time;
        backwardSince_.start();
    }
    stills_->jump(next, ReelMotion::backward, backwardStride_);
}

void Player::stopBackward() {
    const auto shown = frames().frame(backwardEnd_).time;
    const CMTime& lower = item_->reversePlaybackEndTime;
    takeRate(0);
    rest();
    restingTime_ = lower.isNumeric() ? maximum(lower, shown) : shown;
    settleSoon();
    Q_EMIT rateChanged(0);
    observe();
}

// --- Pausing

void Player::pause() {
    if (takeRate(0)) {
        const std::optional<CMTime> shown =
            motion_ == Motion::forward ? std::nullopt : std::optional(currentTime());
        rest();
        restingTime_ = shown;
        if (move_) {
            carryOutMove();
        } else {
            settle();
        }
        Q_EMIT rateChanged(0);
        observe();
    }
}

/// Ends all motion. The playhead stays; the caller says where, unless the film is on screen.
void Player::rest() {
    motion_ = Motion::resting;
    periodicTimer_.stop();
    boundTimer_.stop();
    backwardTimer_.stop();
    dragTimer_.stop();
    film_->pause();
}

void Player::settleSoon() {
    using std::chrono_literals::operator""ms;
    settleTimer_.start(250ms);
}

/// Once the playhead rests, the pictures around it are decoded. Then the film follows, ready to play.
void Player::settle() {
    if (motion_ == Motion::backward) {
        continueBackward();
        return;
    }
    if (motion_ != Motion::resting || state_ != State::ready || move_ || settleTimer_.isActive()) {
        return;
    }
    const auto frame = frames().containing(currentTime());
    if (!frame) {
        return;
    }
    stills_->prepare(frame->index);
    if (!isFilmOnScreen_ && stills_->isPrepared() && film_->goal() != frame->index) {
        film_->seek(frame->index);
    }
}

void Player::setDefaultRate(double rate) {
    defaultRate_ = std::clamp(rate, slowest, fastest);
    if (rate_ > 0 && takeRate(defaultRate_)) {
        if (motion_ == Motion::forward) {
            film_->play(rate_);
        }
        Q_EMIT rateChanged(rate_);
    }
}

/// Returns whether the rate changed. The caller emits rateChanged.
bool Player::takeRate(double rate) {
    boundTimer_.stop();
    return std::exchange(rate_, rate) != rate;
}

void Player::setVolume(double volume) {
    constexpr double percent = 100;
    volume_ = std::clamp(volume, 0.0, 1.0);
    film_->core().set("volume", std::cbrt(volume_) * percent); // the core cubes what it is given
}

void Player::setMuted(bool muted) {
    muted_ = muted;
    film_->core().set("mute", muted_);
}

// --- The playhead

CMTime Player::currentTime() const {
    if (!item_) {
        return CMTime::zero();
    }
    if (move_) {
        return move_->time;
    }
    if (const auto still = stills_->latest(); still && motion_ == Motion::backward) {
        return frames().frame(*still).time;
    }
    if (restingTime_) {
        return *restingTime_;
    }
    const CMTime time = film_->time();
    if (motion_ != Motion::forward) {
        restingTime_ = time;
    }
    return time;
}

std::optional<std::size_t> Player::frameOnScreen() const {
    if (!isFilmOnScreen_) {
        return stills_->onScreen();
    }
    const auto frame = film_->isSeeking() ? std::nullopt : film_->frameOnScreen();
    return frame ? std::optional(frame->index) : std::nullopt;
}

void Player::setPeriodicTimeObservation(bool on) {
    observed_ = on;
    if (on && motion_ == Motion::forward) {
        periodicTimer_.start();
    } else {
        periodicTimer_.stop();
    }
}

void Player::observe() {
    if (observed_ && item_) {
        Q_EMIT periodicTime(currentTime());
    }
}

// --- Moves

QCoro::Task<bool> Player::seek(CMTime time) {
    QFuture<bool> arrived = begin(moveTo(time));
    const bool shown = co_await arrived;
    co_return shown;
}

QCoro::Task<bool> Player::step(int frameCount) {
    QFuture<bool> arrived = beginStep(frameCount);
    const bool shown = co_await arrived;
    co_return shown;
}

std::optional<Player::Move> Player::moveTo(const CMTime& time) const {
    if (!item_ || !time.isNumeric()) {
        return std::nullopt;
    }
    const CMTime inside = minimum(maximum(time, CMTime(0, frames().timescale())), item_->asset->duration());
    const auto frame = frames().containing(inside);
    return frame ? std::optional(Move{*frame, inside}) : std::nullopt;
}

void Player::scrub(const CMTime& time) {
    pause();
    auto move = moveTo(time);
    if (!move || (state_ != State::loading && state_ != State::ready)) {
        return;
    }
    overtakeMove();
    settleTimer_.stop();
    move_ = std::move(move);
    if (state_ == State::ready) {
        if (isFilmOnScreen_ && stills_->isIdle()) {
            stills_->yieldTo(frameOnScreen());
        }
        dragTimer_.start();
        stills_->drag(move_->frame.index);
    }
    observe();
    stillArrived();
}

QFuture<bool> Player::beginStep(int frameCount) {
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
    return begin(Move{frame, frame.time, frameCount});
}

QFuture<bool> Player::begin(std::optional<Move> move) {
    if (!move || (state_ != State::loading && state_ != State::ready)) {
        return noMove();
    }
    overtakeMove();
    boundTimer_.stop();
    settleTimer_.stop();
    move->arrived = std::make_shared<QPromise<bool>>();
    move->arrived->start();
    QFuture<bool> arrived = move->arrived->future();
    move_ = std::move(move);
    observe();
    carryOutMove();
    return arrived;
}

void Player::carryOutMove() {
    if (!move_ || state_ != State::ready) {
        return;
    }
    const std::size_t goal = move_->frame.index;
    switch (motion_) {
    case Motion::starting: startFilm(); break;
    case Motion::forward: film_->seek(goal); break;
    case Motion::backward: stills_->jump(goal, ReelMotion::backward, backwardStride_); break;
    case Motion::resting: {
        const ReelMotion motion = move_->step == 0  ? ReelMotion::resting
                                  : move_->step < 0 ? ReelMotion::backward
                                                    : ReelMotion::forward;
        const bool isWalk = std::abs(move_->step) == 1 && !dragTimer_.isActive();
        dragTimer_.stop();
        if (isFilmOnScreen_ && stills_->isIdle()) {
            stills_->yieldTo(frameOnScreen());
        }
        if (isWalk) {
            stills_->append(goal, motion);
        } else {
            stills_->jump(goal, motion);
        }
        break;
    }
    }
    stillArrived();
}

/// A still has come to the screen, or is there already.
void Player::stillArrived() {
    const bool isThere = move_ && stills_->isIdle() && frameOnScreen() == move_->frame.index;
    if (motion_ == Motion::backward) {
        if (isThere) {
            backwardFrom_ = move_->frame.time;
            backwardSince_.start();
            arrive(true);
        } else {
            observe();
        }
        continueBackward();
    } else if (isThere && motion_ == Motion::resting) {
        arrive(true);
    }
}

void Player::arrive(bool shown) {
    if (!move_) {
        return;
    }
    Move move = *std::exchange(move_, std::nullopt);
    if (motion_ == Motion::resting) {
        const auto frame = frameOnScreen();
        restingTime_ = shown || !frame ? move.time : frames().frame(*frame).time;
        settleSoon();
    }
    answer(move, shown);
    observe();
}

/// Whoever waits for the move under way gets false.
void Player::overtakeMove() {
    if (move_) {
        answer(*move_, false);
        move_.reset();
    }
}

void Player::answer(Move& move, bool shown) {
    if (move.arrived) {
        move.arrived->addResult(shown);
        move.arrived->finish();
        move.arrived.reset();
    }
}

} // namespace zelvra
