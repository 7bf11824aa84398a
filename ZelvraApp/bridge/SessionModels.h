// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/annotations/MarkedClip.h"
#include "ZelvraApp/bridge/KeyedListModel.h"
#include "ZelvraApp/session/WorkKeeper.h"
#include "ZelvraCore/records/Highlight.h"

#include <optional>

namespace zelvra {

/// The session's lists as rows for views. Times are in seconds; ids are texts.

/// The text by which a row's item is named.
QString rowId(const Uuid& id);

/// Roles: id, moment, duration, kind ("circle", ...), color (a QColor).
class HighlightModel : public KeyedListModel<Highlight> {
    Q_OBJECT

public:
    enum Role { idRole = Qt::UserRole, momentRole, durationRole, kindRole, colorRole };

    using KeyedListModel::KeyedListModel;
    QHash<int, QByteArray> roleNames() const override;

protected:
    bool sameKey(const Highlight& a, const Highlight& b) const override { return a.id == b.id; }
    QVariant value(const Highlight& highlight, int role) const override;
};

/// Roles: id, start, end, highlightCount.
class MarkedClipModel : public KeyedListModel<MarkedClip> {
    Q_OBJECT

public:
    enum Role { idRole = Qt::UserRole, startRole, endRole, highlightCountRole };

    using KeyedListModel::KeyedListModel;
    QHash<int, QByteArray> roleNames() const override;

protected:
    bool sameKey(const MarkedClip& a, const MarkedClip& b) const override { return a.id == b.id; }
    QVariant value(const MarkedClip& clip, int role) const override;
};

/// A clip or a folder, recent or in the queue.
struct ClipRow {
    QString path;
    bool isFolder = false;
    bool isOpen = false;
    std::optional<WorkKeeper::Summary> work = {}; ///< that is remembered of the clip
    bool operator==(const ClipRow&) const = default;
};

/// Roles: path, name, isFolder, isOpen, and of the remembered work: hasWork, highlightCount, markedClipCount,
/// isExported, wasInterrupted.
class ClipModel : public KeyedListModel<ClipRow> {
    Q_OBJECT

public:
    enum Role {
        pathRole = Qt::UserRole,
        nameRole,
        isFolderRole,
        isOpenRole,
        hasWorkRole,
        highlightCountRole,
        markedClipCountRole,
        isExportedRole,
        wasInterruptedRole,
    };

    using KeyedListModel::KeyedListModel;
    QHash<int, QByteArray> roleNames() const override;

protected:
    bool sameKey(const ClipRow& a, const ClipRow& b) const override { return a.path == b.path; }
    QVariant value(const ClipRow& row, int role) const override;
};

} // namespace zelvra
