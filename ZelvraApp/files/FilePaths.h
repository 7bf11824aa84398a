// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QFile>
#include <QString>

#include <filesystem>

namespace zelvra {

/// Paths are bytes for the file system and text for the toolkit. A name that is no UTF-8 does not survive the
/// conversion to text, so code that opens files keeps the path.
inline QString textOf(const std::filesystem::path& path) {
    return QFile::decodeName(path.c_str());
}

inline std::filesystem::path pathOf(const QString& text) {
    return QFile::encodeName(text).toStdString();
}

/// The name of a file or folder as users know it: its last component, also if a slash follows it.
inline QString nameOf(const std::filesystem::path& path) {
    return textOf(path.has_filename() ? path.filename() : path.parent_path().filename());
}

} // namespace zelvra
