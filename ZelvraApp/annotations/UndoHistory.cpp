// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/annotations/UndoHistory.h"

#include <utility>

namespace zelvra {

void UndoHistory::record(Annotations before) {
    undoStack_.push_back(std::move(before));
    if (undoStack_.size() > capacity) {
        undoStack_.erase(undoStack_.begin());
    }
    redoStack_.clear();
}

Annotations UndoHistory::undo(const Annotations& current) {
    return step(undoStack_, redoStack_, current);
}

Annotations UndoHistory::redo(const Annotations& current) {
    return step(redoStack_, undoStack_, current);
}

Annotations UndoHistory::step(std::vector<Annotations>& from, std::vector<Annotations>& to,
                              const Annotations& current) {
    if (from.empty()) {
        return current;
    }
    to.push_back(current);
    Annotations result = std::move(from.back());
    from.pop_back();
    result.activeRoughClipID = current.activeRoughClipID;
    return result;
}

} // namespace zelvra
