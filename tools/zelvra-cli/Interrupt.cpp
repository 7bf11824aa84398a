// SPDX-License-Identifier: GPL-3.0-or-later

#include "tools/zelvra-cli/Interrupt.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <functional>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/signalfd.h>
#include <system_error>
#include <unistd.h>

namespace zelvra::cli {
namespace {

/// Without those that the program was started to ignore, as nohup does.
sigset_t endingSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction action{};
        if (::sigaction(signal, nullptr, &action) == 0 && action.sa_handler != SIG_IGN) {
            sigaddset(&signals, signal);
        }
    }
    return signals;
}

void watch(int wakeUp, std::stop_source& source) {
    const sigset_t signals = endingSignals();
    const int arrivals = ::signalfd(-1, &signals, SFD_CLOEXEC);
    std::array<pollfd, 2> polled{{{arrivals, POLLIN, 0}, {wakeUp, POLLIN, 0}}};
    while (::poll(polled.data(), polled.size(), -1) < 0 && errno == EINTR) {
    }
    if (polled[0].revents != 0) {
        signalfd_siginfo arrival{};
        [[maybe_unused]] const ssize_t taken = ::read(arrivals, &arrival, sizeof arrival);
        source.request_stop();
        pollfd rest{wakeUp, POLLIN, 0};
        while (::poll(&rest, 1, -1) < 0 && errno == EINTR) {
        }
    }
    ::close(arrivals);
}

} // namespace

Interrupt::Interrupt() : wakeUp_(::eventfd(0, EFD_CLOEXEC)) {
    if (wakeUp_ < 0) {
        throw std::system_error(errno, std::generic_category(), "eventfd");
    }
    const sigset_t signals = endingSignals();
    ::pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    watcher_ = std::thread(watch, wakeUp_, std::ref(source_));
}

Interrupt::~Interrupt() {
    ::eventfd_write(wakeUp_, 1);
    watcher_.join();
    ::close(wakeUp_);
}

} // namespace zelvra::cli
