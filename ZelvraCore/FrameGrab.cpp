#include "ZelvraCore/FrameGrab.h"

#include "ZelvraCore/media/ImageGenerator.h"
#include "ZelvraCore/records/ZVError.h"

namespace zelvra {

Image extractFrame(const std::filesystem::path& movie, const CMTime& time) {
    return extractFrame(Asset(movie), time);
}

Image extractFrame(const Asset& asset, const CMTime& time) {
    const FrameIndex& frames = asset.frames();
    if (frames.empty()) {
        throw ZVError::frameExtractionFailed();
    }
    const bool inside = time.isNumeric() && time >= CMTime::zero() && time < asset.duration();
    if (!inside) {
        throw MediaError(MediaError::Cause::outOfRange,
                         "there is no frame at that time of '" + asset.path().string() + "'");
    }
    return generateImage(asset, *frames.containing(time));
}

} // namespace zelvra
