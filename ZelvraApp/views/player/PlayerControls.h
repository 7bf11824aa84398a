// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/bridge/Session.h"

#include <QObject>
#include <qqml.h>

namespace zelvra {

/// What the controls in the player's picture show and do: playing, scrubbing, stepping, the shuttle of J, K
/// and L, volume and speed. Main thread.
///
/// While a freeze is shown this counts as playing: pausing then ends the freeze.
class PlayerControls : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(zelvra::Session* session READ session WRITE setSession NOTIFY sessionChanged REQUIRED)
    Q_PROPERTY(bool isPlaying READ isPlaying NOTIFY playingChanged)
    /// "00:12.40" and "-01:03.00"
    Q_PROPERTY(QString elapsedText READ elapsedText NOTIFY timeChanged)
    Q_PROPERTY(QString remainingText READ remainingText NOTIFY timeChanged)
    Q_PROPERTY(double volume READ volume WRITE setVolume NOTIFY soundChanged)
    Q_PROPERTY(bool muted READ isMuted WRITE setMuted NOTIFY soundChanged)
    /// The rate that the user has chosen. The shuttle plays faster while it runs.
    Q_PROPERTY(double rate READ rate WRITE setRate NOTIFY rateChanged)
    Q_PROPERTY(QString rateText READ rateText NOTIFY rateChanged)
    Q_PROPERTY(QList<double> rates READ rates CONSTANT)

public:
    explicit PlayerControls(QObject* parent = nullptr);

    Session* session() const { return session_; }
    void setSession(Session* session);

    bool isPlaying() const;
    QString elapsedText() const;
    QString remainingText() const;
    double volume() const;
    void setVolume(double volume);
    bool isMuted() const;
    void setMuted(bool muted);
    double rate() const { return rate_; }
    void setRate(double rate);
    QString rateText() const { return textOfRate(rate_); }
    static QList<double> rates() { return {0.25, 0.5, 1, 1.5, 2}; }
    /// "0.5×"
    Q_INVOKABLE static QString textOfRate(double rate);

    Q_INVOKABLE void togglePlaying();
    /// A drag to that moment, in seconds. A movie that plays is paused until the drag ends.
    void scrub(double seconds);
    void endScrub(double seconds);
    /// By that many frames; pauses.
    Q_INVOKABLE void step(int frames);

    /// Does what a key asks of the player: Space, the arrows (one frame, ten with Shift), J, K, L, Home, End.
    /// False for any other key, and if no clip is open. `isRepeated`: the key is held.
    Q_INVOKABLE bool handleKey(int key, int modifiers, bool isRepeated);

Q_SIGNALS:
    void sessionChanged();
    void playingChanged();
    void timeChanged();
    void soundChanged();
    void rateChanged();

private:
    Player& player() const { return session_->state()->player(); }
    void pause();
    void shuttleForward();
    void shuttleBackward();
    void endShuttle();

    static constexpr double fastestShuttle = 4;

    Session* session_ = nullptr;
    double rate_ = 1;
    bool resumesAfterScrub_ = false;
    double shuttleRate_ = 0; ///< how fast J and L go, backwards negative; 0 while they do not
};

} // namespace zelvra
