// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/media/Asset.h"
#include "ZelvraCore/media/reel/RawPicture.h"
#include "ZelvraCore/media/reel/ReelPlan.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace zelvra::media {

/// Decoded pictures of one movie around a playhead, so that a step from picture to picture costs no decoding.
/// A thread of its own decodes what an aim wants (see ReelPlan), then rests: no processor time, no decoder.
///
/// Each picture is the one that `generateImage` gives at the same place: one that cannot be decoded is
/// replaced in the same way.
///
/// While the playhead rests, pictures of 160 MiB are kept, while it moves 288 MiB; at least eight pictures.
/// All operations may be called from any thread and wait for no decoding.
class PictureReel {
public:
    /// `changed` is called from any thread when a picture has come, and when all is there. It must not call
    /// anything here.
    explicit PictureReel(std::function<void()> changed);
    PictureReel(const PictureReel&) = delete;
    PictureReel& operator=(const PictureReel&) = delete;
    ~PictureReel();

    /// Gives up everything and continues with that movie; null: with none. `syncTimes` are the asset's.
    void open(std::shared_ptr<const Asset> asset, std::vector<std::int64_t> syncTimes);

    /// What to decode from now on.
    void aim(const ReelAim& aim);
    /// Gives up all pictures, and decodes none until the next aim.
    void clear();

    /// Null while the picture is not there, and if none can be decoded.
    std::shared_ptr<const RawPicture> at(std::size_t index) const;
    /// Whether it is known that there is no such picture.
    bool isMissing(std::size_t index) const;
    /// The picture closest to that one.
    std::optional<std::size_t> nearest(std::size_t index) const;
    /// Whether everything that the aim wants is there.
    bool isSettled() const;

private:
    class Worker;
    std::unique_ptr<Worker> worker_;
};

} // namespace zelvra::media
