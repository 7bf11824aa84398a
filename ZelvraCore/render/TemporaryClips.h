// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <filesystem>
#include <vector>

namespace zelvra {

/// The temporary freeze clips of one render, in the system's temporary folder; all are deleted when this
/// goes.
///
/// While any render lives it holds a shared lock on the folder. One that finds nobody else there removes what
/// renders that were killed have left behind. Where the folder cannot be locked nothing is swept.
class TemporaryClips {
public:
    TemporaryClips();
    ~TemporaryClips();
    TemporaryClips(const TemporaryClips&) = delete;
    TemporaryClips& operator=(const TemporaryClips&) = delete;

    /// The path of a new clip; nothing is made there yet.
    std::filesystem::path add();

    const std::vector<std::filesystem::path>& paths() const { return paths_; }

private:
    std::filesystem::path folder_;
    int lock_ = -1;
    std::vector<std::filesystem::path> paths_;
};

} // namespace zelvra
