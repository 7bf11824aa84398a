// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <stop_token>
#include <thread>

namespace zelvra::cli {

/// While an object exists, Ctrl-C (or SIGTERM, SIGHUP) stops the operation that holds `token()` instead of
/// the process, so that it can clean up. More of these signals change nothing: cleaning up takes moments.
/// Those that are ignored when the program starts stay ignored.
///
/// Create it before other threads start, because they inherit that these signals are blocked.
class Interrupt {
public:
    Interrupt();
    Interrupt(const Interrupt&) = delete;
    Interrupt& operator=(const Interrupt&) = delete;
    ~Interrupt();

    std::stop_token token() const { return source_.get_token(); }

private:
    std::stop_source source_;
    int wakeUp_; ///< an event descriptor that wakes and ends the watcher thread
    std::thread watcher_;
};

} // namespace zelvra::cli
