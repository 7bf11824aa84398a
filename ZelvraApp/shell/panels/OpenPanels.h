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

/// The session's open panel: the desktop's own file chooser; where it has none, a panel of ours, which QML
/// shows and gives back what was chosen. Where another question is asked before the first is answered, the
/// first is forgotten.
class OpenPanels : public QObject, public OpenPanel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The shell has one.")
    Q_PROPERTY(bool forFolder READ isForFolder NOTIFY asked)
    Q_PROPERTY(QString prompt READ prompt NOTIFY asked)
    Q_PROPERTY(QString message READ message NOTIFY asked)
    /// What is listed, in either case; nothing for a folder.
    Q_PROPERTY(QStringList globs READ globs NOTIFY asked)
    /// Where to begin to look: where something was chosen last, at first the user's folder of movies.
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
    /// The folder and those around it, outermost first: { name, url }.
    Q_INVOKABLE static QVariantList waysUp(const QUrl& folder);

Q_SIGNALS:
    /// Our own panel has to be shown.
    void asked();

private:
    PortalFileChooser portal_;
    OpenPanelRequest request_;
    std::function<void(const std::filesystem::path&)> chosen_;
    QUrl lastFolder_;
};

} // namespace zelvra
