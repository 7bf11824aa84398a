// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <stop_token>
#include <thread>

namespace zelvra::cli {

/// While it lives, Ctrl-C (and a polite request to end) stops what holds `token()` instead of the process, so
/// that it can clean up. A second Ctrl-C ends the process at once.
///
/// Make it before other threads start: they inherit that these signals are not theirs.
class Interrupt {
public:
    Interrupt();
    Interrupt(const Interrupt&) = delete;
    Interrupt& operator=(const Interrupt&) = delete;
    ~Interrupt();

    std::stop_token token() const { return source_.get_token(); }

private:
    std::stop_source source_;
    int wakeUp_; ///< an event descriptor that tells the watcher to end
    std::thread watcher_;
};

} // namespace zelvra::cli
