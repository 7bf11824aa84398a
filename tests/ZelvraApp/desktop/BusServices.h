// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/desktop/SingleInstance.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusUnixFileDescriptor>
#include <QDBusVariant>
#include <QObject>
#include <QString>
#include <QVariant>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <unistd.h>

/// A simulated desktop: its services on the tests' own bus, which record what they are asked for. Each is
/// there from its construction to its destruction.
namespace zelvra::test {

/// The bus as seen from another program.
inline QDBusConnection others() {
    static const QDBusConnection bus =
        QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("others"));
    return bus;
}

inline QDBusConnection ours() {
    return QDBusConnection::sessionBus();
}

/// Calls the program's own interface, as the desktop does.
inline void callProgram(const QString& method, const QVariantList& arguments) {
    QDBusMessage message =
        QDBusMessage::createMethodCall(SingleInstance::name(), QStringLiteral("/com/corvath/Zelvra"),
                                       QStringLiteral("org.freedesktop.Application"), method);
    message.setArguments(arguments);
    others().send(message);
}

/// A desktop's services under one name and path.
class Service : public QObject {
public:
    Service(const QString& name, const QString& path) : name_(name), path_(path) {}
    ~Service() override {
        others().unregisterService(name_);
        others().unregisterObject(path_);
    }
    void start() {
        ASSERT_TRUE(others().registerObject(path_, this, QDBusConnection::ExportAllSlots));
        ASSERT_TRUE(others().registerService(name_));
    }

protected:
    QString name_;
    QString path_;
};

class SettingsPortal : public Service {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    SettingsPortal()
        : Service(QStringLiteral("org.freedesktop.portal.Desktop"),
                  QStringLiteral("/org/freedesktop/portal/desktop")) {
        start();
    }
    void change(const QString& group, const QString& key, const QVariant& value) {
        QDBusMessage signal = QDBusMessage::createSignal(
            path_, QStringLiteral("org.freedesktop.portal.Settings"), QStringLiteral("SettingChanged"));
        signal << group << key << QVariant::fromValue(QDBusVariant(value));
        others().send(signal);
    }

public Q_SLOTS:
    QDBusVariant Read(const QString& group, const QString& key) {
        Q_UNUSED(group)
        const QVariant value = key == QLatin1String("enable-animations") ? QVariant(true) : QVariant(1U);
        return QDBusVariant(QVariant::fromValue(QDBusVariant(value)));
    }
};

class InhibitRequest : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Request")

public:
    bool closed = false;

public Q_SLOTS:
    void Close() { closed = true; }
};

class InhibitPortal : public Service {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Inhibit")

public:
    InhibitPortal()
        : Service(QStringLiteral("org.freedesktop.portal.Desktop"),
                  QStringLiteral("/org/freedesktop/portal/desktop")) {
        others().registerObject(QStringLiteral("/request/1"), &request, QDBusConnection::ExportAllSlots);
        start();
    }
    uint flags = 0;
    InhibitRequest request;

public Q_SLOTS:
    QDBusObjectPath Inhibit(const QString&, uint what, const QVariantMap&) {
        flags = what;
        return QDBusObjectPath(QStringLiteral("/request/1"));
    }
};

class Login : public Service {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.login1.Manager")

public:
    Login() : Service(QStringLiteral("org.freedesktop.login1"), QStringLiteral("/org/freedesktop/login1")) {
        EXPECT_EQ(pipe2(ends_, O_CLOEXEC | O_NONBLOCK), 0);
        start();
    }
    ~Login() override { close(ends_[0]); }
    bool isHeld() const {
        char nothing = 0;
        return read(ends_[0], &nothing, 1) < 0; // ends when no process holds the other side
    }
    QString what;

public Q_SLOTS:
    QDBusUnixFileDescriptor Inhibit(const QString& wanted, const QString&, const QString&, const QString&) {
        what = wanted;
        const QDBusUnixFileDescriptor lock(ends_[1]);
        close(ends_[1]);
        return lock;
    }

private:
    int ends_[2] = {-1, -1};
};

} // namespace zelvra::test
