// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/session/HighlightDraft.h"

namespace zelvra {

/// What the editor's controls change in a draft.

/// A shape of that kind in the draft's style, in the middle of the picture, with an id of its own. If the
/// kind is the same, the draft's shape unchanged. A circle gets the radius `radiusRatio`, a fraction of the
/// picture's height.
DraftShape withKind(const HighlightDraft& draft, HighlightShapeKind kind, double radiusRatio);

/// The draft's circle with its rim point at that fraction of the picture's height to the right of its centre;
/// other shapes unchanged.
DraftShape withRadius(const HighlightDraft& draft, double radiusRatio);

} // namespace zelvra
