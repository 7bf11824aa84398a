#pragma once

#include "ZelvraApp/session/ShellServices.h"

#include <QObject>
#include <QString>
#include <QStringList>
#include <QUrl>
#include <qqml.h>

#include <functional>

namespace zelvra {

/// The session's open panel, by the toolkit's dialogs: QML shows the one that is asked for, and gives back
/// what was chosen. Where another question is asked before the first is answered, the first is forgotten.
class OpenPanels : public QObject, public OpenPanel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The shell has one.")
    Q_PROPERTY(QString prompt READ prompt NOTIFY asked)
    Q_PROPERTY(QString message READ message NOTIFY asked)
    /// The kinds of movies, in either case.
    Q_PROPERTY(QStringList movieFilters READ movieFilters CONSTANT)
    /// Where a first look begins: the user's folder of movies.
    Q_PROPERTY(QUrl firstFolder READ firstFolder CONSTANT)

public:
    using QObject::QObject;

    void ask(const OpenPanelRequest& request,
             std::function<void(const std::filesystem::path&)> chosen) override;

    QString prompt() const { return request_.prompt; }
    QString message() const { return request_.message; }
    static QStringList movieFilters();
    static QUrl firstFolder();

    Q_INVOKABLE void choose(const QUrl& url);

Q_SIGNALS:
    void asked();
    void movieAsked();
    void folderAsked();

private:
    OpenPanelRequest request_;
    std::function<void(const std::filesystem::path&)> chosen_;
};

} // namespace zelvra
