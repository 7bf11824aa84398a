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

/// Checks whole exports picture by picture with foreign decoders against the picture that each time must
/// show.

/// What to export of a numbered movie, in frames of that movie.
struct ExportJob {
    NumberedMovie movie;
    std::filesystem::path file = {}; ///< exported instead of `movie`; must show the same
    struct Freeze {
        int frame = 0; ///< of the source; the number of frames = at its end, more = in a sound-only tail
        double seconds = 0.5;
    };
    std::vector<Freeze> freezes = {};
    std::optional<std::pair<int, int>> range = {}; ///< first frame, and one past the last
    bool includeAudio = true;
    std::string extension = ".mp4";
};

/// What the viewer of an export must see: from `time` on picture `number`, frozen if `marker` is set.
struct ExpectedFrame {
    double time = 0;
    int number = 0;
    std::optional<int> marker;
    int heard = 0;       ///< the source frame whose sound plays, if it is not frozen
    bool goesOn = false; ///< in a sound-only tail: the previous picture stays on screen
};

class ExportedMovie {
public:
    /// Renders into `folder`. Notices are kept.
    ExportedMovie(const ExportJob& job, const std::filesystem::path& folder);

    const std::filesystem::path& file() const { return file_; }
    const std::vector<std::string>& notices() const { return notices_; }
    const std::vector<Highlight>& highlights() const { return highlights_; }
    /// Each frame of the output; freezes are listed frame by frame. Times count from the start of the output.
    const std::vector<ExpectedFrame>& expected() const { return expected_; }

    /// Every moving picture is there once, at its time. A freeze shows its picture from its first frame to
    /// its last. Nothing else is shown.
    void expectRightPictures(const std::filesystem::path& file, const std::string& tolerated = "",
                             const std::vector<std::string>& decoderArguments = {}) const;
    /// The same on a simulated screen that samples each frame early, in its middle and late. Pictures too
    /// short to be sampled do not count.
    void expectRightOnScreen(const std::filesystem::path& file,
                             const std::vector<std::string>& decoderArguments = {}) const;
    /// Accurate seeks by ffmpeg all over the movie, `ahead` seconds before the start of a frame, must find
    /// that frame's picture.
    void expectRightSeeks(const std::filesystem::path& file, int seeks, double ahead = 0.002) const;
    /// Sound resumes where it stopped, at most `maxOffset` seconds from its picture. Freezes are silent.
    void expectRightSound(double maxOffset) const;
    /// All source pictures within the range decode to exactly the same samples as in the source.
    void expectSourcePicturesUntouched() const;

private:
    const ExpectedFrame& at(double time) const;

    ExportJob job_;
    std::filesystem::path source_;
    std::filesystem::path file_;
    std::vector<std::string> notices_;
    std::vector<Highlight> highlights_;
    std::vector<ExpectedFrame> expected_;
    double duration_ = 0;
};

} // namespace zelvra::test
