// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/annotations/SessionTime.h"
#include "ZelvraApp/session/HighlightDraft.h"
#include "tests/support/NumberedPicture.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace zelvra::test {

/// For drafts whose frame does not matter.
inline Image onePixel() {
    return Image(std::make_shared<const Image::Raster>(Image::Raster{1, 1, std::vector<std::uint8_t>(4)}),
                 {});
}

/// The draft of a new highlight, as the editor leaves it. Its shape is a marker that can be found again in an
/// exported movie (see markerHighlight).
inline HighlightDraft draftAt(double seconds, double duration = 3, int marker = 0,
                              Size display = {320, 180}) {
    HighlightDraft draft = HighlightDraft::editing(
        markerHighlight(marker, sessionTime(seconds), sessionTime(duration), display), onePixel(), display);
    draft.isEditing = false;
    return draft;
}

} // namespace zelvra::test
