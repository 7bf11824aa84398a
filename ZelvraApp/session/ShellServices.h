// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

#include <filesystem>
#include <functional>

namespace zelvra {

/// What the session needs of the window system. The shell provides these. A session without them (on a
/// command line) leaves out what they would do. Main thread. Not owned; they outlive the session.

struct OpenPanelRequest {
    enum class Choice {
        movie, ///< one file of the kinds that are opened: .mov, .mp4, .m4v in either case
        folder,
        annotations, ///< a file of annotations: .json
    };
    Choice choice = Choice::movie;
    QString prompt;  ///< on the button that confirms
    QString message; ///< says what to choose
};

class OpenPanel {
public:
    virtual ~OpenPanel() = default;
    /// Lets the user choose, now or later, and calls `chosen` once; not at all if the user cancels.
    virtual void ask(const OpenPanelRequest& request,
                     std::function<void(const std::filesystem::path&)> chosen) = 0;
};

struct SavePanelRequest {
    QString prompt;
    QString message;
    std::filesystem::path suggestion; ///< folder and name that the panel begins with
};

class SavePanel {
public:
    virtual ~SavePanel() = default;
    /// Lets the user name a file, now or later, and calls `chosen` once; not at all if the user cancels. The
    /// panel itself asks before a file is replaced.
    virtual void askForName(const SavePanelRequest& request,
                            std::function<void(const std::filesystem::path&)> chosen) = 0;
};

class FileViewer {
public:
    virtual ~FileViewer() = default;
    /// Shows the folder of that file, the file selected.
    virtual void reveal(const std::filesystem::path& file) = 0;
};

class Terminator {
public:
    virtual ~Terminator() = default;
    /// Ends the program.
    virtual void terminate() = 0;
};

class RecentDocuments {
public:
    virtual ~RecentDocuments() = default;
    /// Reports to the desktop that this clip or folder was opened.
    virtual void note(const std::filesystem::path& path) = 0;
};

struct ShellServices {
    OpenPanel* openPanel = nullptr;
    FileViewer* fileViewer = nullptr;
    Terminator* terminator = nullptr;
    RecentDocuments* recentDocuments = nullptr;
    SavePanel* savePanel = nullptr;
};

} // namespace zelvra
