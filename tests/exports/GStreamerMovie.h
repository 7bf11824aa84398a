// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "tests/support/NumberedPicture.h"

#include <filesystem>
#include <memory>
#include <string>

namespace zelvra::test {

/// A movie opened and paused by GStreamer's playbin, as players on that framework do it before they show a
/// picture. playbin chooses demuxer and decoders. Sound is decoded and discarded.
class GStreamerMovie {
public:
    /// Opens `movie` and waits for its first picture. Throws std::runtime_error with GStreamer's message.
    explicit GStreamerMovie(const std::filesystem::path& movie);
    ~GStreamerMovie();
    GStreamerMovie(const GStreamerMovie&) = delete;
    GStreamerMovie& operator=(const GStreamerMovie&) = delete;

    /// The picture that an accurate, flushing seek to `seconds` shows. Throws std::runtime_error if there is
    /// none.
    PictureReading seek(double seconds);

private:
    struct Pipeline;
    std::unique_ptr<Pipeline> pipeline_;
};

} // namespace zelvra::test
