// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/desktop/PortalFileChooser.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QFile>
#include <QVariantMap>

namespace zelvra {

/// One filter as the portal takes it, "(sa(us))": a name, and patterns each with its kind.
struct PortalGlob {
    static constexpr uint globKind = 0;
    uint kind = globKind;
    QString pattern;
};
struct PortalFilter {
    QString name;
    QList<PortalGlob> globs;
};

QDBusArgument& operator<<(QDBusArgument& argument, const PortalGlob& glob) {
    argument.beginStructure();
    argument << glob.kind << glob.pattern;
    argument.endStructure();
    return argument;
}
const QDBusArgument& operator>>(const QDBusArgument& argument, PortalGlob& glob) {
    argument.beginStructure();
    argument >> glob.kind >> glob.pattern;
    argument.endStructure();
    return argument;
}
QDBusArgument& operator<<(QDBusArgument& argument, const PortalFilter& filter) {
    argument.beginStructure();
    argument << filter.name << filter.globs;
    argument.endStructure();
    return argument;
}
const QDBusArgument& operator>>(const QDBusArgument& argument, PortalFilter& filter) {
    argument.beginStructure();
    argument >> filter.name >> filter.globs;
    argument.endStructure();
    return argument;
}

} // namespace zelvra

Q_DECLARE_METATYPE(zelvra::PortalGlob)
Q_DECLARE_METATYPE(zelvra::PortalFilter)

namespace zelvra {

namespace {

const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
const QString path = QStringLiteral("/org/freedesktop/portal/desktop");

QVariantMap optionsFor(const PortalFileChooser::Question& question, const QString& token) {
    QVariantMap options{
        {QStringLiteral("handle_token"), token},
        {QStringLiteral("accept_label"), question.acceptLabel},
        {QStringLiteral("modal"), true},
        {QStringLiteral("directory"), question.folder},
        {QStringLiteral("current_folder"), QFile::encodeName(question.firstFolder).append('\0')},
    };
    if (!question.newName.isEmpty()) {
        options.insert(QStringLiteral("current_name"), question.newName);
    }
    if (!question.globs.isEmpty()) {
        PortalFilter filter{.name = question.filterName, .globs = {}};
        for (const QString& glob : question.globs) {
            filter.globs.append({.pattern = glob});
        }
        options.insert(QStringLiteral("filters"), QVariant::fromValue(QList<PortalFilter>{filter}));
    }
    return options;
}

} // namespace

PortalFileChooser::PortalFileChooser(const QDBusConnection& bus, QObject* parent)
    : QObject(parent), bus_(bus) {
    qDBusRegisterMetaType<PortalGlob>();
    qDBusRegisterMetaType<QList<PortalGlob>>();
    qDBusRegisterMetaType<PortalFilter>();
    qDBusRegisterMetaType<QList<PortalFilter>>();
}

void PortalFileChooser::ask(const Question& question) {
    if (!bus_.isConnected()) {
        Q_EMIT unavailable();
        return;
    }
    // The path of the portal's answer is known beforehand. Listening starts before the call, so no answer is
    // lost.
    const QString token = QStringLiteral("zelvra%1").arg(++questions_);
    const QString sender = bus_.baseService().mid(1).replace(QLatin1Char('.'), QLatin1Char('_'));
    listenTo(path + QStringLiteral("/request/%1/%2").arg(sender, token));

    QDBusMessage call = QDBusMessage::createMethodCall(
        service, path, QStringLiteral("org.freedesktop.portal.FileChooser"),
        question.newName.isEmpty() ? QStringLiteral("OpenFile") : QStringLiteral("SaveFile"));
    call << question.parentWindow << question.title << optionsFor(question, token);
    auto* watcher = new QDBusPendingCallWatcher(bus_.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, asked = questions_] {
        const QDBusPendingReply<QDBusObjectPath> reply = *watcher;
        watcher->deleteLater();
        if (asked != questions_) {
            return;
        }
        if (reply.isError()) {
            listenTo({});
            Q_EMIT unavailable();
        } else if (!request_.isEmpty() && reply.value().path() != request_) {
            listenTo(reply.value().path()); // as portals before version 0.9 chose it
        }
    });
}

/// Listens to any sender on that path, which contains this program's own name. The owner of the portal's name
/// may not be known here yet when the answer comes; the answer would then be dropped.
void PortalFileChooser::listenTo(const QString& request) {
    const QString interface = QStringLiteral("org.freedesktop.portal.Request");
    const QString response = QStringLiteral("Response");
    if (!request_.isEmpty()) {
        bus_.disconnect({}, request_, interface, response, this, SLOT(takeResponse(QDBusMessage)));
    }
    request_ = request;
    if (!request_.isEmpty()) {
        bus_.connect({}, request_, interface, response, this, SLOT(takeResponse(QDBusMessage)));
    }
}

void PortalFileChooser::takeResponse(const QDBusMessage& response) {
    if (response.path() != request_) {
        return; // the answer to an earlier question, which was already on its way when a new one was asked
    }
    listenTo({});
    const QVariantList arguments = response.arguments();
    constexpr uint success = 0;
    if (arguments.size() < 2 || arguments[0].toUInt() != success) {
        return;
    }
    const auto results = qdbus_cast<QVariantMap>(arguments[1]);
    const QStringList uris = results.value(QStringLiteral("uris")).toStringList();
    if (!uris.isEmpty()) {
        Q_EMIT chosen(QUrl(uris.first()));
    }
}

} // namespace zelvra
