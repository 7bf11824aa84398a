// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/session/ShellServices.h"

namespace zelvra {

/// The session's services, provided by the desktop. (The panels for files are FilePanels.)
class DesktopServices : public FileViewer, public RecentDocuments, public Terminator {
public:
    void reveal(const std::filesystem::path& file) override;
    void note(const std::filesystem::path& path) override;
    /// Leaves the event loop, without a question.
    void terminate() override;
};

} // namespace zelvra
