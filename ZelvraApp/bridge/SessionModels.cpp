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

QHash<int, QByteArray> RecentItemModel::roleNames() const {
    return {{pathRole, "path"}, {nameRole, "name"}, {isFolderRole, "isFolder"}};
}

QVariant RecentItemModel::value(const RecentItem& item, int role) const {
    switch (role) {
    case pathRole: return item.path;
    case nameRole: return nameOf(pathOf(item.path));
    case isFolderRole: return item.isFolder;
    default: return {};
    }
}

} // namespace zelvra
