// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/annotations/MarkedClip.h"
#include "ZelvraApp/bridge/KeyedListModel.h"
#include "ZelvraApp/session/RecentItem.h"
#include "ZelvraCore/records/Highlight.h"

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

/// Roles: path, name, isFolder.
class RecentItemModel : public KeyedListModel<RecentItem> {
    Q_OBJECT

public:
    enum Role { pathRole = Qt::UserRole, nameRole, isFolderRole };

    using KeyedListModel::KeyedListModel;
    QHash<int, QByteArray> roleNames() const override;

protected:
    bool sameKey(const RecentItem& a, const RecentItem& b) const override { return a.path == b.path; }
    QVariant value(const RecentItem& item, int role) const override;
};

} // namespace zelvra
