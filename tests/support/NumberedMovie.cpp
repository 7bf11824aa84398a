// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/support/NumberedMovie.h"

#include "tests/support/Files.h"
#include "tests/support/MovieSurgery.h"
#include "tests/support/NumberedPicture.h"
#include "tests/support/NumberedSound.h"
#include "tests/support/Process.h"

#include <cmath>
#include <cstdio>
#include <unistd.h>

namespace zelvra::test {
namespace fs = std::filesystem;
namespace {

using Arguments = std::vector<std::string>;

void append(Arguments& to, const Arguments& more) {
    to.insert(to.end(), more.begin(), more.end());
}

std::string text(double seconds) {
    return std::to_string(seconds);
}

std::string flag(bool set) {
    return set ? "1" : "0";
}

Arguments h264Arguments(const NumberedMovie& movie) {
    std::string params = "keyint=" + std::to_string(movie.gop) + ":min-keyint=" + std::to_string(movie.gop) +
                         ":scenecut=0:bframes=" + std::to_string(movie.bFrames) +
                         ":open-gop=" + flag(movie.openGop);
    if (movie.interlaced) {
        params += ":tff=1";
    }
    if (!movie.encoderParams.empty()) {
        params += ':' + movie.encoderParams;
    }
    return {"-c:v", "libx264", "-preset", "medium", "-crf", "20", "-x264-params", params};
}

Arguments hevcArguments(const NumberedMovie& movie) {
    std::string params =
        "log-level=error:pools=2:frame-threads=1:scenecut=0:keyint=" + std::to_string(movie.gop) +
        ":min-keyint=" + std::to_string(movie.gop) + ":bframes=" + std::to_string(movie.bFrames) +
        ":open-gop=" + flag(movie.openGop);
    if (!movie.encoderParams.empty()) {
        params += ':' + movie.encoderParams;
    }
    return {"-c:v", "libx265", "-preset", "fast", "-crf", "22", "-tag:v", "hvc1", "-x265-params", params};
}

Arguments videoArguments(const NumberedMovie& movie) {
    const std::string gop = std::to_string(movie.gop);
    switch (movie.codec) {
    case MovieCodec::h264: return h264Arguments(movie);
    case MovieCodec::hevc: return hevcArguments(movie);
    case MovieCodec::mpeg4:
        return {"-c:v", "mpeg4", "-q:v", "3", "-g", gop, "-bf", std::to_string(movie.bFrames)};
    case MovieCodec::proRes: return {"-c:v", "prores_ks"};
    case MovieCodec::vp9:
        return {"-c:v", "libvpx-vp9", "-deadline", "realtime", "-cpu-used", "8",
                "-crf", "20",         "-b:v",      "0",        "-g",        gop};
    }
    return {};
}

Arguments soundArguments(const NumberedMovie& movie) {
    switch (movie.sound) {
    case SoundCodec::none: return {"-an"};
    case SoundCodec::aac: return {"-c:a", "aac", "-b:a", "160k", "-aac_pns", "0"};
    case SoundCodec::pcm: return {"-c:a", "pcm_s16le"};
    case SoundCodec::ac3: return {"-c:a", "ac3", "-b:a", "192k"};
    case SoundCodec::eac3: return {"-c:a", "eac3", "-b:a", "192k"};
    case SoundCodec::alac: return {"-c:a", "alac"};
    case SoundCodec::opus: return {"-c:a", "libopus", "-b:a", "128k"};
    }
    return {};
}

/// Turns upright pictures into the coded ones.
std::string turningFilter(Orientation orientation) {
    switch (orientation) {
    case Orientation::upright: return "null";
    case Orientation::quarterTurn: return "transpose=cclock";
    case Orientation::halfTurn: return "hflip,vflip";
    case Orientation::threeQuarterTurn: return "transpose=clock";
    case Orientation::mirrored: return "hflip";
    }
    return {};
}

/// Turns coded pictures into upright ones; `width` and `height` are those of the display.
AffineTransform displayMatrix(const NumberedMovie& movie) {
    const double width = movie.width;
    const double height = movie.height;
    switch (movie.orientation) {
    case Orientation::upright: return {};
    case Orientation::quarterTurn: return {0, 1, -1, 0, width, 0};
    case Orientation::halfTurn: return {-1, 0, 0, -1, width, height};
    case Orientation::threeQuarterTurn: return {0, -1, 1, 0, 0, height};
    case Orientation::mirrored: return {-1, 0, 0, 1, width, 0};
    }
    return {};
}

/// Sets the time of each picture. setpts takes an expression, so the table of times is written as one.
std::string timingFilter(const NumberedMovie& movie) {
    if (movie.frameTicks.empty()) {
        return "null";
    }
    std::string filter = "settb=1/" + std::to_string(movie.ticksPerSecond()) + ",setpts='0";
    for (int frame = 1; frame < movie.frames; ++frame) {
        filter += "+eq(N," + std::to_string(frame) + ")*" + std::to_string(movie.timeOf(frame).value);
    }
    return filter + "'";
}

/// The ffmpeg arguments that make the movie, without its input and output files.
Arguments encodingArguments(const NumberedMovie& movie) {
    Arguments arguments{"-vf", turningFilter(movie.orientation) + "," + timingFilter(movie) +
                                   ",format=" + movie.pixelFormat +
                                   (movie.pixelAspect.empty() ? "" : ",setsar=" + movie.pixelAspect) +
                                   (movie.colorTags.empty() ? "" : ",setparams=" + movie.colorTags)};
    append(arguments, videoArguments(movie));
    append(arguments, {"-vsync", "passthrough"});
    if (!movie.frameTicks.empty()) {
        // FFmpeg 7 gives every picture that setpts has moved a duration of one tick. The file keeps only that
        // of the last picture; all others follow from the times.
        const CMTime last = movie.timeOf(movie.frames) - movie.timeOf(movie.frames - 1);
        append(arguments, {"-enc_time_base", "1/" + std::to_string(movie.ticksPerSecond()), "-bsf:v",
                           "setts=pts=PTS:dts=DTS:duration=" + std::to_string(last.value)});
    }
    if (!movie.profile.empty()) {
        append(arguments, {"-profile:v", movie.profile});
    }
    if (!movie.sampleEntry.empty()) {
        append(arguments, {"-tag:v", movie.sampleEntry});
    }
    append(arguments, soundArguments(movie));
    const std::string ticks = std::to_string(movie.ticksPerSecond());
    append(arguments, {"-video_track_timescale", ticks, "-movie_timescale", ticks, "-strict", "-2"});
    if (movie.fragmented) {
        append(arguments, {"-movflags", "+frag_keyframe+delay_moov+default_base_moof"});
    }
    append(arguments, movie.muxArguments);
    return arguments;
}

double soundSeconds(const NumberedMovie& movie) {
    return movie.soundSeconds > 0 ? movie.soundSeconds : movie.timeOf(movie.frames).seconds();
}

/// A name that changes with everything that the movie depends on.
std::string cacheName(const NumberedMovie& movie) {
    constexpr int generation = 1; // increase it when pictures, sound or surgery change
    std::string key = std::to_string(generation);
    for (const std::string& argument : encodingArguments(movie)) {
        key += ' ' + argument;
    }
    for (const int number : {movie.width, movie.height, movie.rate, movie.ratePer, movie.frames,
                             static_cast<int>(movie.interlaced), movie.soundRate, movie.channels,
                             static_cast<int>(movie.orientation), static_cast<int>(movie.twoSampleEntries),
                             static_cast<int>(movie.indexFirst), static_cast<int>(movie.beyond4GiB)}) {
        key += ' ' + std::to_string(number);
    }
    key += ' ' + text(movie.soundDelay) + ' ' + text(soundSeconds(movie));
    for (const CMTimeRange& stretch : movie.shown) {
        key += ' ' + text(stretch.start.isValid() ? stretch.start.seconds() : -1) + '+' +
               text(stretch.duration.seconds());
    }
    std::uint64_t hash = 14695981039346656037U; // FNV-1a
    for (const char character : key) {
        hash = (hash ^ static_cast<unsigned char>(character)) * 1099511628211U;
    }
    char name[24];
    std::snprintf(name, sizeof name, "%016llx", static_cast<unsigned long long>(hash));
    return std::string(name) + '.' + movie.container;
}

void encode(const NumberedMovie& movie, const fs::path& soundFile, const fs::path& output) {
    Arguments arguments{"ffmpeg",   "-v",
                        "error",    "-y",
                        "-f",       "rawvideo",
                        "-pix_fmt", "yuv420p",
                        "-s",       std::to_string(movie.width) + "x" + std::to_string(movie.height),
                        "-r",       std::to_string(movie.rate) + "/" + std::to_string(movie.ratePer),
                        "-i",       "-"};
    if (movie.sound != SoundCodec::none) {
        const auto samples = std::llround(soundSeconds(movie) * movie.soundRate);
        const std::string pcm = numberedSoundBytes(samples, movie.soundRate, movie.channels);
        writeBytes(soundFile, Bytes(pcm.begin(), pcm.end()));
        append(arguments,
               {"-itsoffset", text(movie.soundDelay), "-f", "s16le", "-ar", std::to_string(movie.soundRate),
                "-ac", std::to_string(movie.channels), "-i", soundFile.string()});
    }
    append(arguments, encodingArguments(movie));
    arguments.push_back(output.string());
    const NumberedPictures pictures(movie.width, movie.height, movie.interlaced);
    int next = 0;
    runChecked(arguments, [&] { return next < movie.frames ? pictures.yuv420(next++) : std::string(); });
}

void operate(const NumberedMovie& movie, const fs::path& path) {
    if (movie.fragmented) {
        return;
    }
    BoxFile file = BoxFile::read(path);
    if (movie.orientation != Orientation::upright) {
        setDisplayMatrix(file, displayMatrix(movie));
    }
    if (!movie.shown.empty()) {
        showOnly(file, movie.shown);
    }
    if (movie.twoSampleEntries) {
        useTwoSampleEntries(file);
    }
    if (movie.indexFirst) {
        moveIndexToFront(file);
    }
    if (movie.beyond4GiB) {
        writeBeyond4GiB(std::move(file), path);
    } else {
        file.write(path);
    }
}

} // namespace

int NumberedMovie::ticksPerSecond() const {
    int ticks = timescale > 0 ? timescale : rate;
    while (timescale == 0 && ticks < 10000) {
        ticks *= 2;
    }
    return ticks;
}

CMTime NumberedMovie::timeOf(int frame) const {
    if (frameTicks.empty()) {
        return CMTime(std::int64_t{frame} * ratePer, rate).converted(ticksPerSecond());
    }
    std::int64_t ticks = 0;
    for (int i = 0; i < frame; ++i) {
        ticks += frameTicks.at(static_cast<std::size_t>(i) % frameTicks.size());
    }
    return {ticks, ticksPerSecond()};
}

fs::path movieFile(const NumberedMovie& movie) {
    const fs::path folder = fs::path(ZELVRA_BUILD_FOLDER) / "test-movies";
    fs::path file = folder / cacheName(movie);
    if (!fs::exists(file)) {
        fs::create_directories(folder);
        // Tests that run at the same time may make the same movie. The one that is ready last stays.
        const std::string own = "making-" + std::to_string(::getpid()) + "-";
        const fs::path unfinished = folder / (own + file.filename().string());
        const fs::path soundFile = folder / (own + "sound.pcm");
        encode(movie, soundFile, unfinished);
        fs::remove(soundFile);
        operate(movie, unfinished);
        fs::rename(unfinished, file);
    }
    return file;
}

} // namespace zelvra::test
