// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QUrl>

namespace zelvra {

/// The desktop's own file chooser, by the FileChooser interface of the XDG desktop portal: GNOME's on GNOME,
/// KDE's on KDE. It asks itself before a file is replaced. If there is none, `unavailable` is emitted, and
/// the caller has to show a chooser of its own.
///
/// One question at a time: a second one makes this forget the first. Main thread.
class PortalFileChooser : public QObject {
    Q_OBJECT

public:
    struct Question {
        bool folder = false; ///< else a file
        QString title;
        QString acceptLabel;
        QString filterName;
        QStringList globs;   ///< "*.mov"; none for a folder
        QString firstFolder; ///< shown first
        QString newName;     ///< suggested for a file to save; empty if something is opened
        /// The window that asks, as the portal names it: "x11:3a00007", or empty if that is not known.
        QString parentWindow;
    };

    explicit PortalFileChooser(const QDBusConnection& bus, QObject* parent = nullptr);

    /// One of the signals follows, or none if the user cancels.
    void ask(const Question& question);

Q_SIGNALS:
    void chosen(const QUrl& url);
    void unavailable();

private Q_SLOTS:
    void takeResponse(const QDBusMessage& response);

private:
    void listenTo(const QString& request);

    QDBusConnection bus_;
    QString request_; ///< object path of the open question; empty if there is none
    int questions_ = 0;
};

} // namespace zelvra
