// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/passthrough/sound/SoundPlan.h"
#include "ZelvraCore/passthrough/CannotPassThrough.h"
#include "ZelvraCore/passthrough/sound/SoundSamples.h"
#include "tests/support/SoundFixtures.h"

#include <cstdlib>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <numeric>

namespace zelvra::passthrough {
namespace {

using test::play;
using test::silence;
using Kind = SoundRun::Kind;
using Pieces = std::vector<SoundPiece>;

constexpr int rate = 48000;
constexpr std::int64_t packet = 1024;

CMTime seconds(double value) {
    return CMTime::fromSeconds(value, rate);
}

isobmff::Track aacTrack(int packets) {
    isobmff::Track track;
    track.timescale = rate;
    for (int i = 0; i < packets; ++i) {
        isobmff::Sample sample;
        sample.decodeTime = i * packet;
        sample.duration = packet;
        sample.offset = 1000u + static_cast<unsigned>(i) * 10u;
        sample.size = 10;
        track.samples.push_back(sample);
    }
    return track;
}

/// AAC whose first packet is priming.
SoundSource aacSource(const isobmff::Track& track) {
    const auto length = static_cast<std::int64_t>(track.samples.size() - 1) * packet;
    return {rate, SoundPackets(track), {0, length, packet}, rate, packet, 1};
}

/// Expects what is true for every plan: no gap from 0 on, source packets in order and each once.
void expectGapless(const SoundPlan& plan) {
    std::int64_t time = 0;
    std::optional<std::uint64_t> next;
    for (const SoundRun& run : plan.runs) {
        EXPECT_EQ(run.decodeTime, time);
        EXPECT_GT(run.packets, 0u);
        time = run.end();
        if (run.kind == Kind::source) {
            EXPECT_EQ(run.firstPacket, next.value_or(run.firstPacket));
            next = run.firstPacket + run.packets;
        }
    }
    EXPECT_EQ(plan.mediaDuration, time);
    EXPECT_GE(time, plan.editStart + plan.editDuration);
}

std::vector<SoundRun> runsOf(const SoundPlan& plan, Kind kind) {
    std::vector<SoundRun> runs;
    std::copy_if(plan.runs.begin(), plan.runs.end(), std::back_inserter(runs),
                 [kind](const SoundRun& run) { return run.kind == kind; });
    return runs;
}

TEST(SoundPlan, NeverDriftsOverAThousandFreezesAndKeepsEveryPacketOnce) {
    const isobmff::Track track = aacTrack(50'000);
    const CMTime between(1001, 1000);
    const CMTime freeze(3003, 1000 * 2); // no whole number of packets
    Pieces pieces;
    for (int i = 0; i < 1000; ++i) {
        pieces.push_back(play(between * i, between * (i + 1)));
        pieces.push_back(silence(freeze));
    }
    pieces.push_back(play(between * 1000, between * 1001));
    const SoundPlan plan = planSound(aacSource(track), pieces, seconds(0.1));

    expectGapless(plan);
    const std::vector<SoundRun> runs = runsOf(plan, Kind::source);
    ASSERT_EQ(runs.size(), 1001u);
    for (int i = 0; i <= 1000; ++i) {
        const SoundRun& run = runs[static_cast<std::size_t>(i)];
        const double heardAt = static_cast<double>(run.decodeTime - plan.editStart);
        const double soundOf = (static_cast<double>(run.firstPacket) - 1) * packet;
        EXPECT_NEAR(heardAt - soundOf, i * freeze.seconds() * rate, packet / 2 + 1) << "freeze " << i;
        const double cut = (i + 1) * between.seconds() * rate + i * freeze.seconds() * rate;
        EXPECT_NEAR(static_cast<double>(run.end() - plan.editStart), cut, i < 1000 ? packet / 2 + 1 : packet);
    }
}

TEST(SoundPlan, StartsARangeAtItsSampleAfterOneHiddenPacket) {
    const isobmff::Track track = aacTrack(200);
    const SoundSource source = aacSource(track);
    const CMTime start(10 * packet + 300, rate);
    const Pieces pieces{play(start, CMTime(20 * packet + 100, rate))};
    const CMTime lead = soundLead(source, pieces);
    EXPECT_EQ(lead, CMTime(packet + 300, rate));

    for (const std::int64_t editStart : {std::int64_t{0}, packet + 300, packet + 1000, 5 * packet}) {
        const SoundPlan plan = planSound(source, pieces, {editStart, rate});
        expectGapless(plan);
        EXPECT_EQ(plan.editStart, std::max(editStart, lead.value));
        EXPECT_EQ(plan.editDuration, 10 * packet - 200);
        const SoundRun sound = runsOf(plan, Kind::source).front();
        EXPECT_EQ(sound.firstPacket, 10u) << "one before the packet that holds the first sample";
        EXPECT_EQ(sound.packets, 12u);
        EXPECT_EQ(plan.editStart - sound.decodeTime, packet + 300);
    }
}

TEST(SoundPlan, IsSilentThroughoutFreezesAtBothEnds) {
    const isobmff::Track track = aacTrack(200);
    const CMTime start(10 * packet + 400, rate);
    const CMTime end(20 * packet + 600, rate);
    const SoundPlan plan = planSound(
        aacSource(track), Pieces{silence(seconds(1)), play(start, end), silence(seconds(1))}, CMTime::zero());
    expectGapless(plan);
    const std::vector<SoundRun> sound = runsOf(plan, Kind::source);
    ASSERT_EQ(sound.size(), 1u);
    EXPECT_EQ(sound[0].firstPacket, 11u) << "no warm-up: silence comes before it";
    EXPECT_EQ(sound[0].packets, 11u);
    EXPECT_GE(sound[0].decodeTime - plan.editStart, rate - packet - packet / 2);
}

TEST(SoundPlan, FillsGapsOfTheSourceWithSilence) {
    const isobmff::Track track = aacTrack(100);
    SoundSource source = aacSource(track);
    source.shown.start = rate; // an empty edit of a second
    const Pieces pieces{play(CMTime::zero(), seconds(0.5)), silence(seconds(2)),
                        play(seconds(0.5), seconds(5))};
    const SoundPlan plan = planSound(source, pieces, seconds(0.05));
    expectGapless(plan);
    const std::vector<SoundRun> sound = runsOf(plan, Kind::source);
    ASSERT_EQ(sound.size(), 1u);
    EXPECT_EQ(sound[0].packets, 100u);
    EXPECT_NEAR(static_cast<double>(sound[0].decodeTime + packet - plan.editStart), 3 * rate, packet / 2);
    EXPECT_EQ(plan.editDuration, 7 * rate);
    EXPECT_LE(plan.runs.front().duration, plan.editStart) << "what is no whole packet is hidden";
}

TEST(SoundPlan, StaysSilentIfTheRangeHasNoSound) {
    const isobmff::Track track = aacTrack(10);
    const SoundPlan plan = planSound(aacSource(track), Pieces{play(seconds(5), seconds(6))}, CMTime::zero());
    expectGapless(plan);
    EXPECT_TRUE(runsOf(plan, Kind::source).empty());
}

TEST(SoundPlan, CutsPcmAtTheSample) {
    isobmff::Track track;
    track.timescale = rate;
    track.uniform = {4, 1};
    for (int i = 0; i < 100; ++i) { // chunks of a tenth of a second
        isobmff::Sample chunk;
        chunk.decodeTime = i * 4800;
        chunk.duration = 4800;
        chunk.size = 4800 * 4;
        chunk.offset = static_cast<std::uint64_t>(i) * 100'000;
        track.samples.push_back(chunk);
    }
    const SoundSource source{rate, SoundPackets(track), {0, 480'000, 0}, rate, 1, 0};
    const Pieces pieces{play({7000, rate}, {10'001, rate}), silence({20'000, rate}),
                        play({10'001, rate}, {11'000, rate})};
    const SoundPlan plan = planSound(source, pieces, {500, rate});
    expectGapless(plan);
    using Run = SoundRun;
    EXPECT_THAT(plan.runs, testing::ElementsAre(Run{Kind::silence, 0, 500, 0, 500},
                                                Run{Kind::source, 7000, 3001, 500, 3001},
                                                Run{Kind::silence, 0, 20'000, 3501, 20'000},
                                                Run{Kind::source, 10'001, 999, 23'501, 999}));

    const std::vector<OutputSample> samples =
        soundSamples(plan, source.packets, Store::source, {{Store::spool, 16'384 * 4, 0}, 16'384});
    EXPECT_EQ(samples.size(), 1u + 2u + 2u + 1u);
    EXPECT_EQ(samples[1].bytes.offset, 100'000u + 2200 * 4);
    EXPECT_EQ(samples[2].bytes.size, 401u * 4);
    EXPECT_EQ(std::accumulate(
                  samples.begin(), samples.end(), std::uint64_t{0},
                  [](std::uint64_t sum, const OutputSample& sample) { return sum + sample.bytes.size; }),
              static_cast<std::uint64_t>(plan.mediaDuration) * 4);
}

TEST(SoundPlan, CountsPacketsWhoseTicksAreNoWholeNumber) {
    isobmff::Track track;
    track.timescale = 1000; // 1024 samples last 23.2 ticks
    for (std::int64_t i = 0; i < 1000; ++i) {
        isobmff::Sample sample;
        sample.decodeTime = i * 1024 * 1000 / 44100;
        sample.duration = static_cast<std::uint32_t>((i + 1) * 1024 * 1000 / 44100 - sample.decodeTime);
        track.samples.push_back(sample);
    }
    const SoundSource source{1000, SoundPackets(track), {0, 23'000, 23}, 44100, 1024, 1};
    Pieces pieces;
    for (int i = 0; i < 20; ++i) {
        pieces.push_back(play({i, 1}, {i + 1, 1}));
        pieces.push_back(silence({7, 10}));
    }
    const SoundPlan plan = planSound(source, pieces, CMTime::zero());
    expectGapless(plan);
    const SoundRun last = runsOf(plan, Kind::source).back();
    const std::int64_t shift =
        last.decodeTime - plan.editStart - (source.packets.start(last.firstPacket) - 23);
    EXPECT_NEAR(static_cast<double>(shift), 19 * 700, 12);
}

TEST(SoundPlan, JoinsEditsThatContinueAndRefusesOthers) {
    using Shown = isobmff::ShownPiece;
    const std::vector<Shown> continuing{{0, 100, 1024}, {100, 50, 1124}};
    EXPECT_EQ(shownBetween(continuing, 0, 150), (Shown{0, 150, 1024}));
    const std::vector<Shown> jumping{{0, 100, 0}, {100, 50, 500}};
    EXPECT_THROW(shownBetween(jumping, 50, 120), CannotPassThrough);
    EXPECT_EQ(shownBetween(jumping, 100, 120), jumping[1]);
    EXPECT_EQ(shownBetween(jumping, 200, 300).duration, 0);
}

} // namespace
} // namespace zelvra::passthrough
