// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/files/PreferenceStore.h"

#include "ZelvraApp/files/FilePaths.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
#include <QLockFile>
#include <QSaveFile>
#include <QStandardPaths>

#include <chrono>

namespace zelvra {

namespace {

struct Content {
    enum class State { intact, missing, garbled, unreadable };
    State state = State::missing;
    QJsonObject values;
};

/// Anything but a regular file of sensible size is unreadable: a pipe would wait for ever, a device has no
/// end.
Content readContent(const QString& fileName) {
    constexpr qint64 mostBytes = qint64{16} << 20;
    const QFileInfo info(fileName);
    if (!info.exists()) {
        return {};
    }
    QFile file(fileName);
    if (!info.isFile() || info.size() > mostBytes || !file.open(QIODevice::ReadOnly)) {
        return {Content::State::unreadable, {}};
    }
    const QByteArray bytes = file.readAll();
    if (bytes.trimmed().isEmpty()) {
        return {Content::State::intact, {}};
    }
    const QJsonDocument document = QJsonDocument::fromJson(bytes);
    return document.isObject() ? Content{Content::State::intact, document.object()}
                               : Content{Content::State::garbled, {}};
}

/// Renames a garbled file to a name that is free. False if that fails.
bool moveAside(const QString& fileName) {
    for (int number = 1; number < 1000; ++number) {
        const QString aside = QStringLiteral("%1.damaged-%2").arg(fileName).arg(number);
        if (!QFileInfo::exists(aside)) {
            return QFile::rename(fileName, aside);
        }
    }
    return false;
}

void save(const QString& fileName, const QJsonObject& values) {
    QSaveFile file(fileName);
    if (file.open(QIODevice::WriteOnly)) {
        file.write(QJsonDocument(values).toJson());
        file.commit();
    }
}

} // namespace

std::filesystem::path PreferenceStore::standardFile() {
    const QString named = qEnvironmentVariable("ZELVRA_PREFERENCES");
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    return pathOf(named.isEmpty() ? folder + QStringLiteral("/zelvra/preferences.json") : named);
}

PreferenceStore::PreferenceStore(const std::filesystem::path& file, QObject* parent)
    : QObject(parent), file_(std::filesystem::absolute(file)) {
    QDir().mkpath(QFileInfo(textOf(file_)).path());
    values_ = readContent(textOf(file_)).values;
    connect(&watcher_, &QFileSystemWatcher::fileChanged, this, &PreferenceStore::reload);
    connect(&watcher_, &QFileSystemWatcher::directoryChanged, this, &PreferenceStore::reload);
    watch();
}

void PreferenceStore::write(const Changes& changes) {
    const QString fileName = textOf(file_);
    QLockFile lock(fileName + QStringLiteral(".lock"));
    // Writes without the lock if it is not free in this time: a value lost in a race is the lesser harm.
    lock.tryLock(std::chrono::milliseconds(500).count());

    Content content = readContent(fileName);
    const bool known = content.state == Content::State::intact || content.state == Content::State::missing;
    QJsonObject values = known ? content.values : values_;
    for (auto value = changes.values_.begin(); value != changes.values_.end(); ++value) {
        values.insert(value.key(), value.value());
    }
    if (known || (content.state == Content::State::garbled && moveAside(fileName))) {
        save(fileName, values);
    }
    lock.unlock();
    watch();
    replaceValues(std::move(values));
}

void PreferenceStore::replaceValues(QJsonObject values) {
    if (values == values_) {
        return;
    }
    values_ = std::move(values);
    Q_EMIT changed();
}

void PreferenceStore::reload() {
    watch();
    const Content content = readContent(textOf(file_));
    // A file that an editor has not written completely looks garbled for a moment. The old values stay.
    if (content.state == Content::State::intact || content.state == Content::State::missing) {
        replaceValues(content.values);
    }
}

void PreferenceStore::watch() {
    // The watcher loses a file that is replaced. It reports on the folder when there is a file again.
    const QString fileName = textOf(file_);
    for (const QString& path : {QFileInfo(fileName).path(), fileName}) {
        if (QFileInfo::exists(path)) {
            watcher_.addPath(path);
        }
    }
}

} // namespace zelvra
