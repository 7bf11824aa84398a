// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <string>
#include <vector>

namespace zelvra::test {

/// Runs other programs: the foreign opinions (ffmpeg, ffprobe, GStreamer) that our files are checked by, and
/// our own command line. No shell is involved.

struct ProcessResult {
    int exitCode = -1; ///< 128 + n where signal n ended it, as shells count
    std::string output;
    std::string errors;
};

/// Gives the next piece of a program's standard input; an empty piece ends it.
using ProcessInput = std::function<std::string()>;

/// Runs `arguments` (the program first, found by PATH) to its end. Throws std::system_error where it cannot
/// be started.
ProcessResult runProcess(const std::vector<std::string>& arguments, const ProcessInput& input = {});

/// The same, for programs that must succeed: throws std::runtime_error with what they said otherwise.
ProcessResult runChecked(const std::vector<std::string>& arguments, const ProcessInput& input = {});

} // namespace zelvra::test
