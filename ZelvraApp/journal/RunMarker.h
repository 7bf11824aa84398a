// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/journal/StateFolder.h"

#include <filesystem>
#include <vector>

namespace zelvra {

/// A file for each running program that names the clip which is open now. The program that ends normally
/// removes it, so a marker without its program shows that a run was killed or has crashed.
///
/// The system locks the file for as long as the process lives, whatever ends it. So no process number is
/// compared, and the marker of a running program is never taken. On file systems without locks no marker is
/// ever taken.
///
/// One thread at a time. The operations block on the disk, but never for another process.
class RunMarker {
public:
    /// Marks this run, in the folder "running" in `state`. Throws MediaError::unwritable.
    explicit RunMarker(const std::filesystem::path& state = stateFolder());
    /// Removes the marker: this is a normal end.
    ~RunMarker();
    RunMarker(const RunMarker&) = delete;
    RunMarker& operator=(const RunMarker&) = delete;

    /// Names the clip that is open; an empty path if there is none. It is not flushed: a marker is for a
    /// program that ends, not for a machine that does. Throws MediaError::unwritable.
    void setClip(const std::filesystem::path& clip);

    /// The clips that were open in runs that did not end normally, the latest first. Removes their markers,
    /// so each is returned once. Never throws.
    static std::vector<std::filesystem::path> leftBehind(const std::filesystem::path& state = stateFolder());

private:
    bool create(const std::filesystem::path& folder);

    std::filesystem::path file_;
    int descriptor_ = -1;
};

} // namespace zelvra
