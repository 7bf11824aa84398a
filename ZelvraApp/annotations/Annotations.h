// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/annotations/MarkedClip.h"

#include <optional>
#include <vector>

namespace zelvra {

/// What the user has drawn and cut on one movie, and the operations that change it: a plain value that knows
/// no player, no file and no history.
///
/// Times are on the source's timeline. Each operation returns whether its conditions were met; otherwise
/// nothing has changed.
struct Annotations {
    /// In ascending order of time. While a marked clip is edited: those of this clip.
    std::vector<Highlight> highlights;
    /// The part that is played and exported; nullopt means the whole source. While a marked clip is edited:
    /// its range so far.
    std::optional<CMTimeRange> trimRange;
    /// In the order in which they were made; they are exported and numbered so.
    std::vector<MarkedClip> markedClips;
    /// The marked clip that is edited. It stays in the list as it was until it is saved back.
    std::optional<Uuid> editingClipID;
    /// The marked clip whose end the next out-point moves.
    std::optional<Uuid> activeRoughClipID;
    /// The highlights of the whole source, set aside while a marked clip is edited.
    std::vector<Highlight> fullViewHighlights;

    /// There is something to show on a timeline: a highlight, a trim or a marked clip.
    bool hasContent() const;
    /// The highlights that belong to no marked clip.
    const std::vector<Highlight>& looseHighlights() const;
    /// The marked clip that is edited differs from the one in the list.
    bool hasUnsavedEdits() const;

    /// Adds a highlight, or replaces the one of that id.
    bool commit(const Highlight& highlight);
    bool deleteHighlight(const Uuid& id);

    /// Sets or clears the trim. Removes highlights outside the trim; those exactly at its ends stay. Clearing
    /// it ends the editing of a marked clip without saving.
    bool setTrim(const std::optional<CMTimeRange>& range);
    /// Move one edge of the trim, in seconds of the source of length `duration`. The edges stay inside the
    /// source and 0.1 s apart. Highlights stay.
    bool dragTrimStart(double toSeconds);
    bool dragTrimEnd(double toSeconds, const CMTime& duration);

    /// With a trim, moves its start to `now`. Else adds a marked clip from `now` on, `lengthSec` long, but
    /// not beyond the source's end; nothing within 0.1 s of that end.
    bool markInPoint(const CMTime& now, const CMTime& duration, double lengthSec);
    /// With a trim, moves its end to `now`. Else moves the end of the active rough clip there, if `now` is
    /// more than 0.1 s after its start.
    bool markOutPoint(const CMTime& now, const CMTime& duration);
    /// Stores the trim and its highlights as a marked clip, or back into the one that is edited, and shows
    /// the whole source again.
    bool markCurrentClip();
    /// Takes a marked clip's range and highlights for editing. Edits of another one that were not saved are
    /// dropped. Nothing if it is edited already.
    bool editMarkedClip(const Uuid& id);
    bool unmark(const Uuid& id);

private:
    void showWholeSource();
};

/// The same in every field. See Identical.h.
bool identical(const Annotations& a, const Annotations& b);

} // namespace zelvra
