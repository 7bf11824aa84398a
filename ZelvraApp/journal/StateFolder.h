// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <filesystem>

namespace zelvra {

/// Where the program keeps what it must not lose between runs: "zelvra" in $XDG_STATE_HOME, else
/// "~/.local/state/zelvra". It need not exist. If the environment names another file for the window's state
/// in ZELVRA_STATE, it is the folder of that file; or that folder itself, if it names one.
std::filesystem::path stateFolder();

/// Makes the folder, which only the user may read, and those above it. Throws MediaError::unwritable.
void makePrivateFolder(const std::filesystem::path& folder);

} // namespace zelvra
