// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/records/CMTimeRange.h"
#include "ZelvraCore/records/Geometry.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace zelvra::test {

enum class MovieCodec { h264, hevc, mpeg4, proRes, vp9 };
enum class SoundCodec { none, aac, pcm, ac3, eac3, alac, opus };
enum class Orientation { upright, quarterTurn, halfTurn, threeQuarterTurn, mirrored };

/// A movie of numbered pictures and a numbered sound (see NumberedPicture.h and NumberedSound.h), made by the
/// ffmpeg command line. Every field has a sensible value; a test names only what matters to it:
///
///     const auto file = movieFile({.frames = 90, .codec = MovieCodec::hevc, .sound = SoundCodec::aac});
///
/// Picture n is shown at `timeOf(n)`, the sample i of the sound at i / `soundRate`, as long as `shown` is
/// empty.
struct NumberedMovie {
    int width = 320; ///< as displayed
    int height = 180;
    int rate = 30; ///< frames a second are rate / ratePer
    int ratePer = 1;
    int frames = 60;
    std::vector<int> frameTicks = {}; ///< length of each frame in 1/timescale s; empty: constant by `rate`
    int timescale = 0;                ///< of the video track and the movie; 0: the lowest multiple of `rate`
                                      ///< from 10000 on

    MovieCodec codec = MovieCodec::h264;
    int gop = 30;
    int bFrames = 3;
    bool openGop = false;
    bool interlaced = false;             ///< H.264 frame pictures with MBAFF, top field first
    std::string pixelFormat = "yuv420p"; ///< as ffmpeg names it: also yuv420p10le, yuv422p, yuv444p ...
    std::string profile = {};            ///< as the encoder names it; empty: its choice
    std::string encoderParams = {};      ///< further options of x264 or x265 as "name=value:name=value"
    std::string sampleEntry = {};        ///< "hev1", "avc3"; empty: avc1 or hvc1
    std::string colorTags = {};          ///< as ffmpeg's filter setparams takes them: "colorspace=bt709"
    std::string pixelAspect = {};        ///< for example "4/3"; empty: square, untagged

    SoundCodec sound = SoundCodec::none;
    int soundRate = 48000;
    int channels = 2;
    double soundDelay = 0;   ///< seconds from the start of the picture to the start of the sound
    double soundSeconds = 0; ///< its length; 0: as long as the picture

    std::string container = "mov"; ///< or "mp4", "m4v"
    Orientation orientation = Orientation::upright;
    std::vector<CMTimeRange> shown = {}; ///< edit list: the stretches of the presentation that are shown
    bool fragmented = false;
    bool twoSampleEntries = false;
    bool indexFirst = false;
    bool beyond4GiB = false;                    ///< a sparse file whose media need 64-bit offsets
    std::vector<std::string> muxArguments = {}; ///< further output options of ffmpeg, such as "-metadata" ...

    int ticksPerSecond() const;     ///< `timescale`, or the value chosen for 0
    CMTime timeOf(int frame) const; ///< when picture `frame` appears, unedited; for `frames`: the end
};

/// The movie's file. It is made on first use, kept under the build folder and shared by all tests: do not
/// change it.
std::filesystem::path movieFile(const NumberedMovie& movie);

} // namespace zelvra::test
