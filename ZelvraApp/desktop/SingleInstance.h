// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDBusConnection>
#include <QList>
#include <QObject>
#include <QStringList>
#include <QUrl>
#include <QVariantMap>

namespace zelvra {

/// One running program for each session of a desktop: the first takes the program's name on the session bus
/// and answers to org.freedesktop.Application there; those that are started later hand over what they were to
/// open. Where there is no bus, each stands for itself.
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

    /// True: go on, this is the one (or there is no bus). False: another runs, and has been asked to open
    /// `urls` and to come to the front. Waits for its answer, but not for long.
    bool claim(const QList<QUrl>& urls);

    // What the desktop calls.
public Q_SLOTS:
    Q_SCRIPTABLE void Activate(const QVariantMap& platformData);
    Q_SCRIPTABLE void Open(const QStringList& uris, const QVariantMap& platformData);
    Q_SCRIPTABLE void ActivateAction(const QString& action, const QVariantList& parameters,
                                     const QVariantMap& platformData);

Q_SIGNALS:
    /// Come to the front; the token is the desktop's permission, or empty.
    void activated(const QString& activationToken);
    void openRequested(const QList<QUrl>& urls);

private:
    QDBusConnection bus_;
};

} // namespace zelvra
