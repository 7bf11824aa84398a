// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/FreezeClipEncoder.h"
#include "ZelvraCore/records/ZVError.h"
#include "tests/ZelvraCore/media/still/TestPictures.h"
#include "tests/support/Files.h"
#include "tests/support/MovieReading.h"
#include "tests/support/Process.h"

#include <gtest/gtest.h>

#include <map>
#include <sstream>

namespace zelvra::test {
namespace {

/// What a foreign parser of the stream reads, by the standard's names: the first value of each element, and
/// how many NAL units there are of each type.
struct StreamSyntax {
    std::map<std::string, int> elements;
    std::map<int, int> nalTypes;
};

StreamSyntax readSyntax(const std::filesystem::path& movie) {
    const ProcessResult result = runProcess(
        {"ffmpeg", "-hide_banner", "-i", movie, "-c", "copy", "-bsf:v", "trace_headers", "-f", "null", "-"});
    StreamSyntax syntax;
    std::istringstream lines(result.errors);
    for (std::string line; std::getline(lines, line);) {
        const std::size_t equals = line.rfind(" = ");
        std::istringstream words(line.substr(line.find("] ") == std::string::npos ? 0 : line.find("] ") + 2));
        int position = 0;
        std::string name;
        if (equals != std::string::npos && words >> position >> name) {
            const int value = std::stoi(line.substr(equals + 3));
            syntax.elements.emplace(name, value);
            if (name == "nal_unit_type") {
                ++syntax.nalTypes[value];
            }
        }
    }
    return syntax;
}

StreamSyntax encodedWith(const FreezeEncoding& encoding, const DecodedPicture& picture,
                         VideoCodec codec = VideoCodec::h264) {
    const TemporaryFolder folder;
    encodeFreezeClip(imageOf(picture), folder / "clip.mov", {1, 25}, {6, 25}, codec, encoding);
    const ShownMovie shown = showMovie(folder / "clip.mov");
    EXPECT_EQ(shown.frames.size(), 6u);
    EXPECT_TRUE(shown.faults.empty());
    const DecodedClip clip = decodeClip(folder / "clip.mov");
    for (const auto& frame : clip.frames) {
        EXPECT_EQ(frame, clip.frames.front());
    }
    const nlohmann::json stream = probe(folder / "clip.mov", {"-show_streams"}).at("streams").at(0);
    EXPECT_EQ(stream.at("width"), picture.width);
    EXPECT_EQ(stream.at("height"), picture.height);
    return readSyntax(folder / "clip.mov");
}

TEST(FreezeEncoding, KeepsToABaselineSourcesMeans) {
    FreezeEncoding encoding;
    encoding.profileIdc = 66;
    encoding.levelIdc = 31;
    encoding.cabac = false;
    encoding.transform8x8 = false;
    encoding.parameterSetId = 7;
    StreamSyntax syntax = encodedWith(encoding, texturedPicture(160, 96));
    EXPECT_EQ(syntax.elements["profile_idc"], 66);
    EXPECT_EQ(syntax.elements["level_idc"], 31);
    EXPECT_EQ(syntax.elements["entropy_coding_mode_flag"], 0);
    EXPECT_EQ(syntax.elements["seq_parameter_set_id"], 7);
    EXPECT_EQ(syntax.elements["pic_parameter_set_id"], 7);
    EXPECT_EQ(syntax.elements["max_num_ref_frames"], 1);
    EXPECT_EQ(syntax.elements["weighted_pred_flag"], 0);
}

TEST(FreezeEncoding, IsOneIdrPictureAndPredictedOnesOfOneSliceEach) {
    for (const int profile : {77, 100}) {
        FreezeEncoding encoding;
        encoding.profileIdc = profile;
        encoding.transform8x8 = profile == 100;
        StreamSyntax syntax = encodedWith(encoding, texturedPicture(160, 96));
        EXPECT_EQ(syntax.elements["profile_idc"], profile);
        EXPECT_EQ(syntax.nalTypes[5], 1);
        EXPECT_EQ(syntax.nalTypes[1], 5);
        EXPECT_EQ(syntax.nalTypes[6], 0) << "supplemental information";
    }
}

TEST(FreezeEncoding, CutsTheVisiblePictureOutOfTheCodedFrame) {
    FreezeEncoding encoding;
    encoding.codedFrame = FreezeEncoding::CodedFrame{192, 128, 4, 2, 28, 30};
    StreamSyntax syntax = encodedWith(encoding, texturedPicture(160, 96));
    EXPECT_EQ(syntax.elements["pic_width_in_mbs_minus1"], 11);
    EXPECT_EQ(syntax.elements["pic_height_in_map_units_minus1"], 7);
    EXPECT_EQ(syntax.elements["frame_crop_left_offset"], 2);
    EXPECT_EQ(syntax.elements["frame_crop_top_offset"], 1);

    encoding.codedFrame->cropRight = 0;
    const TemporaryFolder folder;
    EXPECT_THROW(encodeFreezeClip(imageOf(texturedPicture(160, 96)), folder / "clip.mov", {1, 25}, {1, 1},
                                  VideoCodec::h264, encoding),
                 ZVError);
}

TEST(FreezeEncoding, MatchesAnHevcSourcesCodedSize) {
    FreezeEncoding encoding;
    encoding.codedFrame = FreezeEncoding::CodedFrame{160, 112, 0, 0, 0, 16};
    StreamSyntax syntax = encodedWith(encoding, texturedPicture(160, 96), VideoCodec::hevc);
    EXPECT_EQ(syntax.elements["pic_height_in_luma_samples"], 112);
    EXPECT_EQ(syntax.nalTypes[1], 5);
    EXPECT_EQ(syntax.nalTypes[39] + syntax.nalTypes[40], 0) << "supplemental information";
}

TEST(FreezeEncoding, CodesFramesInAStreamThatMayHoldFields) {
    for (const bool adaptive : {false, true}) {
        FreezeEncoding encoding;
        encoding.codedFrame = FreezeEncoding::CodedFrame{160, 96, 0, 0, 0, 6};
        encoding.frameMbsOnly = false;
        encoding.mbAdaptiveFields = adaptive;
        encoding.codedFrame->cropBottom = 4;
        StreamSyntax syntax = encodedWith(encoding, texturedPicture(160, 92));
        EXPECT_EQ(syntax.elements["frame_mbs_only_flag"], 0);
        EXPECT_EQ(syntax.elements["mb_adaptive_frame_field_flag"], adaptive ? 1 : 0);
        EXPECT_EQ(syntax.elements["field_pic_flag"], 0);
        EXPECT_EQ(syntax.elements["pic_height_in_map_units_minus1"], 2);
    }
}

TEST(FreezeEncoding, KeepsTheFirstPictureBelowItsLimit) {
    const TemporaryFolder folder;
    const Image image = imageOf(texturedPicture(320, 180));
    const auto firstBytes = [&](const FreezeEncoding& encoding) {
        encodeFreezeClip(image, folder / "clip.mov", {1, 25}, {3, 25}, VideoCodec::h264, encoding);
        return std::stoul(
            probe(folder / "clip.mov", {"-show_packets"}).at("packets").at(0).at("size").get<std::string>());
    };
    const std::size_t free = firstBytes({});
    FreezeEncoding encoding;
    encoding.mostFirstBytes = free / 2;
    EXPECT_LE(firstBytes(encoding), free / 2);
    EXPECT_GT(firstBytes(encoding), free / 4);
}

} // namespace
} // namespace zelvra::test
