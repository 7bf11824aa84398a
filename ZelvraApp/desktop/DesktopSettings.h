// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QVariant>

namespace zelvra {

/// What the desktop says of its looks, by the Settings interface of the XDG desktop portal: at first, and
/// each time it changes. Where there is no portal, and for what it does not know, nothing comes.
///
/// The first answers come by the event loop, soon after this is made. Main thread.
class DesktopSettings : public QObject {
    Q_OBJECT

public:
    explicit DesktopSettings(const QDBusConnection& bus, QObject* parent = nullptr);

Q_SIGNALS:
    /// Dark is wanted; light is told too where nothing is preferred.
    void darkChanged(bool dark);
    void reducedMotionChanged(bool reduced);

private Q_SLOTS:
    void takeChange(const QDBusMessage& change);

private:
    void take(const QString& group, const QString& key, const QVariant& value);
    void ask(const QString& group, const QString& key);

    QDBusConnection bus_;
};

} // namespace zelvra
