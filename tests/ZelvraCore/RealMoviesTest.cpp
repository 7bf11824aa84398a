// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/FrameGrab.h"
#include "ZelvraCore/SourceProbe.h"
#include "ZelvraCore/records/MediaError.h"
#include "ZelvraCore/records/ZVError.h"
#include "tests/support/Files.h"
#include "tests/support/MovieReading.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace zelvra::test {
namespace {

/// Presentation times of the first video track's packets that are not discarded, by ffprobe.
std::vector<std::int64_t> packetTimes(const std::filesystem::path& movie) {
    std::vector<std::int64_t> times;
    const auto answer = probe(movie, {"-select_streams", "v:0", "-show_packets"});
    for (const auto& packet : answer.at("packets")) {
        if (packet.at("flags").get<std::string>().find('D') == std::string::npos) {
            times.push_back(packet.at("pts"));
        }
    }
    std::ranges::sort(times);
    return times;
}

class RealMovie : public testing::TestWithParam<std::filesystem::path> {};

/// Movies of many cameras and tools: either the index has libavformat's times and a picture can be grabbed
/// anywhere, or there is one clear line.
TEST_P(RealMovie, HasLibavformatsTimesOrOneLineOfError) {
    try {
        const Asset asset(GetParam());
        const SourceInfo info = loadSourceInfo(asset);
        const FrameIndex& frames = asset.frames();
        std::vector<std::int64_t> times;
        for (std::size_t i = 0; i < frames.count(); ++i) {
            times.push_back(frames.frame(i).time.value);
        }
        EXPECT_EQ(times, packetTimes(GetParam()));
        EXPECT_GT(info.frameDuration, CMTime(1, 1000));
        for (const CMTime& time :
             {CMTime::zero(), frames.frame(frames.count() / 2).time, frames.last().time}) {
            const Image image = extractFrame(asset, time);
            EXPECT_EQ((Size{static_cast<double>(image.width()), static_cast<double>(image.height())}),
                      info.displaySize);
        }
    } catch (const MediaError& error) {
        EXPECT_TRUE(GetParam().filename().string().starts_with("broken")) << error.what();
        EXPECT_EQ(std::string(error.what()).find('\n'), std::string::npos);
    } catch (const ZVError& error) {
        EXPECT_EQ(error.kind(), ZVError::Case::noVideoTrack);
        EXPECT_TRUE(GetParam().filename().string().starts_with("track-52"));
    }
}

std::vector<std::filesystem::path> movies() {
    auto files = sharedMovies();
    std::erase_if(files, [](const auto& file) { return file.extension() == ".md"; });
    return files;
}

INSTANTIATE_TEST_SUITE_P(Shared, RealMovie, testing::ValuesIn(movies()));
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(RealMovie);

} // namespace
} // namespace zelvra::test
