// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/media/Asset.h"
#include "ZelvraCore/records/SourceInfo.h"

#include <filesystem>

namespace zelvra {

/// What a movie is: the facts on which the rest of the engine decides. Of several video tracks it describes
/// the first enabled one (see Asset::videoTrackNumber).
///
/// - `naturalSize` is that of the decoded picture in square pixels, `displaySize` the same after turning.
/// - `preferredTransform` is one of the eight turns and mirrors, moved so that the picture's corner is at the
///   origin; exactly the identity for an upright movie.
/// - `duration` is the end of the pictures or of the longest sound track, edit lists applied.
/// - `nominalFrameRate` is the number of pictures shown over the time that they are shown.
/// - `frameDuration` is the length that its frames really have (media/FrameDuration.h), else one n-th of a
///   second by the rate.
///
/// Blocks on the file; any thread. Throws ZVError::noVideoTrack for a movie without pictures, MediaError for
/// a file that is missing, unreadable, no movie, or one whose pictures are encrypted or never shown.
SourceInfo loadSourceInfo(const std::filesystem::path& movie);
SourceInfo loadSourceInfo(const Asset& asset);

} // namespace zelvra
