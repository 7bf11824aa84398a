// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/media/Asset.h"
#include "ZelvraCore/media/Image.h"
#include "ZelvraCore/records/CMTime.h"

#include <filesystem>

namespace zelvra {

/// The picture that a movie shows at `time` of its presentation timeline (edit lists applied): never a nearby
/// sync frame, always the one on screen. It is upright, in square pixels, as large as
/// SourceInfo::displaySize; see Image for what it keeps of the decoded picture. Because the editor and the
/// render both use this, the frame that is annotated is the frame that freezes.
///
/// There is a picture at every time from 0 up to, not including, the movie's duration: the first one before
/// it appears, the last one after it, while sound goes on.
///
/// Decodes from the sync sample before the frame on; nothing decoded is kept. Blocks; any thread, several at
/// once on one asset. Throws MediaError (outOfRange for a time outside the movie or no number;
/// unreadable, unsupported, corrupt) and ZVError::noVideoTrack.
Image extractFrame(const std::filesystem::path& movie, const CMTime& time);
Image extractFrame(const Asset& asset, const CMTime& time);

/// What a player shows that is paused at `time`: as extractFrame, but at the movie's very end it is the last
/// picture. Throws as extractFrame.
Image extractFrameOnScreen(const Asset& asset, const CMTime& time);

} // namespace zelvra
