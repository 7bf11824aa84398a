// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/media/reencode/PictureSchedule.h"
#include "ZelvraCore/records/ZVError.h"

#include <gtest/gtest.h>

namespace zelvra {
namespace {

using Pictures = PictureSchedule::Run;

/// Ten pictures of a tenth of a second, then nothing until 1.5 s, when the sound ends.
const FrameIndex tenPictures({0, 10, 20, 30, 40, 50, 60, 70, 80, 90}, 100, 100);
constexpr CMTime movieEnd{150, 100};

Composition composition(CMTime start, CMTime end, std::vector<Composition::Freeze> freezes = {}) {
    return {start, end, std::move(freezes), {1, 20}};
}

std::vector<Pictures> runsOf(const Composition& shown) {
    return schedulePictures(shown, tenPictures, movieEnd).runs;
}

/// "0+30" for sound from 0 for 30 hundredths, "~10" for silence.
std::string soundOf(const Composition& shown) {
    std::string text;
    for (const SoundPiece& piece : schedulePictures(shown, tenPictures, movieEnd).sound) {
        const auto ticks = [](CMTime time) { return std::to_string(time.converted(100).value); };
        text += piece.kind == SoundPiece::Kind::silence ? "~" : ticks(piece.sourceStart) + "+";
        text += ticks(piece.duration) + " ";
    }
    return text;
}

TEST(PictureSchedule, FreezesAPictureWhenItAppearsAndGoesOnWithIt) {
    const Composition shown = composition({2, 10}, {5, 10}, {{{35, 100}, 4}});
    EXPECT_EQ(runsOf(shown), (std::vector<Pictures>{
                                 {0, 2, 1, false}, {10, 0, 4, true}, {30, 3, 1, false}, {40, 4, 1, false}}));
    EXPECT_EQ(soundOf(shown), "20+10 ~20 30+20 ");
    EXPECT_EQ(schedulePictures(shown, tenPictures, movieEnd).end, 50);
}

TEST(PictureSchedule, CutsBetweenPicturesTimes) {
    const Composition shown = composition({25, 100}, {42, 100}, {{{25, 100}, 2}, {{28, 100}, 1}});
    EXPECT_EQ(
        runsOf(shown),
        (std::vector<Pictures>{
            {0, 0, 2, true}, {10, 1, 1, true}, {15, 2, 1, false}, {20, 3, 1, false}, {30, 4, 1, false}}));
    EXPECT_EQ(soundOf(shown), "~10 ~5 25+17 ");
}

TEST(PictureSchedule, FreezesAfterAllMotionAtTheRangesEnd) {
    EXPECT_EQ(runsOf(composition({8, 10}, {9, 10}, {{{9, 10}, 1}})),
              (std::vector<Pictures>{{0, 8, 1, false}, {10, 0, 1, true}}));
    const Composition pastLast = composition({9, 10}, {2, 1}, {{{14, 10}, 2}});
    EXPECT_EQ(runsOf(pastLast), (std::vector<Pictures>{{0, 9, 1, false}, {60, 0, 2, true}}));
    EXPECT_EQ(soundOf(pastLast), "90+60 ~10 ");
}

TEST(PictureSchedule, LetsSoundOutlastThePictures) {
    const Composition shown = composition(CMTime(-1, 1), {9, 1});
    EXPECT_EQ(schedulePictures(shown, tenPictures, movieEnd).end, 100);
    EXPECT_EQ(soundOf(shown), "0+150 ");
}

TEST(PictureSchedule, HoldsOnlyAFreezeWhereTheRangeIsEmpty) {
    EXPECT_EQ(runsOf(composition({3, 10}, {3, 10}, {{{3, 10}, 5}})),
              (std::vector<Pictures>{{0, 0, 5, true}}));
    EXPECT_THROW(runsOf(composition({3, 10}, {3, 10})), MediaError);
    EXPECT_THROW(runsOf(composition(CMTime::invalid(), {3, 10})), MediaError);
    EXPECT_THROW(schedulePictures(composition({0, 1}, {1, 1}), {}, movieEnd), MediaError);
}

TEST(PictureSchedule, TakesATimescaleThatHoldsBothRates) {
    Composition shown = composition({0, 1}, {1, 1}, {{{2, 10}, 3}});
    shown.frameDuration = {1001, 30000};
    const PictureSchedule schedule = schedulePictures(shown, tenPictures, movieEnd);
    EXPECT_EQ(schedule.timescale, 30000);
    EXPECT_EQ(schedule.freezeStep, 1001);
    EXPECT_EQ(schedule.runs.at(3), (Pictures{6000 + 3 * 1001, 2, 1, false}));
    shown.frameDuration = {1, 999'999'937}; // a prime: no common timescale fits
    EXPECT_EQ(schedulePictures(shown, tenPictures, movieEnd).freezeStep, 1);
}

} // namespace
} // namespace zelvra
