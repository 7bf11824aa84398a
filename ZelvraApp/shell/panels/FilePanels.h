// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/desktop/PortalFileChooser.h"
#include "ZelvraApp/session/ShellServices.h"

#include <QObject>
#include <QString>
#include <QStringList>
#include <QUrl>
#include <QVariantList>
#include <qqml.h>

#include <functional>

namespace zelvra {

/// The session's panels for files: the desktop's own file chooser or, if it has none, a panel of the program,
/// which QML shows and which passes the choice back by `choose`. A second question before the first is
/// answered replaces the first.
class FilePanels : public QObject, public OpenPanel, public SavePanel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The shell has one.")
    Q_PROPERTY(bool forFolder READ isForFolder NOTIFY asked)
    /// A new file is named; else something is opened.
    Q_PROPERTY(bool forSaving READ isForSaving NOTIFY asked)
    Q_PROPERTY(QString prompt READ prompt NOTIFY asked)
    Q_PROPERTY(QString message READ message NOTIFY asked)
    /// Patterns of the files that are listed, in both cases of letters; empty for a folder.
    Q_PROPERTY(QStringList globs READ globs NOTIFY asked)
    /// Says which files are listed, and that there are none.
    Q_PROPERTY(QString kindText READ kindText NOTIFY asked)
    Q_PROPERTY(QString emptyText READ emptyText NOTIFY asked)
    /// Of a listed file, in the icon font.
    Q_PROPERTY(QString fileIcon READ fileIcon NOTIFY asked)
    /// The folder that is shown first: that of the last choice of the same kind. Before any, the suggested
    /// one or the user's folder of movies.
    Q_PROPERTY(QUrl firstFolder READ firstFolder NOTIFY asked)
    Q_PROPERTY(QString suggestedName READ suggestedName NOTIFY asked)

public:
    explicit FilePanels(const QDBusConnection& bus, QObject* parent = nullptr);

    void ask(const OpenPanelRequest& request,
             std::function<void(const std::filesystem::path&)> chosen) override;
    void askForName(const SavePanelRequest& request,
                    std::function<void(const std::filesystem::path&)> chosen) override;

    bool isForFolder() const { return request_.choice == OpenPanelRequest::Choice::folder; }
    bool isForSaving() const { return !suggestion_.empty(); }
    QString prompt() const { return request_.prompt; }
    QString message() const { return request_.message; }
    QStringList globs() const;
    QString kindText() const;
    QString emptyText() const;
    QString fileIcon() const {
        return isForAnnotations() ? QStringLiteral("description") : QStringLiteral("movie");
    }
    QUrl firstFolder() const;
    QString suggestedName() const;

    Q_INVOKABLE void choose(const QUrl& url);
    /// The file of that name in the folder, with the extension of the suggestion if it has none. Empty if
    /// that is no name of a file.
    Q_INVOKABLE QUrl fileNamed(const QString& name, const QUrl& folder) const;
    Q_INVOKABLE static bool exists(const QUrl& file);
    /// The folder and its parents, outermost first: { name, url }.
    Q_INVOKABLE static QVariantList waysUp(const QUrl& folder);

Q_SIGNALS:
    /// The program's own panel has to be shown.
    void asked();

private:
    bool isForAnnotations() const { return request_.choice == OpenPanelRequest::Choice::annotations; }
    QUrl& lastFolder() { return isForAnnotations() ? lastAnnotations_ : lastMovies_; }
    void askDesktop(std::function<void(const std::filesystem::path&)> chosen);

    PortalFileChooser portal_;
    OpenPanelRequest request_;
    std::filesystem::path suggestion_; ///< of a file to save; empty if something is opened
    std::function<void(const std::filesystem::path&)> chosen_;
    QUrl lastMovies_;
    QUrl lastAnnotations_;
};

} // namespace zelvra
