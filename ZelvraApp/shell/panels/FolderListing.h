// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QStringList>
#include <QUrl>
#include <QVariantList>
#include <qqml.h>

namespace zelvra {

/// What is in a folder, for the file panel: folders first, then the files that match `globs`, each in natural
/// order, without hidden ones. Reads in the background, as a folder on a network may be slow.
class FolderListing : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QUrl folder READ folder WRITE setFolder NOTIFY folderChanged)
    /// Names of files, such as "*.mov"; none: folders only.
    Q_PROPERTY(QStringList globs MEMBER globs_ NOTIFY globsChanged)
    /// { name, url, isFolder, sizeText, timeText }
    Q_PROPERTY(QVariantList entries READ entries NOTIFY entriesChanged)
    Q_PROPERTY(bool reading READ isReading NOTIFY entriesChanged)
    /// The parent of this folder; this one if it has none.
    Q_PROPERTY(QUrl parentFolder READ parentFolder NOTIFY folderChanged)

public:
    using QObject::QObject;

    QUrl folder() const { return folder_; }
    void setFolder(const QUrl& folder);
    const QVariantList& entries() const { return entries_; }
    bool isReading() const { return reading_; }
    QUrl parentFolder() const;

Q_SIGNALS:
    void folderChanged();
    void globsChanged();
    void entriesChanged();

private:
    QUrl folder_;
    QStringList globs_;
    QVariantList entries_;
    bool reading_ = false;
    int reads_ = 0; ///< number of the last read; only its result is shown
};

} // namespace zelvra
