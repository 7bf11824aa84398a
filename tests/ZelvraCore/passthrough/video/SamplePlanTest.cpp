// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/passthrough/CannotPassThrough.h"
#include "ZelvraCore/passthrough/video/SplicePlan.h"
#include "ZelvraCore/passthrough/video/StillPlan.h"
#include "tests/ZelvraCore/passthrough/video/TokenStream.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <random>

namespace zelvra::passthrough {
namespace {

using Kind = PlannedSample::Kind;
using Stream = test::TokenStream;
using test::groups;

/// What a viewer sees: "S3" for source picture of rank 3, "F1" for a freeze's picture, with the output tick.
std::multimap<std::int64_t, std::string> shown(const SamplePlan& plan, const SourcePictures& pictures) {
    std::multimap<std::int64_t, std::string> result;
    for (const PlannedSample& sample : plan.samples) {
        const std::int64_t time = sample.presentationTime - plan.editStart;
        if (sample.shown) {
            result.emplace(time, sample.kind == Kind::source
                                     ? "S" + std::to_string(pictures.rankOf(sample.index))
                                     : "F" + std::to_string(sample.index));
        } else {
            EXPECT_TRUE(time < 0 || time >= plan.editDuration || sample.kind == Kind::source ||
                        sample.kind == Kind::freeze)
                << "hidden, yet within";
        }
    }
    return result;
}

bool hasName(const auto& range, const std::string& name) {
    return std::any_of(range.first, range.second, [&](const auto& e) { return e.second == name; });
}

enum class Layout {
    stills,        ///< among the source's samples, which stay as they are
    clips,         ///< spliced in frame by frame
    splicedStills, ///< spliced in; a still is shown for the frames up to the next
};

/// Expects the laws of every plan: decode times start at 0 and increase, nothing is presented before it is
/// decoded, the first sample is a sync sample, every source sample keeps its order, and all within the edit
/// is what was asked for.
void expectLawful(const SamplePlan& plan, const SourcePictures& pictures, const VideoCut& cut,
                  std::int64_t frame, Layout layout) {
    ASSERT_FALSE(plan.samples.empty());
    EXPECT_EQ(plan.samples.front().decodeTime, 0);
    EXPECT_TRUE(plan.samples.front().sync);
    const PlannedSample* before = nullptr;
    std::int64_t lastIndex = -1;
    for (const PlannedSample& sample : plan.samples) {
        EXPECT_GE(sample.presentationTime, sample.decodeTime);
        if (before) {
            EXPECT_GT(sample.decodeTime, before->decodeTime);
            EXPECT_FALSE(!sample.shown && sample.sync);
        }
        before = &sample;
        if (sample.kind == Kind::source && layout == Layout::stills) {
            EXPECT_GT(std::int64_t{sample.index}, lastIndex) << "each once, in order";
            lastIndex = sample.index;
        }
    }
    const std::int64_t factor = plan.timescaleFactor;
    std::multimap<std::int64_t, std::string> expected;
    std::int64_t frozen = 0;
    std::uint32_t rank = cut.firstRank;
    auto play = [&](std::uint32_t end) {
        for (; rank < end; ++rank) {
            expected.emplace((cut.momentOf(rank, pictures) - cut.start) * factor + frozen,
                             "S" + std::to_string(rank));
        }
    };
    for (std::size_t k = 0; k < cut.freezes.size(); ++k) {
        play(cut.freezes[k].position);
        const std::int64_t start = (cut.momentOf(rank, pictures) - cut.start) * factor + frozen;
        if (const auto held = cut.freezes[k].heldTicks) {
            expected.emplace(start, "F" + std::to_string(k));
            frozen += *held * factor;
            continue;
        }
        for (std::int64_t f = 0; f < cut.freezes[k].frames; ++f) {
            expected.emplace(start + f * frame * factor, "F" + std::to_string(k));
        }
        frozen += cut.freezes[k].frames * frame * factor;
    }
    play(cut.endRank);
    EXPECT_EQ(plan.editDuration, (cut.end - cut.start) * factor + frozen);
    EXPECT_GE(plan.mediaDuration, plan.editStart + plan.editDuration);
    const auto actual = shown(plan, pictures);
    if (layout == Layout::clips) {
        EXPECT_EQ(actual, expected);
        return;
    }
    // A still is shown for the frames up to the next: all are at the right time, the first and the last frame
    // have one.
    std::map<std::string, std::pair<std::int64_t, std::int64_t>> ends;
    for (const auto& [time, name] : expected) {
        ends.try_emplace(name, time, time).first->second.second = time;
    }
    for (const auto& [time, name] : actual) {
        const auto range = expected.equal_range(time);
        EXPECT_TRUE(hasName(range, name)) << name << " at " << time;
    }
    for (const auto& [name, span] : ends) {
        for (const std::int64_t time : {span.first, span.second}) {
            const auto range = actual.equal_range(time);
            EXPECT_TRUE(hasName(range, name)) << name << " missing at " << time;
        }
    }
}

void expectSyncOnlyWhereDecodingCanStart(const StillPlan& plan, const Stream& stream) {
    for (std::size_t i = 1; i < plan.samples.samples.size(); ++i) {
        const PlannedSample& sample = plan.samples.samples[i];
        const bool intra = sample.kind == Kind::source ? stream.samples[sample.index].sync
                                                       : sample.kind == Kind::freeze &&
                                                             plan.sites.freezes[sample.index].pictureType ==
                                                                 StillSite::PictureType::idr;
        EXPECT_TRUE(intra || !sample.sync) << "sample " << i;
    }
}

/// Expects that pictures which cannot be hidden are over within ticks, after a copy of what was on screen.
void expectBriefRuns(const SamplePlan& plan, const Stream& stream, std::int64_t frame) {
    std::map<std::int64_t, const PlannedSample*> byTime;
    for (std::size_t i = 0; i < plan.samples.size(); ++i) {
        const PlannedSample& sample = plan.samples[i];
        EXPECT_TRUE(byTime.emplace(sample.presentationTime, &sample).second) << "two at one time";
        if (sample.startsRun) {
            EXPECT_TRUE(stream.traits()(sample.index).idr);
            EXPECT_TRUE(sample.shown || (i >= 2 && !plan.samples[i - 1].shown && !plan.samples[i - 2].shown &&
                                         plan.samples[i - 1].kind != Kind::source &&
                                         plan.samples[i - 2].kind != Kind::source));
        }
    }
    std::int64_t run = 0;
    for (auto here = byTime.begin(); std::next(here) != byTime.end(); ++here) {
        run = here->second->shown ? 0 : run + 1;
        if (run > 0) {
            EXPECT_EQ(std::next(here)->first, here->first + 1);
            EXPECT_LE(run, frame * plan.timescaleFactor / 128) << "behind one piece, before the next";
        }
    }
}

struct Cut {
    int start;
    int end;
    std::vector<std::pair<int, int>> freezes; ///< rank, frames
    std::vector<int> holds = {};              ///< ticks; after each one, a freeze of 9 frames
};

VideoCut cutOf(const Stream& stream, const Cut& cut, std::int64_t frame) {
    VideoCut result{.start = stream.offset + cut.start * frame,
                    .end = stream.offset + cut.end * frame,
                    .firstRank = static_cast<std::uint32_t>(cut.start),
                    .endRank = static_cast<std::uint32_t>(cut.end),
                    .freezes = {},
                    .frameDuration = CMTime(frame, 15360)};
    for (const auto& [rank, frames] : cut.freezes) {
        result.freezes.push_back({.position = static_cast<std::uint32_t>(rank), .frames = frames});
    }
    for (const int ticks : cut.holds) {
        result.freezes.push_back({.position = result.endRank, .heldTicks = ticks});
        result.freezes.push_back({.position = result.endRank, .frames = 9});
    }
    return result;
}

/// The samples as tokens: "S3" for the source's sample 3, "F0.1" for part 1 of freeze 0, small letters for
/// hidden ones.
std::string tokensOf(const SamplePlan& plan) {
    std::string text;
    for (const PlannedSample& sample : plan.samples) {
        const bool isSource = sample.kind == Kind::source;
        const char letter = isSource ? (sample.shown ? 'S' : 's') : (sample.shown ? 'F' : 'f');
        text += (text.empty() ? "" : " ") + std::string(1, letter) + std::to_string(sample.index) +
                (isSource ? "" : "." + std::to_string(sample.part));
    }
    return text;
}

TEST(SplicePlan, StoresTheGroupAgainToResumeWithinIt) {
    const Stream stream("I0 P1 P2 P3 I4 P5");
    const SourcePictures pictures(stream.samples);
    const VideoCut within = cutOf(stream, {0, 6, {{2, 2}}}, 512);
    EXPECT_EQ(tokensOf(planSplice(pictures, 15360, within, stream.rules(Hiding::neverShown))),
              "S0 S1 F0.0 F0.1 s0 s1 S2 S3 S4 S5");
    EXPECT_EQ(tokensOf(planSplice(pictures, 15360, within, stream.rules(Hiding::brief))),
              "S0 S1 F0.0 F0.1 f0.2 f0.3 s0 s1 S2 S3 S4 S5");
    const VideoCut atSync = cutOf(stream, {0, 6, {{4, 2}}}, 512);
    EXPECT_EQ(tokensOf(planSplice(pictures, 15360, atSync, stream.rules(Hiding::brief))),
              "S0 S1 S2 S3 F0.0 F0.1 S4 S5");
}

TEST(SamplePlan, ShowsExactlyWhatWasAskedForWhereverItIsCut) {
    std::mt19937 random(3);
    for (const bool open : {false, true}) {
        const Stream stream(groups(4, open));
        const SourcePictures pictures(stream.samples);
        const int count = static_cast<int>(pictures.count());
        std::vector<Cut> cuts{{0, count, {}},
                              {0, count, {{0, 3}, {count, 9}}},
                              {12, 24, {{12, 30}, {24, 30}}},
                              {0, count, {{count, 9}}, {1, 700, 20000}},
                              {12, 24, {{20, 5}, {24, 5}}, {51200}}};
        for (int i = 0; i < 400; ++i) {
            const int start = static_cast<int>(random() % (count - 1));
            const int end = start + 1 + static_cast<int>(random() % (count - start));
            Cut cut{start, end, {}};
            for (int rank = start; rank <= end; ++rank) {
                while (random() % 6 == 0) {
                    cut.freezes.emplace_back(rank, 1 + random() % 70);
                }
            }
            cuts.push_back(cut);
        }
        for (const Cut& asked : cuts) {
            const VideoCut cut = cutOf(stream, asked, 512);
            SCOPED_TRACE(testing::Message()
                         << (open ? "open " : "closed ") << asked.start << ".." << asked.end);
            const StillPlan stills = planStills(pictures, 15360, cut, stream.traits());
            expectLawful(stills.samples, pictures, cut, 512, Layout::stills);
            expectSyncOnlyWhereDecodingCanStart(stills, stream);
            for (const Hiding hiding : {Hiding::neverShown, Hiding::brief}) {
                try {
                    const SamplePlan splice = planSplice(pictures, 15360, cut, stream.rules(hiding));
                    const bool brief = hiding == Hiding::brief;
                    expectLawful(splice, pictures, cut, 512, brief ? Layout::splicedStills : Layout::clips);
                    if (brief) {
                        expectBriefRuns(splice, stream, 512);
                    }
                } catch (const CannotPassThrough& e) {
                    EXPECT_STREQ(e.what(), "more of it would have to be stored twice than once");
                }
            }
            if (HasFailure()) {
                return;
            }
        }
    }
}

} // namespace
} // namespace zelvra::passthrough
