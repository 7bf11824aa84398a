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

/// A movie as a foreign program (ffmpeg) shows it. Edit lists are applied. Times are those of the movie, not
/// shifted to start at zero.

/// One picture as it appears on the screen.
struct ShownFrame {
    CMTime time;
    std::optional<int> number; ///< `nullopt` if the picture cannot be read
    std::optional<int> marker; ///< set on a freeze
    bool operator==(const ShownFrame&) const = default;
};
/// Used in messages of failed tests: "12 at 0.4 s", "12 frozen (3) at 0.4 s".
std::ostream& operator<<(std::ostream& stream, const ShownFrame& frame);

struct ShownMovie {
    std::vector<ShownFrame> frames;
    std::vector<std::string> faults; ///< lines in which ffmpeg reports faults of the file
};

/// Decodes the first video track. `inputArguments` are put before the file: a seek, a number of threads.
ShownMovie showMovie(const std::filesystem::path& movie, const std::vector<std::string>& inputArguments = {});

/// The picture that an accurate seek of ffmpeg (-ss) returns: the first at or after `time`; `nullopt` past
/// the last one.
std::optional<ShownFrame> seekFrame(const std::filesystem::path& movie, CMTime time);

/// An MD5 sum of each picture's decoded samples, not turned for display. Equal if bit-exact.
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
    std::vector<float> samples; ///< first channel; sample i is heard at i / rate, 0 if nothing is stored for
                                ///< it

    /// The samples from `start` on for `duration` seconds; fewer at the end of the sound.
    std::span<const float> between(double start, double duration) const;
};
/// Decodes the first sound track; no samples if there is none.
MovieSound readSound(const std::filesystem::path& movie);

/// The output of ffprobe as JSON for arguments such as "-show_streams" or "-show_packets".
nlohmann::json probe(const std::filesystem::path& movie, const std::vector<std::string>& arguments);

} // namespace zelvra::test
