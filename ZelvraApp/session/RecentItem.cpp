// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/session/RecentItem.h"

#include <QJsonObject>

#include <algorithm>

namespace zelvra {

namespace {

constexpr std::size_t mostRecents = 10;
constexpr QLatin1String pathKey("path");
constexpr QLatin1String isFolderKey("isFolder");

/// One folder has one path, with or without a slash at its end.
QString withoutTrailingSlash(QString path) {
    while (path.size() > 1 && path.endsWith(QLatin1Char('/'))) {
        path.chop(1);
    }
    return path;
}

} // namespace

std::vector<RecentItem> RecentItem::loadFromUserDefaults(const PreferenceStore& store) {
    const QJsonArray entries = store.read(preferences::recents).value_or(QJsonArray());
    if (!std::ranges::all_of(entries, [](const QJsonValue& entry) { return entry.isObject(); })) {
        return {};
    }
    std::vector<RecentItem> items;
    for (auto entry = entries.end(); entry != entries.begin();) { // oldest first
        --entry;
        const QJsonValue path = (*entry)[pathKey];
        if (path.isString()) {
            items = noting({path.toString(), (*entry)[isFolderKey].toBool(false)}, std::move(items));
        }
    }
    return items;
}

void RecentItem::save(const std::vector<RecentItem>& items, PreferenceStore& store) {
    QJsonArray entries;
    for (const RecentItem& item : items) {
        entries.append(QJsonObject{{pathKey, item.path}, {isFolderKey, item.isFolder}});
    }
    store.write(preferences::recents, entries);
}

std::vector<RecentItem> noting(const RecentItem& item, std::vector<RecentItem> recents) {
    const QString path = withoutTrailingSlash(item.path);
    recents = forgetting(path, std::move(recents));
    recents.insert(recents.begin(), {path, item.isFolder});
    recents.resize(std::min(recents.size(), mostRecents));
    return recents;
}

std::vector<RecentItem> forgetting(const QString& path, std::vector<RecentItem> recents) {
    std::erase_if(recents, [&](const RecentItem& item) { return item.path == withoutTrailingSlash(path); });
    return recents;
}

} // namespace zelvra
