// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/player/PlayerPicture.h"
#include "ZelvraCore/media/Asset.h"
#include "ZelvraCore/media/FrameIndex.h"
#include "ZelvraCore/records/CMTime.h"
#include "ZelvraCore/records/SourceInfo.h"

#include <QElapsedTimer>
#include <QFuture>
#include <QObject>
#include <QPromise>
#include <QTimer>
#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>
#include <qcoro/qcorotask.h>

namespace zelvra {

class Film;
class OpenGLPicture;
class Stills;

/// A movie to be played, as the engine knows it. `asset` is an opened one, never null, whose frame index the
/// player seeks by: the frame that it shows is the frame that the engine grabs.
struct PlayerItem {
    std::filesystem::path path;
    std::shared_ptr<const Asset> asset;
    SourceInfo info;
    /// Playback bounds; an invalid time is none. See Player::setPlaybackBounds.
    CMTime reversePlaybackEndTime = CMTime::invalid();
    CMTime forwardPlaybackEndTime = CMTime::invalid();
};

/// Plays one movie at a time, exact to the frame: the operations that a session needs, on libmpv cores. It
/// does not know highlights, trims or windows; a view shows `picture()`.
///
/// Two hands show pictures: the film plays forward, with sound; the stills show everything else, picture by
/// picture. Both draw the same picture at the same time of the movie; docs/player.md explains why there are
/// two.
///
/// Lives on the thread of the application object, which must exist and run its event loop: all operations and
/// all signals are on that thread. None of them waits for the disk, or for longer than a picture takes to be
/// decoded. Late results of an item that has been replaced are dropped.
///
/// With ZELVRA_AUDIO=null in the environment sound is played at its speed, but not heard.
class Player : public QObject {
    Q_OBJECT
public:
    /// Throws MediaError if no player core can be made.
    explicit Player(QObject* parent = nullptr);
    ~Player() override;

    /// Loads an item, paused at its first frame, or unloads (nullopt). Seeks that are under way are
    /// overtaken. `itemReady` or `itemFailed` follows; seeks and `play` before that are carried out when the
    /// item is ready.
    void replaceCurrentItem(std::optional<PlayerItem> item);
    /// Null if none is loaded. An item that failed stays the current one.
    const PlayerItem* currentItem() const;
    bool isReady() const { return state_ == State::ready; }

    /// Bounds of forward playback; the playhead is not moved. At `forward` playback pauses: current time is
    /// then `forward` exactly, the picture the frame at it (past the last frame, the last one). Playing on
    /// from there, or from beyond, starts at `reverse`, else at the movie's start. Kept in the current item;
    /// does nothing without one.
    void setPlaybackBounds(const CMTime& reverse, const CMTime& forward);

    /// Plays at the default rate. At the movie's end, from the start or the lower bound.
    void play();
    /// Plays backward without sound, from the picture on screen to the lower bound or the movie's start,
    /// where it pauses. `rate` as of setDefaultRate. Shows at most 40 pictures a second, all of them or every
    /// second one and so on, and goes slower if they cannot be decoded in time. Seeks do not end it.
    void playBackward(double rate);
    void pause();
    /// 0 while paused, else the wanted rate, negative while playing backward, from `play` until `pause`, a
    /// bound or the end, also while a seek is under way.
    double rate() const { return rate_; }
    /// 0.01 to 100; a movie that plays forward takes it at once.
    void setDefaultRate(double rate);

    /// Linear gain, 0 to 1.
    void setVolume(double volume);
    double volume() const { return volume_; }
    void setMuted(bool muted);
    bool isMuted() const { return muted_; }

    /// Where the playhead is. Paused after a seek: the wanted time, moved into the movie; the picture is the
    /// frame that contains it. At a bound: the bound. Otherwise when the picture on screen appeared, in ticks
    /// of the video track; at the movie's end that of the last frame, so that this frame can be grabbed. From
    /// the call of a seek, step or scrub on: its target, although the picture comes later. Zero without an
    /// item. A bound or a seek at the movie's very end gives the movie's duration, at which there is nothing
    /// to grab: grab the last frame.
    CMTime currentTime() const;

