// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "tests/support/NumberedPicture.h"

#include <filesystem>
#include <memory>
#include <string>

namespace zelvra::test {

/// A movie that GStreamer's playbin has open and paused, as players on that framework do before they show a
/// picture. Chooses its own demuxer and decoders; sound is decoded and thrown away.
class GStreamerMovie {
public:
    /// Opens `movie` and waits for its first picture. Throws std::runtime_error with what GStreamer says.
    explicit GStreamerMovie(const std::filesystem::path& movie);
    ~GStreamerMovie();
    GStreamerMovie(const GStreamerMovie&) = delete;
    GStreamerMovie& operator=(const GStreamerMovie&) = delete;

    /// The picture that an accurate, flushing seek to `seconds` shows. Throws std::runtime_error where it
    /// shows none.
    PictureReading seek(double seconds);

private:
    struct Pipeline;
    std::unique_ptr<Pipeline> pipeline_;
};

} // namespace zelvra::test
