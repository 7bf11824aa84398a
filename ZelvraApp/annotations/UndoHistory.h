// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/annotations/Annotations.h"

namespace zelvra {

/// The annotations of one movie as they were before each step of editing: whole values, no inverse
/// operations.
class UndoHistory {
public:
    static constexpr std::size_t capacity = 50; ///< steps; the oldest are forgotten

    /// Records the annotations as they were before a step. What was undone cannot be redone after it.
    void record(Annotations before);

    bool canUndo() const { return !undoStack_.empty(); }
    bool canRedo() const { return !redoStack_.empty(); }

    /// The annotations one step earlier or later than `current`; `current` itself if there is no step. The
    /// active rough clip is part of no step and stays.
    Annotations undo(const Annotations& current);
    Annotations redo(const Annotations& current);

private:
    static Annotations step(std::vector<Annotations>& from, std::vector<Annotations>& to,
                            const Annotations& current);

    std::vector<Annotations> undoStack_; ///< oldest first
    std::vector<Annotations> redoStack_;
};

} // namespace zelvra
