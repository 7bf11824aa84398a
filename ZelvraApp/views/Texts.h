// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QString>
#include <QUrl>
#include <qqml.h>

namespace zelvra {

/// The main window's texts that depend on numbers. Pure functions; views call them as
/// `Texts.closeMessage(…)`.
class Texts : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    // Questions
    /// What closing would lose; empty if nothing would be lost.
    Q_INVOKABLE static QString closeMessage(int highlights, int markedClips);
    /// `file` is the last file written; empty if there is none.
    Q_INVOKABLE static QString postExportMessage(const QUrl& file);
    /// The answer that leads on in a queue, from the clip at `queueIndex`, counted from 0.
    Q_INVOKABLE static QString nextClipAnswer(int queueIndex, int queueLength);

    // Control bar
    Q_INVOKABLE static QString exportLabel(int markedClips);
    Q_INVOKABLE static QString markLabel(bool editing);
    Q_INVOKABLE static QString markTip(bool editing);
    Q_INVOKABLE static QString inPointTip(bool hasTrim, double clipLengthSec);
    Q_INVOKABLE static QString outPointTip(bool hasTrim, bool hasRoughClip);
    Q_INVOKABLE static QString trimBadgeTip(bool editing);

    // Remembered work
    /// What was left on the open clip.
    Q_INVOKABLE static QString leftWork(int highlights, int markedClips);
    /// "5 highlights, 3 clips"
    Q_INVOKABLE static QString workCount(int highlights, int markedClips);
    /// What is remembered of a clip, in lines: for its tooltip and for screen readers.
    Q_INVOKABLE static QString workDetails(int highlights, int markedClips, bool exported, bool interrupted);

    // Rows
    Q_INVOKABLE static QString clipNumber(int number);
    Q_INVOKABLE static QString highlightCount(int highlights);
    Q_INVOKABLE static QString markedClipCount(int markedClips);
    Q_INVOKABLE static QString clipRowTip(bool editing);
    Q_INVOKABLE static QString freezeLength(double seconds);
    /// The name of the folder that holds it.
    Q_INVOKABLE static QString folderName(const QString& path);

    /// The last component of a local file's path.
    Q_INVOKABLE static QString fileName(const QUrl& file);

    /// Of a fraction from 0 to 1, cut off.
    Q_INVOKABLE static QString percentage(double fraction);
};

} // namespace zelvra
