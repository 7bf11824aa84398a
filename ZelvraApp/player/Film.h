// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/player/Mpv.h"
#include "ZelvraApp/player/SeekQueue.h"
#include "ZelvraCore/media/Asset.h"
#include "ZelvraCore/records/CMTime.h"

#include <QObject>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <vector>

struct mpv_event;

namespace zelvra {

/// The core that plays the movie, with sound: loads it, seeks exactly, plays forward. Frames are counted as
/// the engine's frame index counts them. Lives on the main thread; all signals are on it.
class Film : public QObject {
    Q_OBJECT
public:
    /// Throws MediaError.
    explicit Film(QObject* parent = nullptr);
    ~Film() override;

    Mpv& core() { return *mpv_; }
    const Mpv& core() const { return *mpv_; }

    /// Loads a movie, paused at its first frame. `loaded` or `failed` follows. A movie that was loading is
    /// given up.
    void load(const std::filesystem::path& path, std::shared_ptr<const Asset> asset);
    void unload();
    /// Of the movie, see Asset::syncTimes.
    const std::vector<std::int64_t>& syncTimes() const { return syncTimes_; }

    /// At once, if it is loaded.
    void play(double rate);
    void pause();
    /// Goes exactly to that frame, paused or playing. `sought` follows, unless a later seek overtakes it.
    void seek(std::size_t frame);
    bool isSeeking() const { return seeks_.isSeeking(); }
    /// The frame of the last seek, until the movie plays.
    std::optional<std::size_t> goal() const { return seeks_.goal(); }

    /// When the frame on screen appeared, in ticks of the video track.
    CMTime time() const;
    std::optional<FrameIndex::Frame> frameOnScreen() const;
    bool isAtEnd() const;

Q_SIGNALS:
    void loaded();
    /// It cannot be played, or not any further; one line gives the cause.
    void failed(QString reason);
    void sought();
    /// The time on screen, or whether it is the movie's end, has changed.
    void moved();

private:
    const FrameIndex& frames() const { return asset_->frames(); }
    void reset();
    void handleEvents();
    void handle(const mpv_event& event);
    void seekEnded();
    bool startsAgain();
    void carryOut(const CoreSeek& seek);

    std::shared_ptr<const Asset> asset_;
    std::vector<std::int64_t> syncTimes_;
    std::int64_t entry_ = 0; ///< the core's number of the movie; events of earlier ones are ignored
    bool entryStarted_ = false;
    bool isLoaded_ = false;
    bool startedAgain_ = false;
    bool isPlaying_ = false;
    SeekQueue seeks_;
    std::uint64_t seekId_ = 0; ///< of the core's command that carries out the seek under way
    QString firstLogMessage_;  ///< of the core while it loads the movie
    /// The core's description of what ended the movie. Reported after all of the core's events are handled,
    /// because its log messages, which name the cause, come after its events.
    std::optional<QString> failure_;
    std::atomic<bool> wakeupQueued_ = false;
    std::unique_ptr<Mpv> mpv_;
};

} // namespace zelvra
