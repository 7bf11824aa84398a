// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/desktop/Inhibitor.h"

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QVariantMap>

namespace zelvra {

namespace {

const QString portal = QStringLiteral("org.freedesktop.portal.Desktop");

} // namespace

IdleInhibitor::IdleInhibitor(const QDBusConnection& bus, QObject* parent) : QObject(parent), bus_(bus) {}

void IdleInhibitor::hold(bool held) {
    if (std::exchange(held_, held) == held) {
        return;
    }
    if (!held) {
        release(std::exchange(request_, {}));
        return;
    }
    constexpr uint idle = 8;
    QDBusMessage inhibit = QDBusMessage::createMethodCall(
        portal, QStringLiteral("/org/freedesktop/portal/desktop"),
        QStringLiteral("org.freedesktop.portal.Inhibit"), QStringLiteral("Inhibit"));
    inhibit << QString() << idle << QVariantMap{{QStringLiteral("reason"), tr("A movie is playing")}};
    auto* watcher = new QDBusPendingCallWatcher(bus_.asyncCall(inhibit), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        const QDBusPendingReply<QDBusObjectPath> reply = *watcher;
        if (!reply.isError()) {
            // It may come after the hold has ended, or after another answer.
            release(std::exchange(request_, held_ ? reply.value().path() : QString()));
            release(held_ ? QString() : reply.value().path());
        }
        watcher->deleteLater();
    });
}

void IdleInhibitor::release(const QString& request) {
    if (!request.isEmpty()) {
        bus_.asyncCall(QDBusMessage::createMethodCall(
            portal, request, QStringLiteral("org.freedesktop.portal.Request"), QStringLiteral("Close")));
    }
}

SleepInhibitor::SleepInhibitor(const QDBusConnection& bus, QObject* parent) : QObject(parent), bus_(bus) {}

void SleepInhibitor::hold(bool held) {
    if (std::exchange(held_, held) == held) {
        return;
    }
    if (!held) {
        lock_ = {};
        return;
    }
    QDBusMessage inhibit = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.login1"), QStringLiteral("/org/freedesktop/login1"),
        QStringLiteral("org.freedesktop.login1.Manager"), QStringLiteral("Inhibit"));
    inhibit << QStringLiteral("sleep") << QStringLiteral("Zelvra") << tr("A movie is exported")
            << QStringLiteral("block");
    auto* watcher = new QDBusPendingCallWatcher(bus_.asyncCall(inhibit), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        const QDBusPendingReply<QDBusUnixFileDescriptor> reply = *watcher;
        if (!reply.isError() && held_) {
            lock_ = reply.value();
        }
        watcher->deleteLater();
    });
}

} // namespace zelvra
