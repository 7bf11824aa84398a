// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/FrameGrab.h"

#include "ZelvraCore/media/grab/ImageGenerator.h"
#include "ZelvraCore/records/MediaError.h"

namespace zelvra {

namespace {

/// Reads the whole movie's duration, which takes all tables, only if the pictures end before `time`.
bool isInside(const Asset& asset, const CMTime& time) {
    return time.isNumeric() && time >= CMTime::zero() &&
           (time < asset.frames().end() || time < asset.duration());
}

} // namespace

Image extractFrame(const std::filesystem::path& movie, const CMTime& time) {
    return extractFrame(Asset(movie), time);
}

Image extractFrame(const Asset& asset, const CMTime& time) {
    const FrameIndex& frames = asset.frames();
    if (!isInside(asset, time)) {
        throw MediaError(MediaError::Cause::outOfRange,
                         "there is no frame at that time of '" + asset.path().string() + "'");
    }
    return media::generateImage(asset, *frames.containing(time));
}

Image extractFrameOnScreen(const Asset& asset, const CMTime& time) {
    const FrameIndex& frames = asset.frames();
    const bool atTheEnd = time >= frames.end() && time == asset.duration();
    return extractFrame(asset, atTheEnd ? frames.last().time : time);
}

} // namespace zelvra
