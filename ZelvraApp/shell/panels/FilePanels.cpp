// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/shell/panels/FilePanels.h"

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

FilePanels::FilePanels(const QDBusConnection& bus, QObject* parent) : QObject(parent), portal_(bus) {
    connect(&portal_, &PortalFileChooser::chosen, this, &FilePanels::choose);
    connect(&portal_, &PortalFileChooser::unavailable, this, &FilePanels::asked);
}

QStringList FilePanels::globs() const {
    switch (request_.choice) {
    case OpenPanelRequest::Choice::movie:
        return {QStringLiteral("*.mov"), QStringLiteral("*.mp4"), QStringLiteral("*.m4v"),
                QStringLiteral("*.MOV"), QStringLiteral("*.MP4"), QStringLiteral("*.M4V")};
    case OpenPanelRequest::Choice::annotations: return {QStringLiteral("*.json"), QStringLiteral("*.JSON")};
    case OpenPanelRequest::Choice::folder: break;
    }
    return {};
}

QString FilePanels::kindText() const {
    switch (request_.choice) {
    case OpenPanelRequest::Choice::movie: return tr("Movies: .mov, .mp4, .m4v");
    case OpenPanelRequest::Choice::annotations: return tr("Annotations: .json");
    case OpenPanelRequest::Choice::folder: break;
    }
    return {};
}

QString FilePanels::emptyText() const {
    switch (request_.choice) {
    case OpenPanelRequest::Choice::movie: return tr("No movies in here");
    case OpenPanelRequest::Choice::annotations: return tr("No annotations in here");
    case OpenPanelRequest::Choice::folder: break;
    }
    return tr("No folders in here");
}

QUrl FilePanels::firstFolder() const {
    const QString movies = QStandardPaths::writableLocation(QStandardPaths::MoviesLocation);
    const QString candidates[] = {(isForAnnotations() ? lastAnnotations_ : lastMovies_).toLocalFile(),
                                  textOf(suggestion_.parent_path()), lastMovies_.toLocalFile(), movies};
    for (const QString& folder : candidates) {
        if (!folder.isEmpty() && QFileInfo(folder).isDir()) {
            return QUrl::fromLocalFile(folder);
        }
    }
    return QUrl::fromLocalFile(QDir::homePath());
}

QString FilePanels::suggestedName() const {
    return textOf(suggestion_.filename());
}

void FilePanels::ask(const OpenPanelRequest& request,
                     std::function<void(const std::filesystem::path&)> chosen) {
    request_ = request;
    suggestion_.clear();
    askDesktop(std::move(chosen));
}

void FilePanels::askForName(const SavePanelRequest& request,
                            std::function<void(const std::filesystem::path&)> chosen) {
    request_ = {.choice = OpenPanelRequest::Choice::annotations,
                .prompt = request.prompt,
                .message = request.message};
    suggestion_ = request.suggestion;
    askDesktop(std::move(chosen));
}

void FilePanels::askDesktop(std::function<void(const std::filesystem::path&)> chosen) {
    chosen_ = std::move(chosen);
    portal_.ask({.folder = isForFolder(),
                 .title = message(),
                 .acceptLabel = prompt(),
                 .filterName = isForAnnotations() ? tr("Annotations") : tr("Movies"),
                 .globs = globs(),
                 .firstFolder = firstFolder().toLocalFile(),
                 .newName = suggestedName(),
                 .parentWindow = nameForPortal(QGuiApplication::focusWindow())});
}

void FilePanels::choose(const QUrl& url) {
    const auto chosen = std::exchange(chosen_, nullptr);
    if (chosen && url.isLocalFile()) {
        const QFileInfo info(url.toLocalFile());
        lastFolder() = QUrl::fromLocalFile(info.absolutePath());
        chosen(pathOf(info.filePath()));
    }
}

QUrl FilePanels::fileNamed(const QString& name, const QUrl& folder) const {
    const QString trimmed = name.trimmed();
    if (trimmed.isEmpty() || trimmed.contains(QLatin1Char('/'))) {
        return {};
    }
    const QString extension = textOf(suggestion_.extension());
    const QString whole = trimmed.endsWith(extension, Qt::CaseInsensitive) ? trimmed : trimmed + extension;
    return QUrl::fromLocalFile(QDir(folder.toLocalFile()).filePath(whole));
}

bool FilePanels::exists(const QUrl& file) {
    return QFileInfo::exists(file.toLocalFile());
}

QVariantList FilePanels::waysUp(const QUrl& folder) {
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
