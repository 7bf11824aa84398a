// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <filesystem>

namespace zelvra {

/// Where the program keeps what it must not lose between runs: the folder that the environment names in
/// ZELVRA_STATE, else "zelvra" in $XDG_STATE_HOME, else "~/.local/state/zelvra". It need not exist.
std::filesystem::path stateFolder();

/// Makes the folder, which only the user may read, and those above it. Throws MediaError::unwritable.
void makePrivateFolder(const std::filesystem::path& folder);

} // namespace zelvra