    /// Moves exactly to the frame that contains `time`, paused or playing, and goes on as before. True when
    /// its picture is there; false when a later seek, step, scrub or item overtook it, or nothing can be
    /// shown.
    QCoro::Task<bool> seek(CMTime time);
    /// Pauses and follows a drag: shows the picture at hand that is closest to `time`, and closer ones as
    /// they are decoded. A moment after the last call it goes on to the exact frame by itself.
    void scrub(const CMTime& time);
    /// Pauses and moves by that many frames from the one on screen (or from the target of the move under
    /// way), as far as there are frames. As `seek`; false also if there is no frame to move to. Single steps
    /// that overtake one another still show every frame, in order.
    QCoro::Task<bool> step(int frameCount);
    /// Whether the picture that the last move wants is not there yet. A key that is held should not step on
    /// before it is.
    bool isMoving() const { return move_.has_value(); }

    /// Whether `periodicTime` is emitted: 30 times a second while playing, when a move begins and ends, and
    /// when playback has stopped. Only while an item is loaded.
    void setPeriodicTimeObservation(bool on);

    /// What the window shows. The player owns it.
    PlayerPicture& picture() const { return *picture_; }
    /// Lets pictures be drawn by the window's OpenGL from now on, instead of into memory. Only before the
    /// first item, whose loading waits until the picture is started. If it fails to start, pictures are drawn
    /// into memory after all, and the log says why.
    OpenGLPicture& drawWithOpenGL();

Q_SIGNALS:
    void periodicTime(zelvra::CMTime time);
    void rateChanged(double rate);
    /// The item's first picture is there.
    void itemReady();
    /// The current item cannot be played, or not any further; one line gives the cause.
    void itemFailed(QString reason);
    /// Playback paused at the upper bound or at the movie's end.
    void reachedEnd();
    /// `picture()` has something new to show.
    void pictureChanged();

private:
    enum class State { empty, loading, ready, failed };
    enum class Motion {
        resting,  ///< paused; stills follow moves
        starting, ///< the film, paused, seeks to where it is to play from
        forward,  ///< the film plays
        backward, ///< stills are shown by the clock
    };

    /// A move to another frame, until its picture is there.
    struct Move {
        FrameIndex::Frame frame;
        CMTime time;  ///< the current time during the move, and after it while paused
        int step = 0; ///< by so many frames; 0 for a seek
        std::shared_ptr<QPromise<bool>> arrived = {};
    };

    const FrameIndex& frames() const { return item_->asset->frames(); }
    std::optional<Move> moveTo(const CMTime& time) const;
    std::optional<std::size_t> frameOnScreen() const;

    QFuture<bool> begin(std::optional<Move> move);
    QFuture<bool> beginStep(int frameCount);
    void carryOutMove();
    void arriveIfThere();
    void stillArrived();
    void arrive(bool shown);
    void overtakeMove();
    static void answer(Move& move, bool shown);
    void rest();
    void settleSoon();
    void settle();

    void startFilm();
    void runFilm();
    void filmArrived();
    void followFilm();
    void watchBound();
    void stopAt(const CMTime& time);

    void continueBackward();
    void stopBackward();

    void usePicture(std::unique_ptr<PlayerPicture> picture);
    void drawIntoMemory(const QString& reason);
    void load();
    void becomeReady();
    void fail(const QString& reason);
    bool takeRate(double rate);
    void observe();

    std::optional<PlayerItem> item_;
    State state_ = State::empty;
    Motion motion_ = Motion::resting;
    bool isFilmOnScreen_ = true; ///< else a still
    std::optional<Move> move_;
    /// The playhead while it rests; nullopt while only the film's core knows it.
    mutable std::optional<CMTime> restingTime_;

    double rate_ = 0;
    double defaultRate_ = 1;
    double volume_ = 1;
    bool muted_ = false;
    bool observed_ = false;
    QTimer periodicTimer_;
    QTimer boundTimer_;
    QTimer dragTimer_;   ///< ends when a drag has come to rest
    QTimer settleTimer_; ///< ends when the playhead has come to rest

    QTimer backwardTimer_; ///< ends when the next picture is due
    QElapsedTimer backwardSince_;
    CMTime backwardFrom_; ///< where the playhead was then
    std::size_t backwardEnd_ = 0;
    std::size_t backwardStride_ = 1;

    std::unique_ptr<Film> film_;
    std::unique_ptr<Stills> stills_;
    std::unique_ptr<PlayerPicture> picture_;
};

} // namespace zelvra
