// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/media/Asset.h"
#include "ZelvraCore/media/Image.h"

namespace zelvra::media {

/// Decodes one frame of a movie, given by its place in the movie's frame index: upright, in square pixels, in
/// full resolution, with the decoded planes kept beside (see Image).
///
/// Reads and decodes from the sync sample before the frame up to the frame and no further; on the way,
/// pictures that no other one refers to are not decoded. A picture that cannot be decoded, because the stream
/// is damaged or was cut before it, is replaced as on a player's screen: by the last one before it that can,
/// else by the first after it.
///
/// Any thread, several at once on one asset. Throws MediaError (corrupt if no picture at all can be decoded,
/// unsupported, unreadable), ZVError::noVideoTrack.
Image generateImage(const Asset& asset, const FrameIndex::Frame& frame);

} // namespace zelvra::media
