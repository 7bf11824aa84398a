// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/records/ColorDescription.h"
#include "ZelvraCore/records/MovieContainer.h"
#include "ZelvraCore/records/PixelAspect.h"
#include "ZelvraCore/records/VideoCodec.h"

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace zelvra::media {

/// The properties of a video track that its index states in addition to its samples.
struct VideoTrackFormat {
    VideoCodec codec = VideoCodec::h264;
    int width = 0; ///< visible, in the picture's own pixels
    int height = 0;
    PixelAspect pixelAspect;
    ColorDescription color;
    std::vector<std::uint8_t> parameterSets; ///< in the byte stream format
    std::int32_t timescale = 0;              ///< of the track, and of its samples' times
};

/// A track of AAC.
struct SoundTrackFormat {
    int sampleRate = 0; ///< the track's timescale
    int channels = 0;
    int packetFrames = 0; ///< a packet holds
    std::int64_t bitRate = 0;
    std::vector<std::uint8_t> audioSpecificConfig;
};

/// One sample on its way into a movie. Times are ticks of its track's timescale on the movie's timeline; what
/// would be presented before 0 (an encoder's warm-up) is hidden by the track's edit.
struct CodedSample {
    std::span<const std::uint8_t> bytes; ///< of video: in the byte stream format
    std::int64_t presentationTime = 0;
    std::int64_t decodeTime = 0; ///< strictly increasing
    std::int64_t duration = 0;
    bool sync = true;
};

/// Writes coded samples into a new movie file, at exactly the given times. It has no encoder. Movies whose
/// samples come from another movie are written by the passthrough writer instead.
///
/// One thread at a time. Failures are thrown as MediaError::unwritable. A writer that is not finished leaves
/// a broken file.
class Muxer {
public:
    struct Options {
        MovieContainer container = MovieContainer::quickTime;
        bool indexFirst = false;       ///< costs a second pass over the file when it is finished
        std::int32_t timescale = 1000; ///< of the movie, in which its duration is stored
        /// By FFmpeg's names: "creation_time", "location" ...
        std::map<std::string, std::string> metadata;
    };

    /// Creates the file, replacing one that is there.
    Muxer(const std::filesystem::path& movie, Options options);
    Muxer(Muxer&&) noexcept;
    Muxer& operator=(Muxer&&) noexcept;
    ~Muxer();

    /// All tracks are added before the first sample. The result names the track to `write`.
    std::size_t addTrack(const VideoTrackFormat& format);
    std::size_t addTrack(const SoundTrackFormat& format);

    /// Tracks may be written in turns of any length; the file interleaves them by time.
    void write(std::size_t track, const CodedSample& sample);

    /// Writes the index and closes the file.
    void finish();

private:
    class Implementation;
    std::unique_ptr<Implementation> implementation_;
};

} // namespace zelvra::media
