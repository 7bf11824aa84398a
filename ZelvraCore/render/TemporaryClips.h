// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <filesystem>
#include <vector>

namespace zelvra {

/// The temporary clips of one render, in the system's temporary folder. The destructor deletes all of them.
///
/// Each render holds a shared lock on the folder. A render that starts while no other holds it removes the
/// clips of renders that were killed. If the folder cannot be locked, nothing is removed.
class TemporaryClips {
public:
    TemporaryClips();
    ~TemporaryClips();
    TemporaryClips(const TemporaryClips&) = delete;
    TemporaryClips& operator=(const TemporaryClips&) = delete;

    /// The path of a new clip. The file does not exist yet.
    std::filesystem::path add();

    const std::vector<std::filesystem::path>& paths() const { return paths_; }

private:
    std::filesystem::path folder_;
    int lock_ = -1;
    std::vector<std::filesystem::path> paths_;
};

} // namespace zelvra
