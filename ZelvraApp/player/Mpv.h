// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <optional>
#include <string>

struct mpv_handle;
struct mpv_event;

namespace zelvra {

/// A libmpv core set up as an exact player that a program controls: no window, no keys, none of the user's
/// configuration, edit lists applied, pictures as coded. All its lasting options are set here.
///
/// Calls wait for the core, which responds between two frames.
class Mpv {
public:
    enum class Use {
        film,   ///< a movie, paused at first
        stills, ///< raw pictures without sound, each shown as soon as it can be read
    };

    /// Sets LC_NUMERIC to "C", as libmpv demands. `wakeup` is called from any thread when events wait, and no
    /// more once the destructor has begun; it must not call anything here. Throws MediaError.
    Mpv(Use use, std::function<void()> wakeup);
    Mpv(const Mpv&) = delete;
    Mpv& operator=(const Mpv&) = delete;
    ~Mpv();

    mpv_handle& handle() const { return *handle_; }

    void set(const char* property, bool value);
    void set(const char* property, double value);
    /// nullopt if the property has no value at present.
    std::optional<double> number(const char* property) const;
    std::optional<std::int64_t> integer(const char* property) const;
    bool flag(const char* property) const;
    /// Empty if the property has no value at present.
    std::string text(const char* property) const;

    /// Replaces what is loaded. `options` are for this file alone, as "name=value,name=value". Returns what
    /// START_FILE and END_FILE call this entry.
    std::int64_t load(const std::string& file, const std::string& options);
    /// Runs a command. A COMMAND_REPLY that carries `id` reports whether it failed.
    void command(std::uint64_t id, std::initializer_list<const char*> words);

    /// The next event that waits; null when there is none. Valid until the next call.
    const mpv_event* nextEvent();

private:
    std::function<void()> wakeup_;
    mpv_handle* handle_;
};

} // namespace zelvra
