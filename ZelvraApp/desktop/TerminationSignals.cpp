// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/desktop/TerminationSignals.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <system_error>
#include <unistd.h>

namespace zelvra {

namespace {

constexpr std::array termination{SIGINT, SIGTERM, SIGHUP};

/// Ends of a pipe. A signal handler may do little more than write.
std::array<int, 2> ends{-1, -1};

int openPipe() {
    if (pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
        throw std::system_error(errno, std::generic_category(), "pipe");
    }
    return ends[0];
}

extern "C" void noteSignal(int number) {
    const int before = errno;
    const char byte = 0;
    if (write(ends[1], &byte, 1) != 1) {
        _exit(128 + number);
    }
    errno = before;
}

} // namespace

TerminationSignals::TerminationSignals() : notifier_(openPipe(), QSocketNotifier::Read) {
    connect(&notifier_, &QSocketNotifier::activated, this, &TerminationSignals::received);
    struct sigaction action = {};
    action.sa_handler = noteSignal;
    action.sa_flags = static_cast<int>(SA_RESETHAND); // the second one ends the program, as by default
    for (const int number : termination) {
        sigaction(number, &action, nullptr);
    }
}

TerminationSignals::~TerminationSignals() {
    for (const int number : termination) {
        std::signal(number, SIG_DFL);
    }
    notifier_.setEnabled(false);
    close(ends[0]);
    close(ends[1]);
}

} // namespace zelvra
