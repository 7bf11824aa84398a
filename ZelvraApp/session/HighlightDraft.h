// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/media/Image.h"
#include "ZelvraCore/records/Highlight.h"

namespace zelvra {

/// The shape in the editor. Anchors as in HighlightShape.
struct DraftShape {
    Uuid id; ///< of the HighlightShape that it becomes
    HighlightShapeKind kind = HighlightShapeKind::circle;
    Point p1;
    Point p2;
    Color color;
    double strokeWidthRatio = 0; ///< of the picture's height
};

/// A highlight's shape, to be edited or drawn.
DraftShape draftShape(const HighlightShape& shape);

/// The editor's working copy of a highlight, with the frame that is drawn over. It becomes a highlight when
/// it is committed.
struct HighlightDraft {
    Uuid id; ///< of the highlight that it re-edits or becomes
    CMTime timestamp;
    double durationSec = 0;
    Image frame; ///< what the source shows at `timestamp`
    Size videoDisplaySize;
    DraftShape shape;
    bool isEditing = false; ///< an existing highlight is edited again

    /// The circle's radius as a fraction of the picture's height; 0 for other shapes.
    double circleRadiusRatio() const;

    /// What is stored when the draft is committed. The duration has the timescale 600.
    Highlight highlight() const;

    /// The draft that edits `highlight` again.
    static HighlightDraft editing(const Highlight& highlight, Image frame, Size videoDisplaySize);
};

/// Whether all fields are the same; frames are, if they share one raster. See Identical.h.
bool identical(const HighlightDraft& a, const HighlightDraft& b);

} // namespace zelvra
