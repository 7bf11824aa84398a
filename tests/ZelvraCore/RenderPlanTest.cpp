// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/RenderPlan.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <regex>

namespace zelvra {
namespace {

using testing::ElementsAre;

CMTime seconds(double value) {
    return CMTime::fromSeconds(value, 600);
}

Highlight highlightAt(CMTime timestamp, CMTime duration = CMTime(1, 1)) {
    return {Uuid::random(), timestamp, duration, {}};
}

SourceInfo source(const char (&codec)[5], AffineTransform transform = {}) {
    SourceInfo info;
    info.duration = CMTime(20, 1);
    info.frameDuration = CMTime(1, 30);
    info.videoCodec = fourCharCode(codec);
    info.preferredTransform = transform;
    return info;
}

const AffineTransform quarterTurn{0, 1, -1, 0, 1080, 0};

TEST(RenderPlan, CopiesOnlyWhatIsAskedForWholeAndUntouched) {
    const SourceInfo info = source("avc1");
    const std::vector<Highlight> outside{highlightAt(CMTime(99, 1))};
    EXPECT_TRUE(planRender({}, {}, true, info).copyOnly);
    EXPECT_FALSE(planRender({}, {}, false, info).copyOnly);
    EXPECT_FALSE(planRender({}, CMTimeRange{CMTime::zero(), info.duration}, true, info).copyOnly);
    EXPECT_FALSE(planRender(outside, {}, true, info).copyOnly) << "decided before highlights are filtered";
}

TEST(RenderPlan, ChoosesCodecAndPassthroughByTheSource) {
    struct Row {
        SourceInfo info;
        VideoCodec codec;
        bool passthrough;
    };
    SourceInfo unknown = source("avc1");
    unknown.videoCodec.reset();
    const Row rows[] = {
        {source("avc1"), VideoCodec::h264, true},
        {source("hvc1"), VideoCodec::hevc, true},
        {source("hev1"), VideoCodec::h264, false},
        {source("apcn"), VideoCodec::h264, false},
        {unknown, VideoCodec::h264, false},
        {source("avc1", quarterTurn), VideoCodec::h264, false},
        {source("hvc1", quarterTurn), VideoCodec::hevc, false},
    };
    for (const Row& row : rows) {
        const RenderPlan plan = planRender({}, {}, true, row.info);
        EXPECT_EQ(plan.freezeCodec, row.codec);
        EXPECT_EQ(plan.passthrough, row.passthrough);
    }
}

TEST(RenderPlan, TakesHighlightsOfTheRangeInTheOrderOfTheirMoments) {
    const std::vector<Highlight> given{highlightAt(CMTime(8, 1)), highlightAt(seconds(8)),
                                       highlightAt(seconds(8.1)), highlightAt(seconds(2)),
                                       highlightAt(seconds(1.9))};
    const RenderPlan plan =
        planRender(given, CMTimeRange::fromStartToEnd(seconds(2), seconds(8)), true, source("avc1"));
    EXPECT_THAT(plan.highlights, ElementsAre(testing::Field(&Highlight::id, given[3].id),
                                             testing::Field(&Highlight::id, given[0].id),
                                             testing::Field(&Highlight::id, given[1].id)));
}

/// Ten pictures of a tenth of a second each. Ticks are hundredths.
const FrameIndex tenPictures({0, 10, 20, 30, 40, 50, 60, 70, 80, 90}, 100, 100);

struct TimelineCase {
    const char* name;
    int start;
    int end;
    std::vector<std::pair<int, int>> freezes; ///< when, and how many frames of 5 ticks
    std::string pictures;                     ///< "2-5 25+17@15": pictures 2, 3 and 4 from 25 on for 17
                                              ///< ticks, at 15 in the output; "F0 20@10": a freeze of 20
    std::string sound;                        ///< "25+17": of the source; "~20": silence
    FrameIndex frames = tenPictures;
    int movieEnd = 150; ///< sound plays until then
};

std::ostream& operator<<(std::ostream& stream, const TimelineCase& c) {
    return stream << c.name;
}

Timeline timelineOf(const TimelineCase& c) {
    SourceInfo info = source("avc1");
    info.duration = CMTime(c.movieEnd, 100);
    info.frameDuration = CMTime(1, 20);
    std::vector<Highlight> highlights;
    for (const auto& [moment, count] : c.freezes) {
        highlights.push_back(highlightAt(CMTime(moment, 100), CMTime(count, 20)));
    }
    const auto range = CMTimeRange::fromStartToEnd(CMTime(c.start, 100), CMTime(c.end, 100));
    return layoutTimeline(planRender(highlights, range, true, info), info, c.frames);
}

std::string ticks(const CMTime& time) {
    return std::to_string(time.converted(100).value);
}

std::string textOf(const std::vector<TimelineSegment>& segments) {
    std::string text;
    for (const TimelineSegment& s : segments) {
        text += text.empty() ? "" : ", ";
        text += s.kind == TimelineSegment::Kind::freeze
                    ? "F" + std::to_string(s.highlightIndex) + " "
                    : std::to_string(s.firstPicture) + "-" + std::to_string(s.endPicture) + " " +
                          ticks(s.sourceStart) + "+";
        text += ticks(s.duration) + "@" + ticks(s.outputStart);
    }
    return text;
}

std::string textOf(const std::vector<SoundPiece>& pieces) {
    std::string text;
    for (const SoundPiece& piece : pieces) {
        text += text.empty() ? "" : ", ";
        text += piece.kind == SoundPiece::Kind::silence ? "~" : ticks(piece.sourceStart) + "+";
        text += ticks(piece.duration);
    }
    return text;
}

class TimelineOf : public testing::TestWithParam<TimelineCase> {};

TEST_P(TimelineOf, TheMoments) {
    const Timeline timeline = timelineOf(GetParam());
    EXPECT_EQ(textOf(timeline.segments), GetParam().pictures);
    EXPECT_EQ(textOf(timeline.sound), GetParam().sound);
    CMTime end = CMTime::zero();
    for (const TimelineSegment& segment : timeline.segments) {
        EXPECT_EQ(segment.outputStart, end) << "without a gap";
        end += segment.duration;
    }
    EXPECT_EQ(timeline.total, end);
}

/// Some cameras write movies with one tick for each picture.
TEST(Timeline, FreezesOnThePictureOfAMomentAndLosesNoneOfTheRange) {
    const FrameIndex frames({0, 1, 2, 3, 4, 5, 6, 7, 8, 9}, 10, 10);
    SourceInfo info = source("avc1");
    info.duration = CMTime(1, 1);
    info.frameDuration = CMTime(1, 10);
    const auto range = CMTimeRange::fromStartToEnd(CMTime(16, 100), CMTime(84, 100));
    const std::vector<Highlight> highlights{highlightAt(CMTime(46, 100), CMTime(1, 1))};
    const Timeline timeline = layoutTimeline(planRender(highlights, range, true, info), info, frames);
    ASSERT_EQ(timeline.segments.size(), 3U);
    EXPECT_EQ(timeline.segments[0].firstPicture, 1U);
    EXPECT_EQ(timeline.segments[0].endPicture, 4U);
    EXPECT_EQ(timeline.segments[2].firstPicture, 4U);
    EXPECT_EQ(timeline.segments[2].endPicture, 9U);
    EXPECT_EQ(timeline.sound[0].sourceStart, timeline.segments[0].sourceStart) << "no drift";
}

INSTANTIATE_TEST_SUITE_P(
    FreezesAmongPictures, TimelineOf,
    testing::Values(
        TimelineCase{"when_the_picture_appears",
                     20,
                     50,
                     {{35, 4}},
                     "2-3 20+10@0, F0 20@10, 3-5 30+20@30",
                     "20+10, ~20, 30+20"},
        TimelineCase{"several_in_order",
                     0,
                     100,
                     {{50, 4}, {30, 2}},
                     "0-3 0+30@0, F0 10@30, 3-5 30+20@40, F1 20@60, 5-10 50+50@80",
                     "0+30, ~10, 30+20, ~20, 50+50"},
        TimelineCase{"several_at_one_moment",
                     0,
                     80,
                     {{42, 1}, {40, 2}, {49, 3}},
                     "0-4 0+40@0, F0 10@40, F1 5@50, F2 15@55, 4-8 40+40@70",
                     "0+40, ~10, ~5, ~15, 40+40"},
        TimelineCase{"at_the_start_within_a_picture",
                     25,
                     42,
                     {{25, 2}, {28, 1}},
                     "F0 10@0, F1 5@10, 2-5 25+17@15",
                     "~10, ~5, 25+17"},
        TimelineCase{"at_the_end_of_the_range", 80, 90, {{90, 1}}, "8-9 80+10@0, F0 5@10", "80+10, ~5"},
        TimelineCase{"at_the_end_within_a_picture", 80, 95, {{95, 1}}, "8-10 80+15@0, F0 5@15", "80+15, ~5"},
        TimelineCase{"at_the_end_of_the_movie",
                     70,
                     100,
                     {{100, 1}},
                     "7-10 70+30@0, F0 5@30",
                     "70+30, ~5",
                     tenPictures,
                     100},
        TimelineCase{"past_the_end_of_the_movie",
                     70,
                     200,
                     {{180, 1}},
                     "7-10 70+30@0, F0 5@30",
                     "70+30, ~5",
                     tenPictures,
                     100},
        TimelineCase{"alone_in_an_empty_range", 30, 30, {{30, 5}}, "F0 25@0", "~25"},
        TimelineCase{"of_variable_rate",
                     0,
                     90,
                     {{39, 1}, {40, 1}},
                     "0-1 0+7@0, F0 5@7, 1-2 7+33@12, F1 5@45, 2-4 40+50@50",
                     "0+7, ~5, 7+33, ~5, 40+50",
                     FrameIndex({0, 7, 40, 41, 90}, 100, 100),
                     100}),
    [](const auto& param) { return param.param.name; });

INSTANTIATE_TEST_SUITE_P(
    ClampsTheRange, TimelineOf,
    testing::Values(
        TimelineCase{"beyond_both_ends", -100, 900, {}, "0-10 0+100@0", "0+100", tenPictures, 100},
        TimelineCase{"before_the_first_picture",
                     0,
                     50,
                     {{10, 2}, {35, 1}},
                     "F0 10@0, 0-2 0+34@10, F1 5@44, 2-5 34+16@49",
                     "~10, 0+34, ~5, 34+16",
                     FrameIndex({20, 27, 34, 41, 48}, 60, 100),
                     60},
        TimelineCase{"to_nothing", 30, 30, {}, "", ""},
        TimelineCase{"of_no_pictures", 0, 50, {{10, 1}}, "", "", FrameIndex()}),
    [](const auto& param) { return param.param.name; });

INSTANTIATE_TEST_SUITE_P(
    SoundOutlastsThePictures, TimelineOf,
    testing::Values(
        TimelineCase{"without_a_freeze",
                     50,
                     150,
                     {{60, 1}},
                     "5-6 50+10@0, F0 5@10, 6-10 60+40@15",
                     "50+10, ~5, 60+90"},
        TimelineCase{"freeze_in_the_tail",
                     0,
                     150,
                     {{120, 2}},
                     "0-10 0+120@0, F0 10@120, 9-10 120+30@130",
                     "0+120, ~10, 120+30"},
        TimelineCase{"freeze_where_the_tail_begins",
                     0,
                     150,
                     {{100, 2}},
                     "0-10 0+100@0, F0 10@100, 9-10 100+50@110",
                     "0+100, ~10, 100+50"},
        TimelineCase{
            "freeze_where_the_tail_ends", 0, 150, {{150, 2}}, "0-10 0+150@0, F0 10@150", "0+150, ~10"},
        TimelineCase{"several_freezes",
                     80,
                     150,
                     {{95, 1}, {120, 2}, {120, 1}, {140, 1}, {150, 3}},
                     "8-9 80+10@0, F0 5@10, 9-10 90+30@15, F1 10@45, F2 5@55, 9-10 120+20@60, F3 5@80, "
                     "9-10 140+10@85, F4 15@95",
                     "80+10, ~5, 90+30, ~10, ~5, 120+20, ~5, 140+10, ~15"},
        TimelineCase{"range_ends_in_the_tail",
                     90,
                     130,
                     {{120, 1}},
                     "9-10 90+30@0, F0 5@30, 9-10 120+10@35",
                     "90+30, ~5, 120+10"},
        TimelineCase{"range_starts_in_the_tail",
                     110,
                     150,
                     {{120, 1}},
                     "9-10 110+10@0, F0 5@10, 9-10 120+30@15",
                     "110+10, ~5, 120+30"},
        TimelineCase{"range_within_the_tail_without_a_freeze", 110, 150, {}, "", "110+40"}),
    [](const auto& param) { return param.param.name; });

TEST(Timeline, CutsPicturesOnTheirTicksAndSoundExactly) {
    SourceInfo info = source("avc1");
    info.duration = CMTime(1, 1);
    const auto range = CMTimeRange::fromStartToEnd(CMTime::zero(), CMTime(424, 1000));
    const Timeline timeline = layoutTimeline(planRender({}, range, true, info), info, tenPictures);
    EXPECT_EQ(timeline.total, CMTime(43, 100));
    EXPECT_EQ(timeline.sound.back().duration, CMTime(424, 1000));
}

TEST(Timeline, IsEmptyForARangeThatIsNoNumber) {
    const CMTimeRange range{CMTime::zero(), CMTime::positiveInfinity()};
    EXPECT_TRUE(layoutTimeline(planRender({}, range, true, source("avc1")), source("avc1"), tenPictures)
                    .segments.empty());
}

TEST(RenderPlan, CountsWholeFramesOfAFreeze) {
    EXPECT_EQ(freezeFrameCount(CMTime(2, 1), CMTime(1, 30)), 60);
    EXPECT_EQ(freezeFrameCount(CMTime(2, 1), CMTime(1001, 30000)), 60);
    EXPECT_EQ(freezeFrameCount(seconds(3), CMTime(1, 25)), 75);
    EXPECT_EQ(freezeFrameCount(CMTime(1, 100), CMTime(1, 25)), 1);
}

TEST(RenderPlan, ReportsProgressInTwoHalves) {
    EXPECT_DOUBLE_EQ(freezeProgress(1, 4), 0.125);
    EXPECT_DOUBLE_EQ(freezeProgress(4, 4), 0.5);
    EXPECT_DOUBLE_EQ(exportProgress(0.5), 0.75);
}

TEST(RenderPlan, NamesFreezeClipsApart) {
    const std::string name = freezeClipName().string();
    EXPECT_TRUE(std::regex_match(name, std::regex("zv_freeze_[0-9A-F-]{36}\\.mov"))) << name;
    EXPECT_NE(name, freezeClipName().string());
}

} // namespace
} // namespace zelvra
