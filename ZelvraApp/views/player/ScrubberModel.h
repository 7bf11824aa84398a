// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/views/player/PlayerControls.h"
#include "ZelvraApp/views/timeline/TimelineGeometry.h"

#include <QObject>
#include <qqml.h>

#include <optional>

namespace zelvra {

/// Where the playhead is on the scrubber, which shows the whole movie, and what pulling it does. While it is
/// pulled the picture follows by sync frames; when it is released the exact frame is shown.
///
/// Positions are logical pixels of the scrubber; those beyond its ends count as its ends. Main thread.
class ScrubberModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(zelvra::Session* session READ session WRITE setSession NOTIFY placesChanged REQUIRED)
    Q_PROPERTY(zelvra::PlayerControls* controls READ controls WRITE setControls NOTIFY placesChanged REQUIRED)
    Q_PROPERTY(double width READ width WRITE setWidth NOTIFY placesChanged)
    /// While it is pulled, where the pointer has pulled it.
    Q_PROPERTY(double playheadX READ playheadX NOTIFY placesChanged)

public:
    using QObject::QObject;

    Session* session() const { return session_; }
    void setSession(Session* session);
    PlayerControls* controls() const { return controls_; }
    void setControls(PlayerControls* controls);
    double width() const { return width_; }
    void setWidth(double width);
    double playheadX() const;

    Q_INVOKABLE void pull(double x);
    Q_INVOKABLE void release(double x);
    /// The text of the moment at that position.
    Q_INVOKABLE QString timecodeAt(double x) const;

Q_SIGNALS:
    void placesChanged();

private:
    TimelineAxis axis() const;

    Session* session_ = nullptr;
    PlayerControls* controls_ = nullptr;
    double width_ = 0;
    std::optional<double> pulledTo_; ///< seconds of the source
};

} // namespace zelvra
