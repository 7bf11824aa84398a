// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/support/Process.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <stdexcept>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace zelvra::test {
namespace {

class Descriptor {
public:
    explicit Descriptor(int descriptor = -1) : descriptor_(descriptor) {}
    Descriptor(Descriptor&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        close();
        descriptor_ = std::exchange(other.descriptor_, -1);
        return *this;
    }
    ~Descriptor() { close(); }

    int get() const { return descriptor_; }
    bool isOpen() const { return descriptor_ >= 0; }
    void close() {
        if (isOpen()) {
            ::close(std::exchange(descriptor_, -1));
        }
    }

private:
    int descriptor_;
};

struct Pipe {
    Descriptor read, write;

    Pipe() {
        std::array<int, 2> ends{};
        if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
            throw std::system_error(errno, std::generic_category(), "pipe");
        }
        read = Descriptor(ends[0]);
        write = Descriptor(ends[1]);
    }
};

/// The start-up instructions of a child process: how its descriptors map to ours.
class SpawnActions {
public:
    SpawnActions() { posix_spawn_file_actions_init(&actions_); }
    SpawnActions(const SpawnActions&) = delete;
    SpawnActions& operator=(const SpawnActions&) = delete;
    ~SpawnActions() { posix_spawn_file_actions_destroy(&actions_); }

    void connect(const Descriptor& ours, int theirs) {
        posix_spawn_file_actions_adddup2(&actions_, ours.get(), theirs);
    }
    const posix_spawn_file_actions_t* get() const { return &actions_; }

private:
    posix_spawn_file_actions_t actions_{};
};

pid_t spawn(const std::vector<std::string>& arguments, const SpawnActions& actions) {
    std::vector<std::string> copies = arguments;
    std::vector<char*> pointers;
    pointers.reserve(copies.size() + 1);
    for (std::string& argument : copies) {
        pointers.push_back(argument.data());
    }
    pointers.push_back(nullptr);
    pid_t child = 0;
    const int error = posix_spawnp(&child, pointers[0], actions.get(), nullptr, pointers.data(), environ);
    if (error != 0) {
        throw std::system_error(error, std::generic_category(), "cannot start " + arguments.at(0));
    }
    return child;
}

/// Appends the data that can be read; closes the descriptor at its end.
void drain(Descriptor& from, std::string& to) {
    std::array<char, 65536> piece{};
    const ssize_t count = ::read(from.get(), piece.data(), piece.size());
    if (count > 0) {
        to.append(piece.data(), static_cast<std::size_t>(count));
    } else if (count == 0 || errno != EINTR) {
        from.close();
    }
}

/// Writes as much of the input as the pipe takes. Closes it at the input's end or if nothing reads it.
void feed(Descriptor& to, const ProcessInput& input, std::string& pending) {
    if (pending.empty() && input) {
        pending = input();
    }
    if (pending.empty()) {
        to.close();
        return;
    }
    const ssize_t count = ::write(to.get(), pending.data(), pending.size());
    if (count > 0) {
        pending.erase(0, static_cast<std::size_t>(count));
    } else if (errno != EINTR && errno != EAGAIN) {
        to.close();
    }
}

} // namespace

ProcessResult runProcess(const std::vector<std::string>& arguments, const ProcessInput& input) {
    std::signal(SIGPIPE, SIG_IGN); // a child that stops reading shows in its exit status
    Pipe in, out, err;
    SpawnActions actions;
    actions.connect(in.read, STDIN_FILENO);
    actions.connect(out.write, STDOUT_FILENO);
    actions.connect(err.write, STDERR_FILENO);
    const pid_t child = spawn(arguments, actions);
    in.read.close();
    out.write.close();
    err.write.close();
    ::fcntl(in.write.get(), F_SETFL, O_NONBLOCK);

    ProcessResult result;
    std::string pending;
    while (out.read.isOpen() || err.read.isOpen()) {
        std::array<pollfd, 3> polled{
            {{out.read.get(), POLLIN, 0}, {err.read.get(), POLLIN, 0}, {in.write.get(), POLLOUT, 0}}};
        if (::poll(polled.data(), polled.size(), -1) < 0 && errno != EINTR) {
            throw std::system_error(errno, std::generic_category(), "poll");
        }
        if (polled[0].revents != 0) {
            drain(out.read, result.output);
        }
        if (polled[1].revents != 0) {
            drain(err.read, result.errors);
        }
        if (polled[2].revents != 0) {
            feed(in.write, input, pending);
        }
    }
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    result.exitCode = WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
    return result;
}

ProcessResult runChecked(const std::vector<std::string>& arguments, const ProcessInput& input) {
    ProcessResult result = runProcess(arguments, input);
    if (result.exitCode != 0) {
        std::string line;
        for (const std::string& argument : arguments) {
            line += argument + ' ';
        }
        throw std::runtime_error(line + "ended with " + std::to_string(result.exitCode) + ": " +
                                 result.errors);
    }
    return result;
}

} // namespace zelvra::test
