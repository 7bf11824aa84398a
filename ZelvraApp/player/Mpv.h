// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <initializer_list>
#include <optional>

struct mpv_handle;
struct mpv_event;

namespace zelvra {

/// A libmpv core set up as an exact player that a program controls: no window, no keys, none of the user's
/// configuration, edit lists applied, pictures as coded. All its options are set here.
///
/// Calls wait for the core, which responds between two frames.
class Mpv {
public:
    /// Sets LC_NUMERIC to "C", as libmpv demands. `wakeup` is called from any thread when events wait, and no
    /// more once the destructor has begun; it must not call anything here. Throws MediaError.
    explicit Mpv(std::function<void()> wakeup);
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

    /// Replaces what is loaded, paused at its start. `videoNumber` counts the file's video tracks from 1.
    /// Returns what START_FILE and END_FILE call this entry.
    std::int64_t load(const std::filesystem::path& movie, int videoNumber);
    /// Runs a command. A COMMAND_REPLY that carries `id` reports whether it failed.
    void command(std::uint64_t id, std::initializer_list<const char*> words);

    /// The next event that waits; null when there is none. Valid until the next call.
    const mpv_event* nextEvent();

private:
    std::function<void()> wakeup_;
    mpv_handle* handle_;
};

} // namespace zelvra
