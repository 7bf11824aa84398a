// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/media/FrameIndex.h"
#include "ZelvraCore/media/VideoFormat.h"
#include "ZelvraCore/records/CMTime.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <vector>

namespace zelvra {

namespace media {
struct AssetContents;
} // namespace media

/// An opened movie: the one object through which the engine reads a source. It keeps the file open, so that
/// everything that uses one asset reads the same bytes, and remembers what was costly to find out (the parsed
/// index, idle demuxers). Decoded pictures are not kept.
///
/// Only the named file is ever read: no network, no media that the movie refers to in other files.
///
/// A handle that is cheap to copy; copies share all. Every operation may be called from several threads at
/// once and may block on the file. Failures are thrown as MediaError with one line that names the file; an
/// operation that failed fails again in the same way.
class Asset {
public:
    /// Opens the file. Its content is read when it is first needed. Throws MediaError::unreadable.
    explicit Asset(const std::filesystem::path& movie);

    const std::filesystem::path& path() const;

    /// Which of the file's picture tracks is shown, counted from 1 in the file's order: the first enabled
    /// one, else the first. Pictures that only illustrate chapters are never shown. 0 for a movie that shows
    /// none.
    int videoTrackNumber() const;
    bool hasAudio() const;

    /// The pictures' size and orientation. Decodes the first picture once, as only the coded stream says how
    /// large it is and what shape its pixels have. Throws ZVError::noVideoTrack, and MediaError::unsupported
    /// if the pictures are encrypted or there are none.
    const VideoFormat& videoFormat() const;

    /// The presentation times of the video track's pictures, hidden ones left out; at least one. A last
    /// picture that the file gives no length lasts as long as the one before it. Throws as videoFormat; a
    /// movie whose edits show none of its pictures has none.
    const FrameIndex& frames() const;

    /// When the sync samples of the video track are presented, those from which decoding can start: in order,
    /// in the ticks of `frames`. Empty for a movie without pictures. One pass over the track's samples.
    std::vector<std::int64_t> syncTimes() const;

    /// When the presentation ends: the shown pictures or the longest sound track, in that track's ticks.
    CMTime duration() const;

    /// Frees what waits for the next grab: its tables take tens of megabytes for a recording of hours, and
    /// are read again when they are needed.
    void closeIdleReaders() const;

    /// For the engine's own rooms, through media/AssetIndex.h.
    media::AssetContents& contents() const { return *contents_; }

private:
    std::shared_ptr<media::AssetContents> contents_;
};

} // namespace zelvra
