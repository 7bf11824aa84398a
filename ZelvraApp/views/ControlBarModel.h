// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/bridge/Session.h"
#include "ZelvraApp/views/ControlBarWidths.h"

#include <QObject>
#include <QPointer>
#include <qqml.h>

namespace zelvra {

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
    /// The view reports what its parts take; the model answers which texts have room.
    Q_PROPERTY(zelvra::ControlBarWidths widths READ widths WRITE setWidths NOTIFY widthsChanged)
    Q_PROPERTY(bool hasAddTime READ hasAddTime NOTIFY widthsChanged)
    Q_PROPERTY(bool hasExportText READ hasExportText NOTIFY widthsChanged)
    Q_PROPERTY(bool hasMarkText READ hasMarkText NOTIFY widthsChanged)
    Q_PROPERTY(bool hasAddText READ hasAddText NOTIFY widthsChanged)
    Q_PROPERTY(bool hasTrimRange READ hasTrimRange NOTIFY widthsChanged)
    Q_PROPERTY(bool isTight READ isTight NOTIFY widthsChanged)

public:
    using QObject::QObject;

    Session* session() const { return session_; }
    void setSession(Session* session);
    bool hasQueue() const { return session_ && !session_->state()->clipQueue().empty(); }
    bool canGoBack() const { return session_ && session_->state()->queueIndex() >= 1; }
    QString inPointTip() const;
    QString outPointTip() const;
    QString exportLabel() const;

    ControlBarWidths widths() const { return widths_; }
    void setWidths(const ControlBarWidths& widths);
    bool hasAddTime() const { return widths_.hasAddTime(); }
    bool hasExportText() const { return widths_.hasExportText(); }
    bool hasMarkText() const { return widths_.hasMarkText(); }
    bool hasAddText() const { return widths_.hasAddText(); }
    bool hasTrimRange() const { return widths_.hasTrimRange(); }
    bool isTight() const { return widths_.isTight(); }

Q_SIGNALS:
    void changed();
    void widthsChanged();

private:
    QPointer<Session> session_;
    ControlBarWidths widths_;
};

} // namespace zelvra
