// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <filesystem>

namespace zelvra {

/// Shows the file in the desktop's file manager: its folder, with the file selected, by the D-Bus interface
/// org.freedesktop.FileManager1. If no file manager offers that, opens the folder. Returns at once; a
/// failure is ignored. Main thread.
void showInFileManager(const std::filesystem::path& file);

} // namespace zelvra
