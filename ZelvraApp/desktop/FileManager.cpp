// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/desktop/FileManager.h"

#include "ZelvraApp/files/FilePaths.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDesktopServices>
#include <QStringList>
#include <QUrl>

namespace zelvra {

namespace {

QUrl urlOf(const std::filesystem::path& path) {
    return QUrl::fromLocalFile(textOf(path));
}

} // namespace

void showInFileManager(const std::filesystem::path& file) {
    const auto openFolder = [file] { QDesktopServices::openUrl(urlOf(file.parent_path())); };
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        openFolder();
        return;
    }
    QDBusMessage show = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("/org/freedesktop/FileManager1"),
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"));
    show << QStringList{QString::fromUtf8(urlOf(file).toEncoded())}
         << qEnvironmentVariable("DESKTOP_STARTUP_ID");
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(show));
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher, [watcher, openFolder] {
        const QDBusPendingReply<> reply = *watcher;
        if (reply.isError()) {
            openFolder();
        }
        watcher->deleteLater();
    });
}

} // namespace zelvra
