// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/files/PreferenceStore.h"

#include <QString>

#include <vector>

namespace zelvra {

/// A clip or folder that was opened lately. Identified by its path.
struct RecentItem {
    QString path;
    bool isFolder = false; ///< as it was opened
    bool operator==(const RecentItem&) const = default;

    /// Newest first. Whether they still exist is not looked at. Entries without a path are skipped; what is
    /// no list of entries is an empty list.
    static std::vector<RecentItem> loadFromUserDefaults(const PreferenceStore& store);

    /// Replaces the saved list.
    static void save(const std::vector<RecentItem>& items, PreferenceStore& store);
};

/// The list after `item` was opened: it comes first, any entry of the same path goes, and the oldest beyond
/// ten go.
std::vector<RecentItem> noting(const RecentItem& item, std::vector<RecentItem> recents);

/// The list without the entries of that path.
std::vector<RecentItem> forgetting(const QString& path, std::vector<RecentItem> recents);

} // namespace zelvra
