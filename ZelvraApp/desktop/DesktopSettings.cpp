// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/desktop/DesktopSettings.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

namespace zelvra {

namespace {

const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
const QString path = QStringLiteral("/org/freedesktop/portal/desktop");
const QString interface = QStringLiteral("org.freedesktop.portal.Settings");

const QString appearance = QStringLiteral("org.freedesktop.appearance");
const QString colorScheme = QStringLiteral("color-scheme");
const QString reducedMotion = QStringLiteral("reduced-motion");
const QString gnomeInterface = QStringLiteral("org.gnome.desktop.interface");
const QString enableAnimations = QStringLiteral("enable-animations");

/// The value itself: "Read" wraps it twice, "SettingChanged" once.
QVariant unwrapped(QVariant value) {
    while (value.canConvert<QDBusVariant>()) {
        value = value.value<QDBusVariant>().variant();
    }
    return value;
}

} // namespace

DesktopSettings::DesktopSettings(const QDBusConnection& bus, QObject* parent) : QObject(parent), bus_(bus) {
    bus_.connect(service, path, interface, QStringLiteral("SettingChanged"), this,
                 SLOT(takeChange(QDBusMessage)));
    ask(appearance, colorScheme);
    ask(gnomeInterface, enableAnimations);
    ask(appearance, reducedMotion);
}

void DesktopSettings::ask(const QString& group, const QString& key) {
    QDBusMessage read = QDBusMessage::createMethodCall(service, path, interface, QStringLiteral("Read"));
    read << group << key;
    auto* watcher = new QDBusPendingCallWatcher(bus_.asyncCall(read), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, group, key] {
        const QDBusPendingReply<QDBusVariant> reply = *watcher;
        if (!reply.isError()) {
            take(group, key, unwrapped(reply.value().variant()));
        }
        watcher->deleteLater();
    });
}

void DesktopSettings::takeChange(const QDBusMessage& change) {
    const QVariantList arguments = change.arguments();
    if (arguments.size() == 3) {
        take(arguments[0].toString(), arguments[1].toString(), unwrapped(arguments[2]));
    }
}

void DesktopSettings::take(const QString& group, const QString& key, const QVariant& value) {
    if (group == appearance && key == colorScheme) {
        constexpr uint preferDark = 1;
        Q_EMIT darkChanged(value.toUInt() == preferDark);
    } else if (group == appearance && key == reducedMotion) {
        constexpr uint reduce = 1;
        Q_EMIT reducedMotionChanged(value.toUInt() == reduce);
    } else if (group == gnomeInterface && key == enableAnimations) {
        Q_EMIT reducedMotionChanged(!value.toBool());
    }
}

} // namespace zelvra
