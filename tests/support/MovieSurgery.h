// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/records/CMTimeRange.h"
#include "ZelvraCore/records/Geometry.h"
#include "tests/support/BoxTree.h"

#include <span>

namespace zelvra::test {

/// Changes to a finished movie file that turn it into one that no encoder here writes. All of them require an
/// index after the media (the default of ffmpeg) with 32-bit chunk offsets.

/// Sets how the picture of the video track is turned for display.
void setDisplayMatrix(BoxFile& file, const AffineTransform& matrix);

/// Shows these stretches of the unedited presentation, one after another, by edit lists of all tracks. A
/// stretch with an invalid start is an empty edit.
void showOnly(BoxFile& file, std::span<const CMTimeRange> stretches);

/// Describes the video's samples by two (equal) sample entries, the second from the middle chunk on.
void useTwoSampleEntries(BoxFile& file);

/// Moves the index before the media.
void moveIndexToFront(BoxFile& file);

/// Writes the movie with its media beyond 4 GiB, after a hole that takes no space on disk, and with 64-bit
/// chunk offsets.
void writeBeyond4GiB(BoxFile file, const std::filesystem::path& path);

} // namespace zelvra::test
