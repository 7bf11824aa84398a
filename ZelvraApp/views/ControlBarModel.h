// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/bridge/Session.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <qqml.h>

namespace zelvra {

/// How many of the `savings`, taken in their order, it needs to bring a row that is `full` wide into
/// `available`; all of them where even these are not enough.
int savingsNeeded(double available, double full, const QList<double>& savings);

/// What the control bar shows beyond what the session says itself: tooltips that follow from the session and
/// the preferences, what can be done, and how much of its row has room. Main thread.
class ControlBarModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(zelvra::Session* session READ session WRITE setSession NOTIFY changed REQUIRED)
    Q_PROPERTY(bool hasQueue READ hasQueue NOTIFY changed)
    Q_PROPERTY(bool canGoBack READ canGoBack NOTIFY changed)
    Q_PROPERTY(QString inPointTip READ inPointTip NOTIFY changed)
    Q_PROPERTY(QString outPointTip READ outPointTip NOTIFY changed)
    Q_PROPERTY(QString exportLabel READ exportLabel NOTIFY changed)

public:
    using QObject::QObject;

    Session* session() const { return session_; }
    void setSession(Session* session);
    bool hasQueue() const { return session_ && !session_->state()->clipQueue().empty(); }
    bool canGoBack() const { return session_ && session_->state()->queueIndex() >= 1; }
    QString inPointTip() const;
    QString outPointTip() const;
    QString exportLabel() const;

    Q_INVOKABLE static int savingsNeeded(double available, double full, const QList<double>& savings) {
        return zelvra::savingsNeeded(available, full, savings);
    }

Q_SIGNALS:
    void changed();

private:
    QPointer<Session> session_;
};

} // namespace zelvra
