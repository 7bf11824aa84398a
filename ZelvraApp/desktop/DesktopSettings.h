// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QVariant>

namespace zelvra {

/// The desktop's settings of its appearance, by the Settings interface of the XDG desktop portal. The signals
/// are emitted first with the present values, soon after this is made, and then with each change. Without a
/// portal, and for settings that it does not know, they are not emitted. Main thread.
class DesktopSettings : public QObject {
    Q_OBJECT

public:
    explicit DesktopSettings(const QDBusConnection& bus, QObject* parent = nullptr);

Q_SIGNALS:
    /// Whether dark is preferred; false too if there is no preference.
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
