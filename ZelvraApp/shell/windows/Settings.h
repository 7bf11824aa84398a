// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/files/PreferenceStore.h"
#include "ZelvraApp/session/OutputLocation.h"
#include "ZelvraApp/session/ShellServices.h"

#include <QColor>
#include <QObject>
#include <QString>
#include <qqml.h>

namespace zelvra {

/// The user's preferences as the settings window and the menu edit them: each is read from the store, live,
/// and written there at once. A value that is absent or cannot be understood reads as its default.
///
/// Main thread. The store and the open panel outlive it.
class Settings : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The shell has one.")
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY changed)
    Q_PROPERTY(double radiusRatio READ radiusRatio WRITE setRadiusRatio NOTIFY changed)
    Q_PROPERTY(double strokeRatio READ strokeRatio WRITE setStrokeRatio NOTIFY changed)
    Q_PROPERTY(double durationSec READ durationSec WRITE setDurationSec NOTIFY changed)
    Q_PROPERTY(double clipLengthSec READ clipLengthSec WRITE setClipLengthSec NOTIFY changed)
    Q_PROPERTY(OutputMode outputMode READ outputMode WRITE setOutputMode NOTIFY changed)
    Q_PROPERTY(QString subfolderName READ subfolderName WRITE setSubfolderName NOTIFY changed)
    /// Empty if none was chosen.
    Q_PROPERTY(QString customFolder READ customFolder NOTIFY changed)
    Q_PROPERTY(bool includeAudio READ includeAudio WRITE setIncludeAudio NOTIFY changed)
    Q_PROPERTY(bool previewEnabled READ previewEnabled WRITE setPreviewEnabled NOTIFY changed)
    Q_PROPERTY(bool rememberWork READ rememberWork WRITE setRememberWork NOTIFY changed)
    /// The texts beside the controls: "6.0%", "0.40%", "3.0s", "30s".
    Q_PROPERTY(QString radiusText READ radiusText NOTIFY changed)
    Q_PROPERTY(QString strokeText READ strokeText NOTIFY changed)
    Q_PROPERTY(QString durationText READ durationText NOTIFY changed)
    Q_PROPERTY(QString clipLengthText READ clipLengthText NOTIFY changed)
    Q_PROPERTY(QString outputFooterText READ outputFooterText NOTIFY changed)

public:
    enum OutputMode { SameAsSource, Subfolder, Custom };
    Q_ENUM(OutputMode)

    /// Without an open panel no folder can be chosen.
    explicit Settings(PreferenceStore& store, OpenPanel* openPanel = nullptr, QObject* parent = nullptr);

    QColor color() const;
    /// Alpha is left out.
    void setColor(const QColor& color);
    double radiusRatio() const;
    void setRadiusRatio(double ratio) { store_.write(preferences::defaultRadiusRatio, ratio); }
    double strokeRatio() const;
    void setStrokeRatio(double ratio) { store_.write(preferences::defaultStrokeWidthRatio, ratio); }
    double durationSec() const;
    void setDurationSec(double seconds) { store_.write(preferences::defaultDurationSec, seconds); }
    double clipLengthSec() const;
    void setClipLengthSec(double seconds) { store_.write(preferences::clipDefaultLengthSec, seconds); }
    OutputMode outputMode() const;
    void setOutputMode(OutputMode mode);
    QString subfolderName() const { return output().subfolderName; }
    void setSubfolderName(const QString& name) { store_.write(preferences::outputSubfolderName, name); }
    QString customFolder() const { return output().customFolderPath; }
    bool includeAudio() const { return output().includeAudio; }
    void setIncludeAudio(bool on) { store_.write(preferences::outputIncludeAudio, on); }
    bool previewEnabled() const { return store_.read(preferences::previewEnabled).value_or(true); }
    void setPreviewEnabled(bool on) { store_.write(preferences::previewEnabled, on); }
    bool rememberWork() const { return store_.read(preferences::rememberWork).value_or(true); }
    void setRememberWork(bool on) { store_.write(preferences::rememberWork, on); }

    QString radiusText() const;
    QString strokeText() const;
    QString durationText() const;
    QString clipLengthText() const;
    QString outputFooterText() const { return outputFooterText(output()); }
    /// Says where exports go.
    static QString outputFooterText(const OutputLocation& location);

    /// Lets the user choose the custom folder. Cancelling leaves it as it is.
    Q_INVOKABLE void chooseCustomFolder();
    /// Resets highlight style, clip length and output to factory defaults, without a question.
    Q_INVOKABLE void resetToFactoryDefaults();

Q_SIGNALS:
    void changed();

private:
    OutputLocation output() const { return OutputLocation::loadFromUserDefaults(store_); }

    PreferenceStore& store_;
    OpenPanel* openPanel_;
};

} // namespace zelvra
