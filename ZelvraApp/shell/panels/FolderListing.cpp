// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/shell/panels/FolderListing.h"

#include "ZelvraApp/files/FilePaths.h"
#include "ZelvraApp/files/NaturalOrder.h"
#include "ZelvraApp/session/Background.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QLocale>
#include <QPointer>
#include <QVariantMap>

#include <filesystem>
#include <utility>
#include <vector>

namespace zelvra {

namespace {

QVariantMap entryFor(const QFileInfo& info) {
    return {
        {QStringLiteral("name"), info.fileName()},
        {QStringLiteral("url"), QUrl::fromLocalFile(info.filePath())},
        {QStringLiteral("isFolder"), info.isDir()},
        {QStringLiteral("sizeText"),
         info.isDir() ? QString()
                      : QLocale::c().formattedDataSize(info.size(), 1, QLocale::DataSizeSIFormat)},
        {QStringLiteral("timeText"), info.lastModified().toString(QStringLiteral("yyyy-MM-dd HH:mm"))},
    };
}

QVariantList entriesOf(const QString& folder, const QStringList& globs) {
    QDir directory(folder);
    QVariantList entries;
    const auto append = [&](QDir::Filters filters, const QStringList& names) {
        std::vector<std::filesystem::path> found;
        for (const QString& name : directory.entryList(names, filters | QDir::NoDotAndDotDot, QDir::NoSort)) {
            found.push_back(pathOf(directory.filePath(name)));
        }
        sortInNaturalOrder(found);
        for (const std::filesystem::path& path : found) {
            entries.append(entryFor(QFileInfo(textOf(path))));
        }
    };
    append(QDir::Dirs, {});
    if (!globs.isEmpty()) {
        append(QDir::Files, globs);
    }
    return entries;
}

} // namespace

void FolderListing::setFolder(const QUrl& folder) {
    folder_ = folder;
    entries_.clear();
    reading_ = true;
    Q_EMIT folderChanged();
    Q_EMIT entriesChanged();
    onWorkerThread([self = QPointer(this), read = ++reads_, path = folder.toLocalFile(), globs = globs_] {
        QVariantList entries = entriesOf(path, globs);
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [self, read, entries = std::move(entries)] {
                if (self && self->reads_ == read) {
                    self->entries_ = entries;
                    self->reading_ = false;
                    Q_EMIT self->entriesChanged();
                }
            },
            Qt::QueuedConnection);
    });
}

QUrl FolderListing::parentFolder() const {
    QDir directory(folder_.toLocalFile());
    directory.cdUp();
    return QUrl::fromLocalFile(directory.path());
}

} // namespace zelvra
