// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/bridge/Session.h"
#include "ZelvraApp/session/TrimEditor.h"

#include <QObject>
#include <memory>
#include <qqml.h>

namespace zelvra {

/// The trim editor to the player's view: its points in seconds, and what dragging them does. While one is
/// dragged the player's picture follows it: the sync frame on the way, the exact one at rest. While it exists
/// it is the view that the session's player is shown in. Main thread.
class TrimView : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(zelvra::Session* session READ session WRITE setSession NOTIFY sessionChanged REQUIRED)
    Q_PROPERTY(bool active READ isActive NOTIFY changed)
    /// Both 0 while it is not active.
    Q_PROPERTY(double inSeconds READ inSeconds NOTIFY changed)
    Q_PROPERTY(double outSeconds READ outSeconds NOTIFY changed)
    Q_PROPERTY(QString inText READ inText NOTIFY changed)
    Q_PROPERTY(QString outText READ outText NOTIFY changed)
    Q_PROPERTY(QString lengthText READ lengthText NOTIFY changed)

public:
    using QObject::QObject;
    ~TrimView() override;

    Session* session() const { return session_; }
    void setSession(Session* session);
    bool isActive() const { return editor_ && editor_->isActive(); }
    double inSeconds() const { return isActive() ? editor_->inPoint().seconds() : 0; }
    double outSeconds() const { return isActive() ? editor_->outPoint().seconds() : 0; }
    QString inText() const { return Session::timecodeOf(inSeconds()); }
    QString outText() const { return Session::timecodeOf(outSeconds()); }
    QString lengthText() const { return Session::timecodeOf(outSeconds() - inSeconds()); }

    /// A drag of one end to that moment; the other keeps its distance of at least 0.1 s.
    Q_INVOKABLE void dragIn(double seconds);
    Q_INVOKABLE void dragOut(double seconds);
    Q_INVOKABLE void endDrag();
    Q_INVOKABLE void confirm() { editor_->confirm(); }
    Q_INVOKABLE void cancel() { editor_->cancel(); }

Q_SIGNALS:
    void sessionChanged();
    void changed();

private:
    void follow(const CMTime& point);

    Session* session_ = nullptr;
    std::unique_ptr<TrimEditor> editor_;
    CMTime dragged_ = CMTime::invalid(); ///< where the end that is dragged is now
};

} // namespace zelvra
