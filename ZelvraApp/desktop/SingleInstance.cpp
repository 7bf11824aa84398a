// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/desktop/SingleInstance.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>

namespace zelvra {

namespace {

const QString path = QStringLiteral("/com/corvath/Zelvra");
const QString interface = QStringLiteral("org.freedesktop.Application");

/// How long the other one may take to answer before this one goes on by itself. It may still be starting.
constexpr int patienceInMilliseconds = 20'000;

QString tokenIn(const QVariantMap& platformData) {
    const QString token = platformData.value(QStringLiteral("activation-token")).toString();
    return token.isEmpty() ? platformData.value(QStringLiteral("desktop-startup-id")).toString() : token;
}

/// The permission to come to the front that the desktop gave to this process, for the one that runs already.
QVariantMap ownPlatformData() {
    QVariantMap data;
    for (const auto& [key, variable] : {std::pair("activation-token", "XDG_ACTIVATION_TOKEN"),
                                        std::pair("desktop-startup-id", "DESKTOP_STARTUP_ID")}) {
        if (qEnvironmentVariableIsSet(variable)) {
            data.insert(QLatin1String(key), qEnvironmentVariable(variable));
        }
    }
    return data;
}

} // namespace

SingleInstance::SingleInstance(const QDBusConnection& bus, QObject* parent) : QObject(parent), bus_(bus) {}

SingleInstance::~SingleInstance() {
    if (bus_.isConnected()) {
        bus_.unregisterService(name());
        bus_.unregisterObject(path);
    }
}

bool SingleInstance::claim(const QList<QUrl>& urls) {
    if (!bus_.isConnected()) {
        return true;
    }
    // The object is registered before the name: a program that finds the name may call at once.
    bus_.registerObject(path, this, QDBusConnection::ExportScriptableSlots);
    if (bus_.registerService(name())) {
        return true;
    }
    bus_.unregisterObject(path);
    QDBusMessage call = QDBusMessage::createMethodCall(
        name(), path, interface, urls.isEmpty() ? QStringLiteral("Activate") : QStringLiteral("Open"));
    if (!urls.isEmpty()) {
        call << QUrl::toStringList(urls, QUrl::FullyEncoded);
    }
    call << ownPlatformData();
    return bus_.call(call, QDBus::Block, patienceInMilliseconds).type() != QDBusMessage::ReplyMessage;
}

void SingleInstance::Activate(const QVariantMap& platformData) {
    Q_EMIT activated(tokenIn(platformData));
}

void SingleInstance::Open(const QStringList& uris, const QVariantMap& platformData) {
    Q_EMIT activated(tokenIn(platformData));
    Q_EMIT openRequested(QUrl::fromStringList(uris, QUrl::StrictMode));
}

void SingleInstance::ActivateAction(const QString& /*action*/, const QVariantList& /*parameters*/,
                                    const QVariantMap& platformData) {
    Activate(platformData); // the desktop file declares no actions
}

} // namespace zelvra
