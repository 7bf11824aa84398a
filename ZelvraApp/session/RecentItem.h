// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/files/PreferenceStore.h"

#include <QString>

#include <vector>

namespace zelvra {

/// A clip or folder that was opened recently. Identified by its path, which ends in no slash.
struct RecentItem {
    QString path;
    bool isFolder = false; ///< as it was opened
    bool operator==(const RecentItem&) const = default;

    /// Newest first, at most ten, each path once. Does not check whether they still exist. Entries without a
    /// path are skipped. A value that is no list of entries gives an empty list.
    static std::vector<RecentItem> loadFromUserDefaults(const PreferenceStore& store);

    /// Replaces the saved list.
    static void save(const std::vector<RecentItem>& items, PreferenceStore& store);
};

/// The list after `item` was opened: the item is first, any other entry of its path is removed, and so are
/// the oldest beyond ten.
std::vector<RecentItem> noting(const RecentItem& item, std::vector<RecentItem> recents);

/// The list without the entries of that path.
std::vector<RecentItem> forgetting(const QString& path, std::vector<RecentItem> recents);

} // namespace zelvra
