// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/media/reel/PictureReel.h"
#include "ZelvraCore/FrameGrab.h"
#include "tests/support/NamedMovie.h"
#include "tests/support/NumberedPicture.h"
#include "tests/support/ReadImage.h"

#include <condition_variable>
#include <gtest/gtest.h>
#include <mutex>

namespace zelvra::test {
namespace {

using media::PictureReel;
using media::RawPicture;
using media::ReelAim;
using media::ReelMotion;

/// A reel with a movie in it, and the means to wait for it.
class OpenReel {
public:
    explicit OpenReel(const std::filesystem::path& movie) : asset_(std::make_shared<const Asset>(movie)) {
        reel_.open(asset_, asset_->syncTimes());
    }

    const Asset& asset() const { return *asset_; }
    PictureReel& reel() { return reel_; }

    void settleAt(const ReelAim& aim) {
        reel_.aim(aim);
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [&] { return reel_.isSettled(); });
    }

    std::optional<int> numberAt(std::size_t index) const {
        const auto picture = reel_.at(index);
        if (!picture) {
            return std::nullopt;
        }
        const RawPicture::Form& form = picture->form();
        return readPicture(picture->bytes().data(), form.width, form.height,
                           static_cast<std::size_t>(form.width))
            .number;
    }
    std::optional<int> numberGrabbed(std::size_t index) const {
        return numberIn(extractFrame(*asset_, asset_->frames().frame(index).time));
    }

private:
    std::shared_ptr<const Asset> asset_;
    std::mutex mutex_;
    std::condition_variable changed_;
    PictureReel reel_{[this] {
        const std::scoped_lock lock(mutex_);
        changed_.notify_all();
    }};
};

class PictureReels : public testing::TestWithParam<NamedMovie> {};

TEST_P(PictureReels, HaveTheGrabsPicturesAroundThePlayhead) {
    OpenReel open(movieFile(GetParam().movie));
    const std::size_t last = open.asset().frames().count() - 1;
    for (const std::size_t index : {last / 2, last, std::size_t{1}, last / 3}) {
        open.settleAt({index});
        for (const std::size_t near : {index, index - 1, std::min(index + 2, last)}) {
            EXPECT_TRUE(open.numberAt(near)) << near;
            EXPECT_EQ(open.numberAt(near), open.numberGrabbed(near)) << near;
        }
    }
    open.settleAt({last / 2, ReelMotion::dragged});
    EXPECT_EQ(open.numberAt(*open.reel().nearest(last / 2)),
              open.numberGrabbed(*open.reel().nearest(last / 2)));
}

CMTimeRange stretch(int from, int to) {
    return CMTimeRange::fromStartToEnd({from, 30}, {to, 30});
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, PictureReels,
    testing::Values(NamedMovie{"plain", {}}, NamedMovie{"one group", {.frames = 300, .gop = 300}},
                    NamedMovie{"trimmed", {.frames = 90, .shown = {stretch(17, 70)}}},
                    NamedMovie{"two pieces", {.frames = 90, .shown = {stretch(5, 20), stretch(47, 80)}}},
                    NamedMovie{"h264 open", {.frames = 90, .gop = 15, .openGop = true}},
                    NamedMovie{"hevc open", {.codec = MovieCodec::hevc, .gop = 15, .openGop = true}},
                    NamedMovie{"only sync samples", {.gop = 1, .bFrames = 0}},
                    NamedMovie{"vp9", {.codec = MovieCodec::vp9, .container = "mp4"}}));

TEST(PictureReels, GiveUpTheirPicturesOnRequest) {
    OpenReel open(movieFile({}));
    open.settleAt({30});
    EXPECT_TRUE(open.reel().nearest(30));
    open.reel().clear();
    EXPECT_FALSE(open.reel().nearest(30));
    open.settleAt({3});
    EXPECT_EQ(open.numberAt(3), 3);
    open.reel().open(nullptr, {});
    EXPECT_FALSE(open.reel().nearest(3));
}

} // namespace
} // namespace zelvra::test
