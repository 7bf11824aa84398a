// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDBusConnection>
#include <QList>
#include <QObject>
#include <QStringList>
#include <QUrl>
#include <QVariantMap>

namespace zelvra {

/// Keeps one program running for each desktop session. The first one takes the program's name on the session
/// bus and implements org.freedesktop.Application there. Those started later hand their files over to it.
/// Without a bus every start is a program of its own.
///
/// Main thread.
class SingleInstance : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    /// The program's name on the bus, of its desktop file and its icons.
    static QString name() { return QStringLiteral("com.corvath.Zelvra"); }

    explicit SingleInstance(const QDBusConnection& bus, QObject* parent = nullptr);
    ~SingleInstance() override;

    /// True: this is the first one, or there is no bus. False: another one runs, and has been asked to open
    /// `urls` and to come to the front. Waits up to 20 s for its answer.
    bool claim(const QList<QUrl>& urls);

    // Called by the desktop.
public Q_SLOTS:
    Q_SCRIPTABLE void Activate(const QVariantMap& platformData);
    Q_SCRIPTABLE void Open(const QStringList& uris, const QVariantMap& platformData);
    Q_SCRIPTABLE void ActivateAction(const QString& action, const QVariantList& parameters,
                                     const QVariantMap& platformData);

Q_SIGNALS:
    /// The program should come to the front. The token is the desktop's permission, or empty.
    void activated(const QString& activationToken);
    void openRequested(const QList<QUrl>& urls);

private:
    QDBusConnection bus_;
};

} // namespace zelvra
