// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/player/Mpv.h"
#include "ZelvraCore/media/reel/RawPicture.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace zelvra {

/// A core that shows single pictures which the engine has decoded. It is given a movie without end, whose raw
/// pictures are written while they are read. So a picture is on screen a few milliseconds after it is given,
/// drawn by the same code as a movie that plays, with the same pixels.
///
/// One picture at a time: `show` may be called again when `handleEvents` has reported the last one.
class StillCore {
public:
    /// `wakeup` as of Mpv. Throws MediaError.
    explicit StillCore(std::function<void()> wakeup);
    StillCore(const StillCore&) = delete;
    StillCore& operator=(const StillCore&) = delete;
    ~StillCore();

    mpv_handle& handle() const { return mpv_->handle(); }

    /// Takes over how a core that has loaded the same movie interprets its pictures: colours, shape.
    void interpretAs(const Mpv& film);
    void show(const media::RawPicture& picture);
    /// Whether a picture is under way.
    bool isBusy() const { return isUnderWay_; }
    /// Whether the picture given last is on screen now, and was not at the last call. To be called for each
    /// wakeup, and now and then while a picture is under way: the core may report that its time changes just
    /// before it does.
    bool handleEvents();
    /// Frees all pictures. One that was under way is never reported.
    void clear();

private:
    class Stream;
    class Door;

    void load(const media::RawPicture::Form& form);
    void leaveStream();

    std::string interpretation_; ///< options of mpv's "format" filter
    std::optional<media::RawPicture::Form> form_;
    std::shared_ptr<Stream> stream_;
    std::int64_t entry_ = 0;
    bool isStarted_ = false; ///< the events that come are of this stream
    bool hasShown_ = false;
    std::int64_t given_ = 0; ///< pictures given since the stream was loaded
    bool isUnderWay_ = false;
    std::unique_ptr<Door> door_;
    std::unique_ptr<Mpv> mpv_; ///< destroyed first: it opens and reads streams
};

} // namespace zelvra
