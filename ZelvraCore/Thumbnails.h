// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/media/Asset.h"
#include "ZelvraCore/media/Image.h"
#include "ZelvraCore/records/CMTime.h"

#include <cstddef>
#include <functional>
#include <stop_token>

namespace zelvra {

/// Small upright pictures of a movie for a film strip. Made for speed, not exactness: of each stretch of the
/// movie the sync sample at or before its middle is shown, so that one picture is decoded for each thumbnail
/// and none for its neighbours. The exact picture of a moment is extractFrame's.

struct ThumbnailRequest {
    int count = 0;  ///< thumbnails, each for an equal share of the movie's duration
    int height = 0; ///< of the upright thumbnail in pixels; its width follows from the movie's shape
};

/// Takes the thumbnail of stretch `index`, 0 to count - 1 in order.
using ThumbnailReceiver = std::function<void(std::size_t index, const Image& thumbnail)>;

/// Makes all thumbnails and passes each to `receive` as soon as it is ready, on the calling thread. A stretch
/// whose sync sample cannot be decoded gets the previous thumbnail, or none. Returns early, without an error,
/// if `stop` is requested. Makes nothing for a count or height below 1.
///
/// Blocks; any thread. Throws MediaError, ZVError::noVideoTrack, and what `receive` throws.
void makeThumbnails(const Asset& asset, const ThumbnailRequest& request, const ThumbnailReceiver& receive,
                    const std::stop_token& stop = {});

} // namespace zelvra
