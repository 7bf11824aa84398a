// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/files/NaturalOrder.h"

#include "ZelvraApp/files/FilePaths.h"

#include <QCollator>

#include <algorithm>

namespace zelvra {

namespace {

/// The C locale compares bytes and has no numeric order, so English is used.
QLocale orderingLocale() {
    const QLocale user;
    return user.language() == QLocale::C ? QLocale(QLocale::English) : user;
}

} // namespace

void sortInNaturalOrder(std::vector<std::filesystem::path>& paths) {
    QCollator collator(orderingLocale());
    collator.setNumericMode(true);
    collator.setCaseSensitivity(Qt::CaseInsensitive);

    struct Entry {
        QCollatorSortKey key;
        std::filesystem::path path;
    };
    std::vector<Entry> entries;
    entries.reserve(paths.size());
    for (std::filesystem::path& path : paths) {
        entries.push_back({collator.sortKey(textOf(path.filename())), std::move(path)});
    }
    std::ranges::stable_sort(entries,
                             [](const Entry& a, const Entry& b) { return a.key.compare(b.key) < 0; });
    std::ranges::transform(entries, paths.begin(), [](Entry& entry) { return std::move(entry.path); });
}

} // namespace zelvra
