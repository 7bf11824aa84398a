// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QFile>
#include <QString>

#include <filesystem>

namespace zelvra {

/// Paths are bytes to the file system and text to the toolkit. A name that is no UTF-8 does not survive the
/// way through text, so whatever opens files holds on to the path.
inline QString textOf(const std::filesystem::path& path) {
    return QFile::decodeName(path.c_str());
}

inline std::filesystem::path pathOf(const QString& text) {
    return QFile::encodeName(text).toStdString();
}

/// The name that a user knows a file or folder by: its last component, also where a slash follows it.
inline QString nameOf(const std::filesystem::path& path) {
    return textOf(path.has_filename() ? path.filename() : path.parent_path().filename());
}

} // namespace zelvra
