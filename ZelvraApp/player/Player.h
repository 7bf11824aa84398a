// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/player/PlayerPicture.h"
#include "ZelvraCore/media/Asset.h"
#include "ZelvraCore/media/FrameIndex.h"
#include "ZelvraCore/records/CMTime.h"
#include "ZelvraCore/records/SourceInfo.h"

#include <QFuture>
#include <QObject>
#include <QPromise>
#include <QTimer>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <qcoro/qcorotask.h>
#include <vector>

struct mpv_event;

namespace zelvra {

class Mpv;
class OpenGLPicture;

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

/// Plays one movie at a time, exact to the frame: the operations that a session needs, on a libmpv core. It
/// does not know highlights, trims or windows; a view shows `picture()`.
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
    void pause();
    /// 0 while paused, else the wanted rate, from `play` until `pause`, a bound or the end, also while a seek
    /// is under way.
    double rate() const { return rate_; }
    /// 0.01 to 100; a playing movie takes it at once.
    void setDefaultRate(double rate);

    /// Linear gain, 0 to 1.
    void setVolume(double volume);
    double volume() const { return volume_; }
    void setMuted(bool muted);
    bool isMuted() const { return muted_; }

    /// Where the playhead is. Paused after an exact seek: the wanted time, moved into the movie;
    /// the picture is the frame that contains it. At a bound: the bound. Otherwise when the picture on screen
    /// appeared, in ticks of the video track; at the movie's end that of the last frame, so that this frame
    /// can be grabbed. While a seek is under way: its target. Zero without an item. A bound or a seek at the
    /// movie's very end gives the movie's duration, at which there is nothing to grab: grab the last frame.
    CMTime currentTime() const;

    /// Moves exactly to the frame that contains `time`, paused or playing, and goes on as before. True when
    /// its picture is there; false when a later seek, step, scrub or item overtook it, or nothing can be
    /// shown. One seek is carried out at a time; of those that wait only the latest.
    QCoro::Task<bool> seek(CMTime time);
    /// Moves to the sync frame at or before `time`, which is quick: for drags, followed by a `seek` when the
    /// drag ends.
    void scrub(const CMTime& time);
    /// Pauses and moves by that many frames from the one on screen (or from the target of the seek under
    /// way), as far as there are frames. As `seek`; false also if there is no frame to move to.
    QCoro::Task<bool> step(int frameCount);

    /// Whether `periodicTime` is emitted: 30 times a second while playing, and whenever the playhead has
    /// moved otherwise or playback has stopped. Only while an item is loaded.
    void setPeriodicTimeObservation(bool on);

    /// What the window shows. The player owns it.
    PlayerPicture& picture() const { return *picture_; }
    /// Lets pictures be drawn by the window's OpenGL from now on, instead of into memory. Only before the
    /// first item, whose loading waits until the picture is started.
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

    /// A move to another frame, waiting or under way.
    struct Move {
        FrameIndex::Frame frame; ///< to be on screen at the end
        CMTime restingTime;      ///< the current time during the move, and after it while paused
        bool exact = true;       ///< else to the sync frame at or before
        std::shared_ptr<QPromise<bool>> arrived = {};
        bool isSecondTry = false;
    };

    const FrameIndex& frames() const { return item_->asset->frames(); }
    CMTime screenTime() const;
    std::optional<FrameIndex::Frame> frameOnScreen() const;
    CMTime insideMovie(const CMTime& time) const;

    QFuture<bool> moveTo(const CMTime& time, bool exact);
    QFuture<bool> moveBy(int frameCount);
    QFuture<bool> begin(Move move);
    void carryOutWaiting();
    std::optional<std::size_t> framesToPlay(const Move& move) const;
    void seekCore(const Move& move);
    bool startsAgain();
    bool triesAgain();
    void arrive(bool shown);
    void overtakeMoves();
    static void answer(Move& move, bool shown);

    void usePicture(std::unique_ptr<PlayerPicture> picture);
    void load();
    void handleEvents();
    void handle(const mpv_event& event);
    void followCore();
    void watchBound();
    void stopAt(const CMTime& time);
    void becomeReady();
    void fail(const QString& reason);
    bool takeRate(double rate);
    void applyRate();
    void observe();

    std::optional<PlayerItem> item_;
    std::vector<std::int64_t> syncTimes_; ///< of the item, see Asset::syncTimes
    State state_ = State::empty;
    std::int64_t entry_ = 0; ///< the core's number of the item; events of earlier items are ignored
    bool entryStarted_ = false;
    bool startedAgain_ = false;
    QString firstLogMessage_; ///< of the core while it loads the item
    /// The core's description of what ended the item. Reported after all of the core's events are handled,
    /// because its log messages, which name the cause, come after its events.
    std::optional<QString> failure_;

    std::optional<Move> underWay_;
    std::optional<Move> waiting_;
    bool stepping_ = false;    ///< `underWay_` is played frame by frame, not sought
    std::uint64_t moveId_ = 0; ///< of the core's command that carries out `underWay_`
    /// The playhead while it rests; nullopt while only the core knows it.
    mutable std::optional<CMTime> restingTime_;

    double rate_ = 0;
    double defaultRate_ = 1;
    double volume_ = 1;
    bool muted_ = false;
    bool observed_ = false;
    QTimer periodicTimer_;
    QTimer boundTimer_;

    std::atomic<bool> wakeupQueued_ = false;
    std::unique_ptr<Mpv> mpv_;
    std::unique_ptr<PlayerPicture> picture_;
};

} // namespace zelvra
