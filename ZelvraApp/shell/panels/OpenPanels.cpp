// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/shell/panels/OpenPanels.h"

#include "ZelvraApp/files/FilePaths.h"

#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QStandardPaths>
#include <QVariantMap>
#include <QWindow>

#include <utility>

namespace zelvra {

namespace {

QString nameForPortal(const QWindow* window) {
    return window != nullptr && QGuiApplication::platformName() == QLatin1String("xcb")
               ? QStringLiteral("x11:%1").arg(window->winId(), 0, 16)
               : QString();
}

} // namespace

OpenPanels::OpenPanels(const QDBusConnection& bus, QObject* parent) : QObject(parent), portal_(bus) {
    connect(&portal_, &PortalFileChooser::chosen, this, &OpenPanels::choose);
    connect(&portal_, &PortalFileChooser::unavailable, this, &OpenPanels::asked);
}

QStringList OpenPanels::globs() const {
    return isForFolder() ? QStringList() : QStringList{QStringLiteral("*.mov"), QStringLiteral("*.mp4"),
                                                       QStringLiteral("*.m4v"), QStringLiteral("*.MOV"),
                                                       QStringLiteral("*.MP4"), QStringLiteral("*.M4V")};
}

QUrl OpenPanels::firstFolder() const {
    const QString last = lastFolder_.toLocalFile();
    if (!last.isEmpty() && QFileInfo(last).isDir()) {
        return lastFolder_;
    }
    const QString movies = QStandardPaths::writableLocation(QStandardPaths::MoviesLocation);
    return QUrl::fromLocalFile(QFileInfo(movies).isDir() ? movies : QDir::homePath());
}

void OpenPanels::ask(const OpenPanelRequest& request,
                     std::function<void(const std::filesystem::path&)> chosen) {
    request_ = request;
    chosen_ = std::move(chosen);
    portal_.ask({.folder = isForFolder(),
                 .title = request.message,
                 .acceptLabel = request.prompt,
                 .filterName = tr("Movies"),
                 .globs = globs(),
                 .firstFolder = firstFolder().toLocalFile(),
                 .parentWindow = nameForPortal(QGuiApplication::focusWindow())});
}

void OpenPanels::choose(const QUrl& url) {
    const auto chosen = std::exchange(chosen_, nullptr);
    if (chosen && url.isLocalFile()) {
        const QFileInfo info(url.toLocalFile());
        lastFolder_ = QUrl::fromLocalFile(info.absolutePath());
        chosen(pathOf(info.filePath()));
    }
}

QVariantList OpenPanels::waysUp(const QUrl& folder) {
    QVariantList ways;
    QDir directory(folder.toLocalFile());
    do {
        const QString name = directory.isRoot() ? QStringLiteral("/") : directory.dirName();
        ways.prepend(QVariantMap{{QStringLiteral("name"), name},
                                 {QStringLiteral("url"), QUrl::fromLocalFile(directory.path())}});
    } while (!directory.isRoot() && directory.cdUp());
    return ways;
}

} // namespace zelvra
