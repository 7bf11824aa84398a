// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

namespace zelvra::media {

/// How the playhead moves: where the pictures are that will be wanted next.
enum class ReelMotion { resting, backward, forward, dragged };

/// Which pictures are wanted. All counts are in presentation order.
struct ReelAim {
    std::size_t index = 0; ///< wanted first
    ReelMotion motion = ReelMotion::resting;
    std::size_t stride = 1; ///< beside `index`, only every so many pictures are wanted
    bool operator==(const ReelAim&) const = default;
};

/// Pictures to be decoded in one go: `first`, `last`, and every multiple of `stride` between them.
struct ReelRun {
    std::size_t first = 0;
    std::size_t last = 0;
    std::size_t stride = 1;

    bool wants(std::size_t index) const {
        return index == first || index == last || (index > first && index < last && index % stride == 0);
    }
    bool operator==(const ReelRun&) const = default;
};

/// The decisions of a PictureReel, without its pictures: what to decode next, and what to give up.
///
/// Pictures can only be decoded from the start of their group on. So whatever is decoded for a picture is
/// used: a stretch before it is kept at the same time, and the next stretch begins long before it is needed.
class ReelPlan {
public:
    using IsKept = std::function<bool(std::size_t)>;

    ReelPlan() = default;
    /// `groupStarts`: the pictures from which decoding can start, in order; the first is 0.
    ReelPlan(std::vector<std::size_t> groupStarts, std::size_t pictureCount);

    /// How many pictures may be kept; at least 8.
    void setCapacity(std::size_t pictures);

    std::size_t groupStart(std::size_t index) const;

    /// What to decode next; nullopt if enough is kept.
    std::optional<ReelRun> nextRun(const ReelAim& aim, const IsKept& isKept) const;

    /// Whether a run that has come to `position` (nullopt: to none yet) still gives what is wanted soonest.
    bool isUseful(const ReelRun& run, std::optional<std::size_t> position, const ReelAim& aim,
                  const IsKept& isKept) const;

    /// Of two kept pictures, whether `index` is given up before `other`.
    bool givesUpFirst(std::size_t index, std::size_t other, const ReelAim& aim) const;
    std::size_t capacity() const { return capacity_; }

private:
    struct Window {
        std::size_t first = 0;
        std::size_t last = 0;
        bool contains(std::size_t index) const { return index >= first && index <= last; }
    };

    std::size_t groupLength(std::size_t start) const;
    std::size_t dragStride(std::size_t index) const;
    /// The picture that a drag to `index` is content with.
    std::size_t dragStop(std::size_t index) const;
    Window windowOf(const ReelAim& aim) const;
    std::optional<ReelRun> runBefore(const ReelAim& aim, const IsKept& isKept) const;
    std::optional<ReelRun> runAfter(const ReelAim& aim, const IsKept& isKept) const;
    std::size_t startOfRun(std::size_t last, const Window& window) const;

    std::vector<std::size_t> groupStarts_{0};
    std::size_t count_ = 0;
    std::size_t capacity_ = 8;
};

} // namespace zelvra::media
