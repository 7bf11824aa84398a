// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/player/Mpv.h"

#include "ZelvraCore/records/MediaError.h"

#include <algorithm>
#include <array>
#include <clocale>
#include <mpv/client.h>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace zelvra {

namespace {

struct Option {
    const char* name;
    const char* value;
};

constexpr std::array common{
    // No settings of the user's own player; only the picture on the screen.
    Option{"config", "no"},
    Option{"load-scripts", "no"},
    Option{"osc", "no"},
    Option{"osd-level", "0"},
    Option{"input-default-bindings", "no"},
    Option{"terminal", "no"},
    Option{"ytdl", "no"},
    // Only the named file.
    Option{"sub-auto", "no"},
    // Stays without a file.
    Option{"idle", "yes"},
    Option{"vo", "libmpv"},
    // Pictures keep their own colours, as grabbed ones do; zimg would map HDR to something far too bright.
    Option{"sws-allow-zimg", "no"},
    // A picture is made smaller by averaging. The default's wider filter and last bit of accuracy make no
    // visible difference and take half of the time that there is for a 1080p picture.
    Option{"sws-scaler", "bilinear"},
    Option{"sws-fast", "yes"},
    // Decoding is left to the processor, so OpenGL need not look for decoders to work with.
    Option{"gpu-hwdec-interop", "no"},
    // The view turns; drawing into memory would abort the process on a quarter turn.
    Option{"video-rotate", "no"},
};

/// Scripts that come with mpv, each a thread. Their names differ between its versions.
constexpr std::array scripts{"load-stats-overlay", "load-osd-console", "load-console", "load-auto-profiles",
                             "load-select",        "load-positioning", "load-commands"};

constexpr std::array forFilm{
    Option{"pause", "yes"},
    Option{"keep-open", "yes"}, // stays at the end
    Option{"audio-file-auto", "no"},
    Option{"audio-display", "no"},
    // A machine without a sound device still plays at the right speed.
    Option{"audio-fallback-to-null", "yes"},
    // The engine's timeline and the engine's frames.
    Option{"demuxer-lavf-o", "advanced_editlist=1"},
    Option{"rebase-start-time", "no"},
    Option{"hr-seek", "yes"},
    Option{"hr-seek-framedrop", "yes"},
};

constexpr std::array forStills{
    Option{"keep-open", "no"}, // it would pause at the end of a stream
    Option{"audio", "no"},
    Option{"demuxer", "rawvideo"},
    Option{"demuxer-rawvideo-fps", "1"}, // so a picture's time is its number
    // Each picture is read when it is wanted, shown at once, never left out, and not kept.
    Option{"untimed", "yes"},
    Option{"framedrop", "no"},
    Option{"cache", "no"},
    Option{"cache-pause", "no"},
    Option{"demuxer-readahead-secs", "0"},
    Option{"vd-lavc-threads", "1"},
};

void check(int error, const std::string& step) {
    if (error < 0) {
        throw MediaError(MediaError::Cause::unsupported,
                         "the player cannot " + step + ": " + mpv_error_string(error));
    }
}

mpv_handle* makeHandle() {
    std::setlocale(LC_NUMERIC, "C");
    mpv_handle* handle = mpv_create();
    if (handle == nullptr) {
        throw MediaError(MediaError::Cause::unsupported, "the player cannot be made");
    }
    return handle;
}

void setOptions(mpv_handle& handle, std::span<const Option> options) {
    for (const Option& option : options) {
        check(mpv_set_option_string(&handle, option.name, option.value), std::string("take ") + option.name);
    }
}

} // namespace

Mpv::Mpv(Use use, std::function<void()> wakeup) : wakeup_(std::move(wakeup)), handle_(makeHandle()) {
    try {
        setOptions(*handle_, common);
        for (const char* script : scripts) {
            mpv_set_option_string(handle_, script, "no");
        }
        use == Use::film ? setOptions(*handle_, forFilm) : setOptions(*handle_, forStills);
        if (qEnvironmentVariable("ZELVRA_AUDIO") == "null") {
            check(mpv_set_option_string(handle_, "ao", "null"), "take ao");
        }
        check(mpv_request_log_messages(handle_, "error"), "report");
        check(mpv_initialize(handle_), "start");
        check(mpv_observe_property(handle_, 0, "time-pos", MPV_FORMAT_DOUBLE), "tell its time");
        check(mpv_observe_property(handle_, 0, "pause", MPV_FORMAT_FLAG), "tell its state");
        check(mpv_observe_property(handle_, 0, "eof-reached", MPV_FORMAT_FLAG), "tell its end");
    } catch (...) {
        mpv_terminate_destroy(handle_);
        throw;
    }
    mpv_set_wakeup_callback(handle_, [](void* self) { static_cast<Mpv*>(self)->wakeup_(); }, this);
}

Mpv::~Mpv() {
    mpv_set_wakeup_callback(handle_, nullptr, nullptr);
    mpv_terminate_destroy(handle_);
}

void Mpv::set(const char* property, bool value) {
    int flag = value ? 1 : 0;
    mpv_set_property(handle_, property, MPV_FORMAT_FLAG, &flag);
}

void Mpv::set(const char* property, double value) {
    mpv_set_property(handle_, property, MPV_FORMAT_DOUBLE, &value);
}

std::optional<double> Mpv::number(const char* property) const {
    double value = 0;
    const int error = mpv_get_property(handle_, property, MPV_FORMAT_DOUBLE, &value);
    return error < 0 ? std::nullopt : std::optional(value);
}

std::optional<std::int64_t> Mpv::integer(const char* property) const {
    std::int64_t value = 0;
    const int error = mpv_get_property(handle_, property, MPV_FORMAT_INT64, &value);
    return error < 0 ? std::nullopt : std::optional(value);
}

bool Mpv::flag(const char* property) const {
    int value = 0;
    return mpv_get_property(handle_, property, MPV_FORMAT_FLAG, &value) >= 0 && value != 0;
}

std::string Mpv::text(const char* property) const {
    char* value = mpv_get_property_string(handle_, property);
    std::string text = value == nullptr ? "" : value;
    mpv_free(value);
    return text;
}

std::int64_t Mpv::load(const std::string& file, const std::string& options) {
    std::vector<const char*> words{"loadfile", file.c_str(), "replace"};
    // Since mpv 0.38 a place in the playlist comes before the options; -1 leaves it to the core.
    if (mpv_client_api_version() >= MPV_MAKE_VERSION(2, 3)) {
        words.push_back("-1");
    }
    words.insert(words.end(), {options.c_str(), nullptr});
    mpv_node result{};
    check(mpv_command_ret(handle_, words.data(), &result), "load");
    std::int64_t entry = 0;
    if (result.format == MPV_FORMAT_NODE_MAP) {
        for (int i = 0; i < result.u.list->num; ++i) {
            if (std::string(result.u.list->keys[i]) == "playlist_entry_id") {
                entry = result.u.list->values[i].u.int64;
            }
        }
    }
    mpv_free_node_contents(&result);
    return entry;
}

void Mpv::command(std::uint64_t id, std::initializer_list<const char*> words) {
    std::vector<const char*> arguments(words);
    arguments.push_back(nullptr);
    mpv_command_async(handle_, id, arguments.data());
}

const mpv_event* Mpv::nextEvent() {
    const mpv_event* event = mpv_wait_event(handle_, 0);
    return event->event_id == MPV_EVENT_NONE ? nullptr : event;
}

} // namespace zelvra
