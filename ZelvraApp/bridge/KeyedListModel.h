// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/annotations/Identical.h"

#include <QAbstractListModel>

#include <algorithm>
#include <utility>
#include <vector>

namespace zelvra {

/// A list of the session as rows for a view. Items are known by a key, so that a changed item is a change of
/// its row, a moved one a move, and rows beside it stay what they are: never a reset. What a view does with a
/// row (an edited text, an animation, the focus) survives changes elsewhere.
///
/// A concrete model says what is the key of an item and which roles it has. Main thread.
template <class Item>
class KeyedListModel : public QAbstractListModel {
public:
    using QAbstractListModel::QAbstractListModel;

    const std::vector<Item>& items() const { return items_; }

    int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : static_cast<int>(items_.size());
    }

    QVariant data(const QModelIndex& index, int role) const override {
        const bool isRow = index.isValid() && index.row() < rowCount();
        return isRow ? value(itemAt(index.row()), role) : QVariant();
    }

    /// Makes the rows those of `items`, with as few changes as their keys allow.
    void update(const std::vector<Item>& items) {
        removeMissing(items);
        for (int row = 0; row < static_cast<int>(items.size()); ++row) {
            place(items[static_cast<std::size_t>(row)], row);
        }
        while (items_.size() > items.size()) {
            removeRowAt(rowCount() - 1);
        }
    }

protected:
    virtual bool sameKey(const Item& a, const Item& b) const = 0;
    virtual QVariant value(const Item& item, int role) const = 0;

private:
    Item& itemAt(int row) { return items_[static_cast<std::size_t>(row)]; }
    const Item& itemAt(int row) const { return items_[static_cast<std::size_t>(row)]; }

    void removeMissing(const std::vector<Item>& items) {
        for (int row = rowCount() - 1; row >= 0; --row) {
            const auto isThisOne = [&](const Item& item) { return sameKey(item, itemAt(row)); };
            if (std::ranges::none_of(items, isThisOne)) {
                removeRowAt(row);
            }
        }
    }

    /// Brings `item` to `row`. All rows before it are in place already.
    void place(const Item& item, int row) {
        const auto known = std::find_if(items_.begin() + row, items_.end(),
                                        [&](const Item& other) { return sameKey(item, other); });
        const int from = static_cast<int>(known - items_.begin());
        if (known == items_.end()) {
            beginInsertRows({}, row, row);
            items_.insert(items_.begin() + row, item);
            endInsertRows();
            return;
        }
        if (from != row) {
            beginMoveRows({}, from, from, {}, row);
            std::rotate(items_.begin() + row, known, known + 1);
            endMoveRows();
        }
        if (!identical(itemAt(row), item)) {
            itemAt(row) = item;
            Q_EMIT dataChanged(index(row), index(row));
        }
    }

    void removeRowAt(int row) {
        beginRemoveRows({}, row, row);
        items_.erase(items_.begin() + row);
        endRemoveRows();
    }

    std::vector<Item> items_;
};

} // namespace zelvra
