// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/session/ShellServices.h"

namespace zelvra {

/// What the session asks of the desktop, by the desktop's own means. (The open panel is OpenPanels.)
class DesktopServices : public FileViewer, public RecentDocuments, public Terminator {
public:
    void reveal(const std::filesystem::path& file) override;
    void note(const std::filesystem::path& path) override;
    /// Leaves the event loop, whatever is open.
    void terminate() override;
};

} // namespace zelvra
