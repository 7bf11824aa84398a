// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/shell/DesktopServices.h"

#include "ZelvraApp/desktop/FileManager.h"
#include "ZelvraApp/files/RecentlyUsed.h"
#include "ZelvraApp/session/Background.h"

#include <QCoreApplication>

namespace zelvra {

void DesktopServices::reveal(const std::filesystem::path& file) {
    showInFileManager(file);
}

void DesktopServices::note(const std::filesystem::path& path) {
    onWorkerThread([path] { noteRecentlyUsed(path); });
}

void DesktopServices::terminate() {
    // quit() would ask every window whether it may close.
    QCoreApplication::exit(0);
}

} // namespace zelvra
