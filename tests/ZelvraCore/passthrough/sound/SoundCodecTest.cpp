// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/isobmff/RawBoxes.h"
#include "ZelvraCore/passthrough/CannotPassThrough.h"
#include "ZelvraCore/passthrough/file/SpoolStore.h"
#include "ZelvraCore/passthrough/sound/AudioSpecificConfig.h"
#include "ZelvraCore/passthrough/sound/SoundSampleEntry.h"
#include "ZelvraCore/records/MediaError.h"
#include "tests/support/Files.h"

#include <gtest/gtest.h>

namespace zelvra::passthrough {
namespace {

using test::Bytes;
using Container = MovieContainer;

const Bytes stereoAt48 = {0x11, 0x90};

isobmff::Track aacTrack(const Bytes& config, std::uint32_t packetTicks) {
    isobmff::Track track;
    track.timescale = 48000;
    track.sampleEntries.push_back(
        {fourCharCode("mp4a"), aacSampleEntry(config, 48000, 2, 160'000, Container::mpeg4), false});
    for (int i = 0; i < 4; ++i) {
        isobmff::Sample sample;
        sample.decodeTime = std::int64_t{i} * packetTicks;
        sample.duration = packetTicks;
        track.samples.push_back(sample);
    }
    return track;
}

TEST(SoundCodec, KnowsPlainAac) {
    const SoundCodec codec = soundCodec(aacTrack(stereoAt48, 1024));
    EXPECT_EQ(codec.kind, SoundCodec::Kind::aac);
    EXPECT_EQ(codec.sampleRate, 48000u);
    EXPECT_EQ(codec.channels, 2u);
    EXPECT_EQ(codec.packetFrames, 1024u);
    EXPECT_EQ(codec.rollDistance, -1);
    EXPECT_EQ(soundCodec(aacTrack({0x11, 0x94}, 960)).packetFrames, 960u);
    // As ffmpeg writes it, with a note at the end that no bands are replicated.
    EXPECT_NO_THROW(soundCodec(aacTrack({0x11, 0x90, 0x56, 0xE5, 0x00}, 1024)));
}

TEST(SoundCodec, RefusesCodingsWhoseStateCrossesPackets) {
    const auto refused = [](const isobmff::Track& track) {
        EXPECT_THROW(soundCodec(track), CannotPassThrough);
    };
    refused(aacTrack({0x2B, 0x11, 0x88, 0x00}, 2048));       // HE-AAC
    refused(aacTrack({0xEB, 0x09, 0x88, 0x00}, 2048));       // HE-AAC version 2
    refused(aacTrack({0x13, 0x10, 0x56, 0xE5, 0x98}, 1024)); // HE-AAC that old decoders take for AAC-LC
    refused(aacTrack(stereoAt48, 2048));                     // packets of something else
    refused(aacTrack({0xB9, 0x90}, 1024));                   // AAC-LD
    refused(aacTrack({0x11, 0x80}, 1024));                   // channels as a program of its own says
    refused(aacTrack({}, 1024));
    isobmff::Track changing = aacTrack(stereoAt48, 1024);
    changing.sampleEntries.push_back(changing.sampleEntries.front());
    changing.samples.back().sampleEntry = 1;
    refused(changing);
    isobmff::Track mp3 = aacTrack(stereoAt48, 1024);
    mp3.sampleEntries.front().type = fourCharCode(".mp3");
    refused(mp3);
}

TEST(SoundCodec, SurvivesDescriptionsCutAnywhere) {
    const isobmff::Track whole = aacTrack(stereoAt48, 1024);
    for (std::size_t size = 8; size < whole.sampleEntries.front().box.size(); ++size) {
        isobmff::Track cut = whole;
        cut.sampleEntries.front().box.resize(size);
        EXPECT_THROW(soundCodec(cut), CannotPassThrough) << size;
    }
}

TEST(SoundSampleEntry, TakesTheFormOfTheContainer) {
    const isobmff::Track track = aacTrack(stereoAt48, 1024);
    const SoundCodec codec = soundCodec(track);
    const Bytes quickTime = soundSampleEntry(track.sampleEntries.front(), codec, false, Container::quickTime);
    const auto boxes = isobmff::soundEntryBoxes(quickTime);
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes.front().type, fourCharCode("wave"));
    EXPECT_EQ(quickTime[17], 1) << "QuickTime's version 1";

    const isobmff::SampleEntry again{fourCharCode("mp4a"), quickTime, false};
    EXPECT_EQ(soundSampleEntry(again, codec, true, Container::appleM4v), track.sampleEntries.front().box);
    EXPECT_EQ(soundSampleEntry(again, codec, true, Container::quickTime), quickTime);

    SoundCodec pcm;
    const isobmff::SampleEntry sowt{fourCharCode("sowt"), quickTime, false};
    EXPECT_THROW(soundSampleEntry(sowt, pcm, true, Container::mpeg4), CannotPassThrough);
}

TEST(SpoolStore, GivesBackWhatItTookAndLeavesNoName) {
    const test::TemporaryFolder folder;
    SpoolStore spool(folder.path());
    spool.append(Bytes{1, 2, 3});
    const StoredBytes stored = spool.append(Bytes{4, 5});
    EXPECT_EQ(stored.store, Store::spool);
    EXPECT_EQ(spool.readBytes(stored.offset, stored.size), (Bytes{4, 5}));
    EXPECT_TRUE(folder.names().empty());
    EXPECT_THROW(SpoolStore(folder / "missing"), MediaError);
}

} // namespace
} // namespace zelvra::passthrough
