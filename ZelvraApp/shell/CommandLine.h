// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QList>
#include <QString>
#include <QUrl>

#include <optional>

namespace zelvra {

/// The program's command line: `zelvra [FILE|FOLDER]...`.
struct CommandLine {
    QList<QUrl> urls; ///< what to open, made absolute; it may not exist

    /// Text to print instead of opening a window; to the standard output if `exitStatus` is 0.
    std::optional<QString> answer;
    int exitStatus = 0;

    /// Relative names are in `workingFolder`. Needs no window system.
    static CommandLine parse(const QStringList& arguments, const QString& workingFolder);
};

} // namespace zelvra
