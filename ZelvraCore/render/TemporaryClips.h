// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <filesystem>
#include <vector>

namespace zelvra {

/// The temporary clips of one render, in the system's temporary folder, which is first used for the first
/// clip. The destructor deletes all of them.
///
/// Each render with clips holds a shared lock on the folder. A render that starts while no other holds it
/// removes the clips of renders that were killed. If the folder cannot be locked, nothing is removed.
class TemporaryClips {
public:
    TemporaryClips() = default;
    ~TemporaryClips();
    TemporaryClips(const TemporaryClips&) = delete;
    TemporaryClips& operator=(const TemporaryClips&) = delete;

    /// The path of a new clip. The file does not exist yet. Throws MediaError::unwritable if there is no
    /// temporary folder.
    std::filesystem::path add();

    /// Deletes the clips; returns those that could not be. The next render tries again.
    std::vector<std::filesystem::path> remove();

    const std::vector<std::filesystem::path>& paths() const { return paths_; }

private:
    void useFolder();

    std::filesystem::path folder_; ///< empty until there is a clip
    int lock_ = -1;
    std::vector<std::filesystem::path> paths_;
};

} // namespace zelvra
