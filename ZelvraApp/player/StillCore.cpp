// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/player/StillCore.h"

#include <algorithm>
#include <array>
#include <condition_variable>
#include <cstring>
#include <mpv/client.h>
#include <mpv/stream_cb.h>
#include <mutex>
#include <utility>
#include <vector>

namespace zelvra {

namespace {

constexpr const char* protocol = "stills";

/// An option's value of any characters, as mpv reads it in a list of options.
std::string quoted(const std::string& value) {
    return '%' + std::to_string(value.size()) + '%' + value;
}

/// mpv's name of a pixel format: FFmpeg's, without the byte order, which is this machine's.
std::string nameForMpv(std::string format) {
    const auto endsWith = [&](std::string_view end) { return format.ends_with(end); };
    if (endsWith("le") || endsWith("be")) {
        format.resize(format.size() - 2);
    }
    // The range of these is said elsewhere.
    return format.starts_with("yuvj") ? "yuv" + format.substr(4) : format;
}

} // namespace

/// What the core reads. Bytes are read by a thread of the core's, which waits for the next picture.
class StillCore::Stream {
public:
    void give(std::vector<std::uint8_t> picture) {
        const std::scoped_lock lock(mutex_);
        picture_ = std::move(picture);
        read_ = 0;
        changed_.notify_all();
    }

    void cancel() {
        const std::scoped_lock lock(mutex_);
        cancelled_ = true;
        changed_.notify_all();
    }

    std::int64_t read(char* to, std::uint64_t size) {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [this] { return cancelled_ || read_ < picture_.size(); });
        if (cancelled_) {
            return 0;
        }
        const std::size_t count = std::min<std::size_t>(size, picture_.size() - read_);
        std::memcpy(to, picture_.data() + read_, count);
        read_ += count;
        if (read_ == picture_.size()) {
            picture_ = {};
            read_ = 0;
        }
        return static_cast<std::int64_t>(count);
    }

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<std::uint8_t> picture_;
    std::size_t read_ = 0;
    bool cancelled_ = false;
};

/// The stream that is to be opened. The core opens streams in a thread of its own, maybe when the next one
/// is already there: each has its own name.
class StillCore::Door {
public:
    std::string place(std::shared_ptr<Stream> stream) {
        const std::scoped_lock lock(mutex_);
        stream_ = std::move(stream);
        name_ = std::string(protocol) + "://" + std::to_string(++count_);
        return name_;
    }

    /// For mpv_stream_cb_add_ro. `self` is the Door.
    static int open(void* self, char* name, mpv_stream_cb_info* info) {
        using Shared = std::shared_ptr<Stream>;
        auto& door = *static_cast<Door*>(self);
        const std::scoped_lock lock(door.mutex_);
        if (name != door.name_) {
            return MPV_ERROR_LOADING_FAILED;
        }
        info->cookie = new Shared(door.stream_); // the core's, until close_fn
        info->read_fn = [](void* stream, char* to, std::uint64_t size) {
            return (*static_cast<Shared*>(stream))->read(to, size);
        };
        info->close_fn = [](void* stream) { delete static_cast<Shared*>(stream); };
        info->cancel_fn = [](void* stream) { (*static_cast<Shared*>(stream))->cancel(); };
        return 0;
    }

private:
    std::mutex mutex_;
    std::shared_ptr<Stream> stream_;
    std::string name_;
    int count_ = 0;
};

StillCore::StillCore(std::function<void()> wakeup)
    : door_(std::make_unique<Door>()), mpv_(std::make_unique<Mpv>(Mpv::Use::stills, std::move(wakeup))) {
    mpv_stream_cb_add_ro(&mpv_->handle(), protocol, door_.get(), &Door::open);
}

StillCore::~StillCore() {
    clear();
}

void StillCore::interpretAs(const Mpv& film) {
    constexpr std::array properties{
        std::pair{"colormatrix", "video-params/colormatrix"},
        std::pair{"colorlevels", "video-params/colorlevels"},
        std::pair{"primaries", "video-params/primaries"},
        std::pair{"gamma", "video-params/gamma"},
        std::pair{"sig-peak", "video-params/sig-peak"},
        std::pair{"light", "video-params/light"},
        std::pair{"chroma-location", "video-params/chroma-location"},
        std::pair{"dw", "video-params/dw"},
        std::pair{"dh", "video-params/dh"},
    };
    std::string options;
    for (const auto& [option, property] : properties) {
        const std::string value = film.text(property);
        if (!value.empty() && value != "unknown") {
            options += (options.empty() ? "" : ":") + std::string(option) + '=' + value;
        }
    }
    if (options != std::exchange(interpretation_, options)) {
        clear();
    }
}

void StillCore::show(const media::RawPicture& picture) {
    if (form_ != picture.form()) {
        load(picture.form());
    }
    ++given_;
    isUnderWay_ = true;
    stream_->give(picture.bytes());
}

void StillCore::load(const media::RawPicture::Form& form) {
    leaveStream();
    form_ = form;
    stream_ = std::make_shared<Stream>();
    const std::string format = nameForMpv(form.pixelFormat);
    entry_ = mpv_->load(door_->place(stream_),
                        "demuxer-rawvideo-w=" + std::to_string(form.width) + ",demuxer-rawvideo-h=" +
                            std::to_string(form.height) + ",demuxer-rawvideo-mp-format=" + format +
                            ",demuxer-rawvideo-size=" + std::to_string(form.byteCount) +
                            ",vf=" + quoted("format=fmt=" + format + ':' + interpretation_));
}

void StillCore::clear() {
    if (stream_) {
        leaveStream();
        door_->place(nullptr);
        mpv_->command(0, {"stop"});
    }
}

void StillCore::leaveStream() {
    if (stream_) {
        stream_->cancel();
    }
    stream_.reset();
    form_.reset();
    entry_ = 0;
    given_ = 0;
    isStarted_ = false;
    hasShown_ = false;
    isUnderWay_ = false;
}

bool StillCore::handleEvents() {
    while (const mpv_event* event = mpv_->nextEvent()) {
        if (event->event_id == MPV_EVENT_START_FILE) {
            isStarted_ = static_cast<const mpv_event_start_file*>(event->data)->playlist_entry_id == entry_;
        } else if (event->event_id == MPV_EVENT_PLAYBACK_RESTART) {
            hasShown_ = isStarted_; // before that, the core reports the time 0 without a picture
        }
    }
    if (!isUnderWay_ || !hasShown_) {
        return false;
    }
    constexpr double half = 0.5; // of the time between two pictures
    isUnderWay_ = mpv_->number("time-pos").value_or(-1) < static_cast<double>(given_ - 1) - half;
    return !isUnderWay_;
}

} // namespace zelvra
