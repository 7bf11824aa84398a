// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <filesystem>
#include <vector>

namespace zelvra {

/// Sorts by the last component of each path as a file manager does: runs of digits by their number ("clip2"
/// before "clip10"), upper and lower case alike, letters as the user's language orders them. Names that are
/// equal by these rules keep their places.
void sortInNaturalOrder(std::vector<std::filesystem::path>& paths);

} // namespace zelvra
