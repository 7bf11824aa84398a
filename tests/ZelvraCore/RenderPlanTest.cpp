// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/RenderPlan.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <regex>

namespace zelvra {
namespace {

using testing::ElementsAre;
using Kind = TimelineSegment::Kind;

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

/// "source 3+2@4": two seconds of the source from 3 s, at 4 s of the output.
std::string text(const TimelineSegment& s) {
    auto number = [](CMTime time) { return std::to_string(static_cast<int>(time.seconds())); };
    return s.kind == Kind::source
               ? "source " + number(s.sourceStart) + "+" + number(s.duration) + "@" + number(s.outputStart)
               : "freeze" + std::to_string(s.highlightIndex) + " " + number(s.duration) + "@" +
                     number(s.outputStart);
}

std::vector<std::string> texts(const Timeline& timeline) {
    std::vector<std::string> result;
    for (const TimelineSegment& segment : timeline.segments) {
        result.push_back(text(segment));
    }
    return result;
}

std::vector<CMTime> durations(const RenderPlan& plan) {
    std::vector<CMTime> result;
    for (const Highlight& highlight : plan.highlights) {
        result.push_back(highlight.duration);
    }
    return result;
}

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
        bool turned;
    };
    SourceInfo unknown = source("avc1");
    unknown.videoCodec.reset();
    const Row rows[] = {
        {source("avc1"), VideoCodec::h264, true, false},
        {source("hvc1"), VideoCodec::hevc, true, false},
        {source("hev1"), VideoCodec::h264, false, false},
        {source("apcn"), VideoCodec::h264, false, false},
        {unknown, VideoCodec::h264, false, false},
        {source("avc1", quarterTurn), VideoCodec::h264, false, true},
        {source("hvc1", quarterTurn), VideoCodec::hevc, false, true},
    };
    for (const Row& row : rows) {
        const RenderPlan plan = planRender({}, {}, true, row.info);
        EXPECT_EQ(plan.freezeCodec, row.codec);
        EXPECT_EQ(plan.passthrough, row.passthrough);
        EXPECT_EQ(plan.needsTransformInstructions, row.turned);
    }
}

TEST(RenderPlan, PlaysFreezesAndResumesInOrder) {
    const std::vector<Highlight> given{highlightAt(seconds(5), CMTime(2, 1)), highlightAt(seconds(12)),
                                       highlightAt(seconds(3))};
    const RenderPlan plan = planRender(given, CMTimeRange{CMTime::zero(), seconds(10)}, true, source("avc1"));
    const Timeline timeline = layoutTimeline(plan, durations(plan));
    EXPECT_THAT(texts(timeline),
                ElementsAre("source 0+3@0", "freeze0 1@3", "source 3+2@4", "freeze1 2@6", "source 5+5@8"));
    EXPECT_EQ(timeline.total, CMTime(13, 1));
}

TEST(RenderPlan, CountsBothEndsOfTheRangeAndKeepsTheOrderOfEqualMoments) {
    const std::vector<Highlight> given{highlightAt(CMTime(8, 1), CMTime(3, 1)),
                                       highlightAt(seconds(8), CMTime(4, 1)), highlightAt(seconds(10)),
                                       highlightAt(seconds(2)), highlightAt(seconds(1.9))};
    const RenderPlan plan = planRender(given, CMTimeRange{seconds(2), seconds(8)}, true, source("avc1"));
    EXPECT_THAT(texts(layoutTimeline(plan, durations(plan))),
                ElementsAre("freeze0 1@0", "source 2+6@1", "freeze1 3@7", "freeze2 4@10", "source 8+2@14",
                            "freeze3 1@16"));
}

TEST(RenderPlan, CoversARangeWithoutHighlightsByOnePiece) {
    EXPECT_THAT(texts(layoutTimeline(
                    planRender({}, CMTimeRange{seconds(10), seconds(15)}, true, source("avc1")), {})),
                ElementsAre("source 10+15@0"));
    EXPECT_THAT(texts(layoutTimeline(planRender({}, {}, false, source("avc1")), {})),
                ElementsAre("source 0+20@0"));
    const CMTimeRange empty{seconds(3), CMTime::zero()};
    EXPECT_TRUE(layoutTimeline(planRender({}, empty, true, source("avc1")), {}).segments.empty());
}

TEST(RenderPlan, TurnsEverythingButTheFreezes) {
    const SourceInfo info = source("avc1", quarterTurn);
    const std::vector<Highlight> given{highlightAt(seconds(3)), highlightAt(seconds(5), CMTime(2, 1))};
    const RenderPlan plan = planRender(given, CMTimeRange{CMTime::zero(), seconds(10)}, true, info);
    std::string turns;
    CMTime at = CMTime::zero();
    for (const TransformInstruction& i : transformInstructions(layoutTimeline(plan, durations(plan)), info)) {
        EXPECT_EQ(i.range.start, at);
        at = i.range.end();
        turns += i.transform.isIdentity() ? 'I' : 'T';
    }
    EXPECT_EQ(turns, "TITIT");
    EXPECT_EQ(at, CMTime(13, 1));
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
