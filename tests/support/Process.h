// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <string>
#include <vector>

namespace zelvra::test {

/// Runs other programs: foreign ones that check our files (ffmpeg, ffprobe, GStreamer), and our own command
/// line. No shell is involved.

struct ProcessResult {
    int exitCode = -1; ///< 128 + n if signal n ended it, as in shells
    std::string output;
    std::string errors;
};

/// Returns the next piece of a program's standard input; an empty piece ends it.
using ProcessInput = std::function<std::string()>;

/// Runs `arguments` (the program first, found by PATH) to its end. Throws std::system_error if it cannot be
/// started.
ProcessResult runProcess(const std::vector<std::string>& arguments, const ProcessInput& input = {});

/// The same, for programs that must succeed. If one fails, throws std::runtime_error with its output.
ProcessResult runChecked(const std::vector<std::string>& arguments, const ProcessInput& input = {});

} // namespace zelvra::test
