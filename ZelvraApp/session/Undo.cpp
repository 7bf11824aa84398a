// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/session/AppState.h"

namespace zelvra {

namespace {

constexpr std::size_t mostUndoSteps = 50;

UndoSnapshot takeLast(std::vector<UndoSnapshot>& stack) {
    UndoSnapshot last = std::move(stack.back());
    stack.pop_back();
    return last;
}

} // namespace

UndoSnapshot AppState::currentSnapshot() const {
    return {highlights_, trimRange_, markedClips_, editingClipID_};
}

void AppState::pushUndo() {
    undoStack_.push_back(currentSnapshot());
    if (undoStack_.size() > mostUndoSteps) {
        undoStack_.erase(undoStack_.begin());
    }
    redoStack_.clear();
    publishDerived();
}

void AppState::restore(UndoSnapshot snapshot) {
    publish(highlights_, std::move(snapshot.highlights), &AppState::highlightsChanged);
    publish(trimRange_, snapshot.trimRange, &AppState::trimRangeChanged);
    publish(markedClips_, std::move(snapshot.markedClips), &AppState::markedClipsChanged);
    publish(editingClipID_, snapshot.editingClipID, &AppState::editingClipIDChanged);
    publishDerived();
    applyTrimToPlayer();
}

void AppState::undo() {
    if (undoStack_.empty()) {
        return;
    }
    UndoSnapshot before = takeLast(undoStack_);
    redoStack_.push_back(currentSnapshot());
    restore(std::move(before));
}

void AppState::redo() {
    if (redoStack_.empty()) {
        return;
    }
    UndoSnapshot after = takeLast(redoStack_);
    undoStack_.push_back(currentSnapshot());
    restore(std::move(after));
}

void AppState::clearUndoHistory() {
    undoStack_.clear();
    redoStack_.clear();
    publishDerived();
}

} // namespace zelvra
