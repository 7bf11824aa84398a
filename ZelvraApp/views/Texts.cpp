// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/views/Texts.h"

#include "ZelvraApp/files/FilePaths.h"

#include <cmath>

namespace zelvra {

QString Texts::closeMessage(int highlights, int markedClips) {
    const QString clips = markedClipCount(markedClips);
    const QString figures = highlightCount(highlights);
    const auto warning = [](const QString& work) {
        return tr("%1 haven't been exported yet. Closing will discard them.").arg(work);
    };
    if (markedClips > 0 && highlights > 0) {
        return warning(tr("%1 and %2", "marked clips and highlights").arg(clips, figures));
    }
    return markedClips > 0 ? warning(clips) : highlights > 0 ? warning(figures) : QString();
}

QString Texts::postExportMessage(const QUrl& file) {
    return file.isEmpty() ? QString() : tr("Saved as %1.").arg(fileName(file));
}

QString Texts::nextClipAnswer(int queueIndex, int queueLength) {
    return tr("Next Clip (%1 of %2)").arg(queueIndex + 2).arg(queueLength);
}

QString Texts::exportLabel(int markedClips) {
    return markedClips > 0 ? tr("Export (%1)").arg(markedClips) : tr("Export");
}

QString Texts::markLabel(bool editing) {
    return editing ? tr("Save & Return") : tr("Mark Clip");
}

QString Texts::markTip(bool editing) {
    return editing ? tr("Save edits and return to the full video (⇧⌘M)")
                   : tr("Mark the current trim + highlights as a clip (⇧⌘M)");
}

QString Texts::inPointTip(bool hasTrim, double clipLengthSec) {
    return hasTrim ? tr("Nudge the clip's start to the current time (I)")
                   : tr("Start a %1-second clip here (I) — press O to set the exact end")
                         .arg(QString::number(std::trunc(clipLengthSec), 'f', 0));
}

QString Texts::outPointTip(bool hasTrim, bool hasRoughClip) {
    if (hasTrim) {
        return tr("Nudge the clip's end to the current time (O)");
    }
    return hasRoughClip ? tr("Set the new clip's end to the current time (O)")
                        : tr("Press I first to start a clip");
}

QString Texts::trimBadgeTip(bool editing) {
    return editing ? tr("Discard edit and return to full video") : tr("Clear trim");
}

QString Texts::leftWork(int highlights, int markedClips) {
    const auto offer = [](const QString& work) { return tr("You left %1 here.").arg(work); };
    if (highlights > 0 && markedClips > 0) {
        return tr("You left %1 and %2 here.", "highlights and marked clips")
            .arg(highlightCount(highlights), markedClipCount(markedClips));
    }
    return markedClips > 0  ? offer(markedClipCount(markedClips))
           : highlights > 0 ? offer(highlightCount(highlights))
                            : offer(tr("a trimmed range"));
}

QString Texts::workCount(int highlights, int markedClips) {
    QStringList figures;
    if (highlights > 0) {
        figures.append(highlightCount(highlights));
    }
    if (markedClips > 0) {
        figures.append(tr("%n clip(s)", nullptr, markedClips));
    }
    return figures.empty() ? tr("trimmed") : figures.join(QStringLiteral(", "));
}

QString Texts::workDetails(int highlights, int markedClips, bool exported, bool interrupted) {
    QStringList lines{workCount(highlights, markedClips)};
    if (exported) {
        lines.append(tr("All of it is exported"));
    }
    if (interrupted) {
        lines.append(tr("Was open when Zelvra did not end properly"));
    }
    return lines.join(QLatin1Char('\n'));
}

QString Texts::clipNumber(int number) {
    return QStringLiteral("%1").arg(number, 2, 10, QLatin1Char('0'));
}

QString Texts::highlightCount(int highlights) {
    return tr("%n highlight(s)", nullptr, highlights);
}

QString Texts::markedClipCount(int markedClips) {
    return tr("%n marked clip(s)", nullptr, markedClips);
}

QString Texts::clipRowTip(bool editing) {
    return editing ? tr("Currently editing — use Save & Return to commit")
                   : tr("Click to fine-tune (load into editor)");
}

QString Texts::freezeLength(double seconds) {
    return tr("%1s freeze").arg(seconds, 0, 'f', 1);
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
