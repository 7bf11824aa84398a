// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/player/StillCore.h"
#include "ZelvraApp/player/StillQueue.h"
#include "ZelvraCore/media/reel/PictureReel.h"

#include <QObject>
#include <QTimer>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace zelvra {

/// Shows single pictures of a movie: those that the engine decodes around the playhead (PictureReel), one
/// after the other (StillQueue), by a core of their own (StillCore). Lives on the main thread; all signals
/// are on it.
class Stills : public QObject {
    Q_OBJECT
public:
    /// Throws MediaError.
    explicit Stills(QObject* parent = nullptr);
    ~Stills() override;

    mpv_handle& handle() const { return core_->handle(); }

    /// Pictures of that movie from now on, which are interpreted as `film` does.
    void open(std::shared_ptr<const Asset> asset, std::vector<std::int64_t> syncTimes, const Mpv& film);
    /// Frees everything.
    void close();
    /// The film is on screen, at `frame`; nullopt: somewhere.
    void yieldTo(std::optional<std::size_t> frame);
    /// Frees the pictures until the next move.
    void giveUpPictures();

    /// Shows that picture as soon as it is there, instead of those that wait.
    void jump(std::size_t frame, media::ReelMotion motion, std::size_t stride = 1);
    /// Shows that picture after those that wait, which are all shown.
    void append(std::size_t frame, media::ReelMotion motion);
    /// Shows the picture that is closest to that one, until others are there that are closer.
    void drag(std::size_t frame);
    /// Decodes around the picture on screen, so that the next moves are quick.
    void prepare(std::size_t frame);

    std::optional<std::size_t> onScreen() const { return queue_.onScreen(); }
    /// The picture on screen, or the one on its way there.
    std::optional<std::size_t> latest() const { return queue_.latest(); }
    bool isIdle() const { return queue_.isIdle(); }
    bool isThere(std::size_t frame) const { return reel_->at(frame) != nullptr; }
    /// Whether everything around the playhead is there.
    bool isPrepared() const { return reel_->isSettled(); }

Q_SIGNALS:
    /// A picture is on its way to the screen.
    void begun();
    /// It is there.
    void arrived();
    /// The picture that is wanted cannot be decoded, nor one in its place.
    void missed();
    /// More pictures have been decoded.
    void decoded();

private:
    void aim(media::ReelMotion motion, std::size_t stride = 1);
    void showNext();
    void showNearest();
    void handleEvents();
    void handleDecoded();

    StillQueue queue_;
    std::optional<std::size_t> dragTarget_;
    QTimer pace_; ///< while a picture that others follow has to stay, so that a window shows it
    QTimer poll_; ///< while a picture is on its way
    std::atomic<bool> wakeupQueued_ = false;
    std::atomic<bool> decodedQueued_ = false;
    std::unique_ptr<StillCore> core_;
    std::unique_ptr<media::PictureReel> reel_;
};

} // namespace zelvra
