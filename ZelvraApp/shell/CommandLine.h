// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QList>
#include <QString>
#include <QUrl>

#include <optional>

namespace zelvra {

/// What the program was asked for on its command line: `zelvra [FILE|FOLDER]...`.
struct CommandLine {
    QList<QUrl> urls; ///< what to open, made absolute; whether it exists is not looked at

    /// To be printed instead of opening a window; to the standard output where `exitStatus` is 0.
    std::optional<QString> answer;
    int exitStatus = 0;

    /// `workingFolder` is what relative names begin in. Needs no window system.
    static CommandLine parse(const QStringList& arguments, const QString& workingFolder);
};

} // namespace zelvra
