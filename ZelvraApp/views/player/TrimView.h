// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/bridge/Session.h"
#include "ZelvraApp/session/TrimEditor.h"
#include "ZelvraApp/views/timeline/TimelineGeometry.h"

#include <QObject>
#include <memory>
#include <qqml.h>

namespace zelvra {

/// The trim editor as the player's view shows it: where its points are on the film strip, and what dragging
/// them does. While a point is dragged, the player's picture follows it: the sync frame on the way, the exact
/// frame at rest. While a TrimView exists it is the view that the session trims with.
///
/// Positions are logical pixels of the film strip, which shows the whole movie. Main thread.
class TrimView : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(zelvra::Session* session READ session WRITE setSession NOTIFY sessionChanged REQUIRED)
    Q_PROPERTY(bool active READ isActive NOTIFY changed)
    Q_PROPERTY(double width READ width WRITE setWidth NOTIFY placesChanged)
    /// Both 0 while it is not active.
    Q_PROPERTY(double inX READ inX NOTIFY placesChanged)
    Q_PROPERTY(double outX READ outX NOTIFY placesChanged)
    Q_PROPERTY(double playheadX READ playheadX NOTIFY placesChanged)
    Q_PROPERTY(QString inText READ inText NOTIFY changed)
    Q_PROPERTY(QString outText READ outText NOTIFY changed)
    Q_PROPERTY(QString lengthText READ lengthText NOTIFY changed)

public:
    enum End { In, Out };
    Q_ENUM(End)

    explicit TrimView(QObject* parent = nullptr);
    ~TrimView() override;

    Session* session() const { return session_; }
    void setSession(Session* session);
    bool isActive() const { return editor_ && editor_->isActive(); }
    double width() const { return width_; }
    void setWidth(double width);
    double inX() const { return axis().position(seconds(In)); }
    double outX() const { return axis().position(seconds(Out)); }
    double playheadX() const;
    QString inText() const { return Session::timecodeOf(seconds(In)); }
    QString outText() const { return Session::timecodeOf(seconds(Out)); }
    QString lengthText() const { return Session::timecodeOf(seconds(Out) - seconds(In)); }

    /// A drag of one end, which keeps its distance from the pointer. The ends stay 0.1 s apart.
    Q_INVOKABLE void beginDrag(End end, double x);
    Q_INVOKABLE void dragTo(double x);
    Q_INVOKABLE void endDrag();
    /// An arrow key moves an end. False for any other key.
    Q_INVOKABLE bool nudge(End end, int key, int modifiers);
    Q_INVOKABLE void confirm() { editor_->confirm(); }
    Q_INVOKABLE void cancel() { editor_->cancel(); }

Q_SIGNALS:
    void sessionChanged();
    void changed();
    void placesChanged();

private:
    double seconds(End end) const;
    TimelineAxis axis() const;
    void move(End end, double seconds);

    Session* session_ = nullptr;
    std::unique_ptr<TrimEditor> editor_;
    double width_ = 0;
    End dragged_ = In;
    double grabOffset_ = 0;              ///< from the dragged end to the pointer
    CMTime movedTo_ = CMTime::invalid(); ///< where a drag has moved its end
};

} // namespace zelvra
