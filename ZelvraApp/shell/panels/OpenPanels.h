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

/// The session's open panel: the desktop's own file chooser or, if it has none, a panel of the program, which
/// QML shows and which passes the choice back by `choose`. A second question before the first is answered
/// replaces the first.
class OpenPanels : public QObject, public OpenPanel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The shell has one.")
    Q_PROPERTY(bool forFolder READ isForFolder NOTIFY asked)
    Q_PROPERTY(QString prompt READ prompt NOTIFY asked)
    Q_PROPERTY(QString message READ message NOTIFY asked)
    /// Patterns of the files that are listed, in both cases of letters; empty for a folder.
    Q_PROPERTY(QStringList globs READ globs NOTIFY asked)
    /// The folder that is shown first: that of the last choice; before any choice the user's folder of
    /// movies.
    Q_PROPERTY(QUrl firstFolder READ firstFolder NOTIFY asked)

public:
    explicit OpenPanels(const QDBusConnection& bus, QObject* parent = nullptr);

    void ask(const OpenPanelRequest& request,
             std::function<void(const std::filesystem::path&)> chosen) override;

    bool isForFolder() const { return request_.choice == OpenPanelRequest::Choice::folder; }
    QString prompt() const { return request_.prompt; }
    QString message() const { return request_.message; }
    QStringList globs() const;
    QUrl firstFolder() const;

    Q_INVOKABLE void choose(const QUrl& url);
    /// The folder and its parents, outermost first: { name, url }.
    Q_INVOKABLE static QVariantList waysUp(const QUrl& folder);

Q_SIGNALS:
    /// The program's own panel has to be shown.
    void asked();

private:
    PortalFileChooser portal_;
    OpenPanelRequest request_;
    std::function<void(const std::filesystem::path&)> chosen_;
    QUrl lastFolder_;
};

} // namespace zelvra
