// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/Render.h"
#include "tests/support/MovieReading.h"
#include "tests/support/NumberedMovie.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace zelvra::test {

/// Whole exports checked picture by picture against what was asked for, by a foreign decoder.

/// What to export of a numbered movie, in its frames.
struct Export {
    NumberedMovie movie;
    std::filesystem::path file = {}; ///< that shows the same as `movie`, in its place
    struct Freeze {
        int frame = 0; ///< of the source; the number of frames = at its end, more = in a sound-only tail
        double seconds = 0.5;
    };
    std::vector<Freeze> freezes = {};
    std::optional<std::pair<int, int>> range = {}; ///< first frame, one past the last
    bool includeAudio = true;
    std::string extension = ".mp4";
};

/// What the viewer of an export must see: from `time` on picture `number`, frozen if `marker` is set.
struct ExpectedFrame {
    double time = 0;
    int number = 0;
    std::optional<int> marker;
    int heard = 0;       ///< the source frame whose sound plays, if it is not frozen
    bool goesOn = false; ///< in a sound-only tail: the picture before stays on screen
};

class ExportedMovie {
public:
    /// Renders into `folder`. Notices are kept.
    ExportedMovie(const Export& job, const std::filesystem::path& folder);

    const std::filesystem::path& file() const { return file_; }
    const std::vector<std::string>& notices() const { return notices_; }
    const std::vector<Highlight>& highlights() const { return highlights_; }
    /// Each frame of the output, freezes frame by frame; times count from the start of what is shown.
    const std::vector<ExpectedFrame>& expected() const { return expected_; }

    /// Every picture in motion is there once at its time, and freezes have their picture from their first
    /// frame to their last; nothing else is shown.
    void expectRightPictures(const std::filesystem::path& file, const std::string& tolerated = "",
                             const std::vector<std::string>& decoderArguments = {}) const;
    /// The same, seen on a screen that catches each frame early, in its middle and late: pictures that are
    /// gone before the eye meets them do not count.
    void expectRightOnScreen(const std::filesystem::path& file,
                             const std::vector<std::string>& decoderArguments = {}) const;
    /// Accurate seeks by ffmpeg all over the movie, `ahead` seconds before a frame starts, find the picture
    /// that belongs there.
    void expectRightSeeks(const std::filesystem::path& file, int seeks, double ahead = 0.002) const;
    /// Sound goes on where it stopped, at most `apart` seconds from its picture; freezes are silent.
    void expectRightSound(double apart) const;
    /// All of the source's pictures within the range decode to the very same samples as in the source.
    void expectSourcePicturesUntouched() const;

private:
    const ExpectedFrame& at(double time) const;

    Export job_;
    std::filesystem::path source_;
    std::filesystem::path file_;
    std::vector<std::string> notices_;
    std::vector<Highlight> highlights_;
    std::vector<ExpectedFrame> expected_;
    double duration_ = 0;
};

} // namespace zelvra::test
