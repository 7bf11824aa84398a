// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDBusConnection>
#include <QDBusUnixFileDescriptor>
#include <QObject>
#include <QString>

namespace zelvra {

/// Keep the desktop awake for as long as they are held: the screen stays on during a movie, and the machine
/// does not sleep during an export. Without effect on a desktop that offers no such service. Main thread.

/// No idle screen, by the Inhibit interface of the XDG desktop portal.
class IdleInhibitor : public QObject {
    Q_OBJECT

public:
    explicit IdleInhibitor(const QDBusConnection& bus, QObject* parent = nullptr);
    void hold(bool held);

private:
    void release(const QString& request);

    QDBusConnection bus_;
    bool held_ = false;
    QString request_; ///< object path of the portal's answer; empty until it comes
};

/// No sleep, by login1's Inhibit on the system bus.
class SleepInhibitor : public QObject {
    Q_OBJECT

public:
    explicit SleepInhibitor(const QDBusConnection& bus, QObject* parent = nullptr);
    void hold(bool held);

private:
    QDBusConnection bus_;
    bool held_ = false;
    QDBusUnixFileDescriptor lock_; ///< sleep is inhibited until it is closed
};

} // namespace zelvra
