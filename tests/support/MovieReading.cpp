// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/support/MovieReading.h"

#include "tests/support/Process.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <regex>
#include <sstream>
#include <stdexcept>

namespace zelvra::test {
namespace {

using Arguments = std::vector<std::string>;

Arguments ffmpeg(const std::filesystem::path& movie, const Arguments& inputArguments,
                 const Arguments& outputArguments) {
    Arguments arguments{"ffmpeg", "-hide_banner", "-nostdin", "-copyts"};
    arguments.insert(arguments.end(), inputArguments.begin(), inputArguments.end());
    arguments.insert(arguments.end(), {"-i", movie.string()});
    arguments.insert(arguments.end(), outputArguments.begin(), outputArguments.end());
    return arguments;
}

std::vector<std::string> lines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

/// The integer after `name` in a line of a showinfo filter ("pts:   512").
std::optional<std::int64_t> field(const std::string& line, const std::string& name) {
    const std::size_t at = line.find(' ' + name + ':');
    if (at == std::string::npos) {
        return std::nullopt;
    }
    const char* digits = line.c_str() + at + name.size() + 2;
    char* end = nullptr;
    const long long value = std::strtoll(digits, &end, 10);
    return end == digits ? std::nullopt : std::optional<std::int64_t>(value);
}

bool isComplaint(const std::string& line) {
    static const std::regex fault("\\[(mov|h264|hevc|aac|ac3|eac3|alac|opus)[^\\]]*\\]|rror|corrupt|conceal|"
                                  "missing|nvalid");
    return line.find("showinfo") == std::string::npos && std::regex_search(line, fault);
}

/// The ticks a second that a showinfo filter reports: "config in time_base: 1/15360".
std::int32_t timescale(const std::string& line) {
    const std::size_t at = line.find("config in time_base: 1/");
    return at == std::string::npos ? 0 : std::atoi(line.c_str() + at + 23);
}

} // namespace

std::ostream& operator<<(std::ostream& stream, const ShownFrame& frame) {
    stream << (frame.number ? std::to_string(*frame.number) : "unreadable");
    if (frame.marker) {
        stream << " frozen (" << *frame.marker << ")";
    }
    return stream << " at " << frame.time.seconds() << " s";
}

ShownMovie showMovie(const std::filesystem::path& movie, const Arguments& inputArguments) {
    // Pictures are scaled to a small fixed size: large enough to read the numbers, and little to pipe.
    constexpr int width = 320;
    constexpr int height = 180;
    constexpr std::size_t bytes = std::size_t{width} * height;
    const ProcessResult result =
        runChecked(ffmpeg(movie, inputArguments,
                          {"-map", "0:v:0", "-vf",
                           "showinfo=checksum=0,scale=" + std::to_string(width) + ":" +
                               std::to_string(height) + ":flags=area,format=gray",
                           "-vsync", "passthrough", "-enc_time_base", "-1", "-f", "rawvideo", "-"}));
    ShownMovie shown;
    std::int32_t ticks = 0;
    for (const std::string& line : lines(result.errors)) {
        ticks = std::max(ticks, timescale(line));
        const std::optional<std::int64_t> pts = field(line, "pts");
        if (pts && field(line, "n")) {
            shown.frames.push_back({.time = CMTime(*pts, ticks), .number = {}, .marker = {}});
        } else if (isComplaint(line)) {
            shown.faults.push_back(line);
        }
    }
    if (result.output.size() != shown.frames.size() * bytes) {
        throw std::runtime_error("ffmpeg gave " + std::to_string(result.output.size() / bytes) +
                                 " pictures and " + std::to_string(shown.frames.size()) + " times");
    }
    const auto* luma = reinterpret_cast<const std::uint8_t*>(result.output.data());
    for (ShownFrame& frame : shown.frames) {
        const PictureReading reading = readPicture(luma, width, height, width);
        frame.number = reading.number;
        frame.marker = reading.marker;
        luma += bytes;
    }
    return shown;
}

std::optional<ShownFrame> seekFrame(const std::filesystem::path& movie, CMTime time) {
    // ffmpeg takes microseconds. Half of one is subtracted, so that a time that was rounded up still finds
    // its frame.
    const std::string seconds = std::to_string(std::max(0.0, time.seconds() - 5e-7));
    const ShownMovie shown = showMovie(movie, {"-ss", seconds, "-t", "0.5"});
    return shown.frames.empty() ? std::nullopt : std::optional(shown.frames.front());
}

std::vector<HashedFrame> hashFrames(const std::filesystem::path& movie, const Arguments& inputArguments) {
    Arguments input{"-v", "error", "-noautorotate"};
    input.insert(input.end(), inputArguments.begin(), inputArguments.end());
    const ProcessResult result = runChecked(
        ffmpeg(movie, input,
               {"-map", "0:v:0", "-vsync", "passthrough", "-enc_time_base", "-1", "-f", "framemd5", "-"}));
    std::vector<HashedFrame> frames;
    std::int32_t ticks = 0;
    for (const std::string& line : lines(result.output)) {
        if (line.starts_with("#tb 0: 1/")) {
            ticks = std::atoi(line.c_str() + 9);
        } else if (!line.starts_with("#")) {
            // stream, dts, pts, duration, size, hash
            const std::size_t second = line.find(',', line.find(',') + 1);
            frames.push_back({CMTime(std::atoll(line.c_str() + second + 1), ticks),
                              line.substr(line.find_last_of(", ") + 1)});
        }
    }
    return frames;
}

std::span<const float> MovieSound::between(double start, double duration) const {
    const auto index = [&](double seconds) {
        const double sample = std::round(seconds * rate);
        return static_cast<std::size_t>(std::clamp(sample, 0.0, static_cast<double>(samples.size())));
    };
    return std::span(samples).subspan(index(start), index(start + duration) - index(start));
}

MovieSound readSound(const std::filesystem::path& movie) {
    if (probe(movie, {"-show_streams", "-select_streams", "a"}).at("streams").empty()) {
        return {};
    }
    const ProcessResult result = runChecked(ffmpeg(
        movie, {},
        {"-map", "0:a:0", "-af", "ashowinfo,pan=mono|c0=c0", "-vsync", "passthrough", "-f", "f32le", "-"}));
    MovieSound sound;
    std::size_t read = 0;
    for (const std::string& line : lines(result.errors)) {
        const std::optional<std::int64_t> pts = field(line, "pts");
        const std::optional<std::int64_t> count = field(line, "nb_samples");
        if (!pts || !count) {
            continue;
        }
        sound.rate = static_cast<int>(field(line, "rate").value_or(0));
        const auto hidden = static_cast<std::size_t>(std::max<std::int64_t>(0, -*pts));
        const auto size = static_cast<std::size_t>(*count);
        if (hidden < size && (read + size) * sizeof(float) <= result.output.size()) {
            const auto at = static_cast<std::size_t>(std::max<std::int64_t>(0, *pts));
            sound.samples.resize(std::max(sound.samples.size(), at + size - hidden));
            std::memcpy(sound.samples.data() + at, result.output.data() + (read + hidden) * sizeof(float),
                        (size - hidden) * sizeof(float));
        }
        read += size;
    }
    return sound;
}

nlohmann::json probe(const std::filesystem::path& movie, const Arguments& arguments) {
    Arguments all{"ffprobe", "-v", "error", "-of", "json"};
    all.insert(all.end(), arguments.begin(), arguments.end());
    all.push_back(movie.string());
    return nlohmann::json::parse(runChecked(all).output);
}

} // namespace zelvra::test
