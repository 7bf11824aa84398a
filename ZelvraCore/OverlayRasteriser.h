// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/media/Image.h"
#include "ZelvraCore/records/Highlight.h"

namespace zelvra {

/// Burns a highlight's figure into a picture: what an exported movie shows during a freeze. Outlines only: no
/// fill, no shadow, no text.
///
/// The outline is `strokeWidthRatio` of the picture's height wide and at least one pixel, with round caps and
/// joins, antialiased. Its colour goes into the raster as it is, whatever the picture's own colour space. A
/// figure without extent (a circle of radius 0, an arrow whose ends meet) is stroked as a round dot. Anchors
/// may be outside the picture. A shape with an anchor that is not a number is not drawn.
///
/// The result keeps the picture's colour description and decoded planes. Its coverage marks what has been
/// drawn on, here and earlier; nowhere else does it differ from `image`. Any thread. Throws
/// ZVError::contextCreationFailed.
Image drawShape(const Image& image, const HighlightShape& shape);

} // namespace zelvra
