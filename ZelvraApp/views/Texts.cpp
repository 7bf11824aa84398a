// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/views/Texts.h"

#include "ZelvraApp/files/FilePaths.h"

#include <QStringList>

#include <cmath>

namespace zelvra {

namespace {

/// "1 clip", "2 clips"
QString counted(int count, const QString& what) {
    return QStringLiteral("%1 %2%3").arg(count).arg(what, count == 1 ? QString() : QStringLiteral("s"));
}

} // namespace

QString Texts::closeMessage(int highlights, int markedClips) {
    QStringList parts;
    if (markedClips > 0) {
        parts += counted(markedClips, QStringLiteral("marked clip"));
    }
    if (highlights > 0) {
        parts += highlightCount(highlights);
    }
    return parts.isEmpty() ? QString()
                           : parts.join(QStringLiteral(" and ")) +
                                 QStringLiteral(" haven't been exported yet. Closing will discard them.");
}

QString Texts::postExportMessage(const QUrl& file) {
    return file.isEmpty() ? QString() : QStringLiteral("Saved as %1.").arg(fileName(file));
}

QString Texts::nextClipAnswer(int queueIndex, int queueLength) {
    return QStringLiteral("Next Clip (%1 of %2)").arg(queueIndex + 2).arg(queueLength);
}

QString Texts::exportLabel(int markedClips) {
    return markedClips > 0 ? QStringLiteral("Export (%1)").arg(markedClips) : QStringLiteral("Export");
}

QString Texts::markLabel(bool editing) {
    return editing ? QStringLiteral("Save & Return") : QStringLiteral("Mark Clip");
}

QString Texts::markTip(bool editing) {
    return editing ? QStringLiteral("Save edits and return to the full video (⇧⌘M)")
                   : QStringLiteral("Mark the current trim + highlights as a clip (⇧⌘M)");
}

QString Texts::inPointTip(bool hasTrim, double clipLengthSec) {
    return hasTrim ? QStringLiteral("Nudge the clip's start to the current time (I)")
                   : QStringLiteral("Start a %1-second clip here (I) — press O to set the exact end")
                         .arg(QString::number(std::trunc(clipLengthSec), 'f', 0));
}

QString Texts::outPointTip(bool hasTrim, bool hasRoughClip) {
    if (hasTrim) {
        return QStringLiteral("Nudge the clip's end to the current time (O)");
    }
    return hasRoughClip ? QStringLiteral("Set the new clip's end to the current time (O)")
                        : QStringLiteral("Press I first to start a clip");
}

QString Texts::trimBadgeTip(bool editing) {
    return editing ? QStringLiteral("Discard edit and return to full video") : QStringLiteral("Clear trim");
}

QString Texts::clipNumber(int number) {
    return QStringLiteral("%1").arg(number, 2, 10, QLatin1Char('0'));
}

QString Texts::highlightCount(int highlights) {
    return counted(highlights, QStringLiteral("highlight"));
}

QString Texts::clipRowTip(bool editing) {
    return editing ? QStringLiteral("Currently editing — use Save & Return to commit")
                   : QStringLiteral("Click to fine-tune (load into editor)");
}

QString Texts::freezeLength(double seconds) {
    return QString::asprintf("%.1fs freeze", seconds);
}

QString Texts::folderName(const QString& path) {
    const std::filesystem::path item = pathOf(path);
    return nameOf(item.has_filename() ? item.parent_path() : item.parent_path().parent_path());
}

QString Texts::fileName(const QUrl& file) {
    return nameOf(pathOf(file.toLocalFile()));
}

QString Texts::percentage(double fraction) {
    return QStringLiteral("%1%").arg(static_cast<int>(fraction * 100));
}

} // namespace zelvra
