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

Content readContent(const QString& fileName) {
    QFile file(fileName);
    if (!file.exists()) {
        return {};
    }
    if (!file.open(QIODevice::ReadOnly)) {
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

/// Gives a garbled file a name that no other file has. False where that fails.
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
    // Who cannot get the lock in this time writes without: a value lost to a race is the lesser harm.
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
    // A file that an editor is half through writing looks garbled for a moment. What was read before holds.
    if (content.state == Content::State::intact || content.state == Content::State::missing) {
        replaceValues(content.values);
    }
}

void PreferenceStore::watch() {
    // A file that is replaced drops out of the watcher; its folder tells when there is one again.
    const QString fileName = textOf(file_);
    for (const QString& path : {QFileInfo(fileName).path(), fileName}) {
        if (QFileInfo::exists(path)) {
            watcher_.addPath(path);
        }
    }
}

} // namespace zelvra
