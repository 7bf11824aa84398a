// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/records/CMTime.h"
#include "tests/support/NumberedPicture.h"

#include <filesystem>
#include <iosfwd>
#include <nlohmann/json.hpp>
#include <span>
#include <string>
#include <vector>

namespace zelvra::test {

/// What a foreign program (ffmpeg) shows of a movie. Edit lists are applied, and times are those of the
/// movie, not moved to start at zero.

/// One picture as it comes on the screen.
struct ShownFrame {
    CMTime time;
    std::optional<int> number; ///< nothing where the picture cannot be read
    std::optional<int> marker; ///< of a freeze
    bool operator==(const ShownFrame&) const = default;
};
/// "12 at 0.4 s", "12 frozen (3) at 0.4 s": how a failed test names it.
std::ostream& operator<<(std::ostream& stream, const ShownFrame& frame);

struct ShownMovie {
    std::vector<ShownFrame> frames;
    std::vector<std::string> complaints; ///< lines in which ffmpeg finds fault with the file
};

/// Decodes the first video track. `inputArguments` stand before the file: a seek, a number of threads.
ShownMovie showMovie(const std::filesystem::path& movie, const std::vector<std::string>& inputArguments = {});

/// The picture that an accurate seek of ffmpeg (-ss) gives: the first at or after `time`. Nothing past the
/// last one.
std::optional<ShownFrame> seekFrame(const std::filesystem::path& movie, CMTime time);

/// The decoded samples of each picture, untouched (not turned), as an MD5 sum: equal where bit-exact.
struct HashedFrame {
    CMTime time;
    std::string md5;
    bool operator==(const HashedFrame&) const = default;
};
std::vector<HashedFrame> hashFrames(const std::filesystem::path& movie,
                                    const std::vector<std::string>& inputArguments = {});

/// The sound of a movie on its own timeline.
struct MovieSound {
    int rate = 0;
    std::vector<float> samples; ///< first channel; sample i is heard at i / rate, 0 where nothing is stored

    /// What is heard from `start` on for `duration` seconds; shorter at the end.
    std::span<const float> between(double start, double duration) const;
};
/// Decodes the first sound track; no samples where there is none.
MovieSound readSound(const std::filesystem::path& movie);

/// What ffprobe says: "-show_streams", "-show_packets" ... as JSON.
nlohmann::json probe(const std::filesystem::path& movie, const std::vector<std::string>& arguments);

} // namespace zelvra::test
