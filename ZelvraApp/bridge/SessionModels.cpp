// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/bridge/SessionModels.h"

#include "ZelvraApp/files/FilePaths.h"
#include "ZelvraApp/session/Colors.h"

namespace zelvra {

QString rowId(const Uuid& id) {
    return QString::fromStdString(id.text());
}

QHash<int, QByteArray> HighlightModel::roleNames() const {
    return {{idRole, "id"},
            {momentRole, "moment"},
            {durationRole, "duration"},
            {kindRole, "kind"},
            {colorRole, "color"}};
}

QVariant HighlightModel::value(const Highlight& highlight, int role) const {
    switch (role) {
    case idRole: return rowId(highlight.id);
    case momentRole: return highlight.timestamp.seconds();
    case durationRole: return highlight.duration.seconds();
    case kindRole: {
        const std::string_view kind = rawValue(highlight.shape.kind);
        return QString::fromUtf8(kind.data(), static_cast<qsizetype>(kind.size()));
    }
    case colorRole: return toQColor(highlight.shape.strokeColor);
    default: return {};
    }
}

QHash<int, QByteArray> MarkedClipModel::roleNames() const {
    return {{idRole, "id"}, {startRole, "start"}, {endRole, "end"}, {highlightCountRole, "highlightCount"}};
}

QVariant MarkedClipModel::value(const MarkedClip& clip, int role) const {
    switch (role) {
    case idRole: return rowId(clip.id);
    case startRole: return clip.range.start.seconds();
    case endRole: return clip.range.end().seconds();
    case highlightCountRole: return static_cast<int>(clip.highlights.size());
    default: return {};
    }
}

QHash<int, QByteArray> ClipModel::roleNames() const {
    return {{pathRole, "path"},
            {nameRole, "name"},
            {isFolderRole, "isFolder"},
            {isOpenRole, "isOpen"},
            {hasWorkRole, "hasWork"},
            {highlightCountRole, "highlightCount"},
            {markedClipCountRole, "markedClipCount"},
            {isExportedRole, "isExported"},
            {wasInterruptedRole, "wasInterrupted"}};
}

QVariant ClipModel::value(const ClipRow& row, int role) const {
    const WorkKeeper::Summary work = row.work.value_or(WorkKeeper::Summary{});
    switch (role) {
    case pathRole: return row.path;
    case nameRole: return nameOf(pathOf(row.path));
    case isFolderRole: return row.isFolder;
    case isOpenRole: return row.isOpen;
    case hasWorkRole: return row.work.has_value();
    case highlightCountRole: return static_cast<int>(work.highlights);
    case markedClipCountRole: return static_cast<int>(work.markedClips);
    case isExportedRole:
        return work.isExported && work.highlights + work.markedClips > 0; // a trim alone is not
    case wasInterruptedRole: return work.wasInterrupted;
    default: return {};
    }
}

} // namespace zelvra
