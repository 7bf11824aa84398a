// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/files/ByteSource.h"
#include "ZelvraCore/isobmff/Movie.h"
#include "ZelvraCore/media/FrameIndex.h"
#include "ZelvraCore/media/VideoFormat.h"

#include <filesystem>
#include <memory>
#include <optional>

namespace zelvra {

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
    /// Opens the file; its content is looked at when it is first needed. Throws MediaError::unreadable.
    explicit Asset(const std::filesystem::path& movie);

    const std::filesystem::path& path() const;
    const files::ByteSource& bytes() const;

    /// The movie's index. Throws as isobmff::readMovie.
    const isobmff::Movie& movie() const;

    /// The track that is shown: the first enabled picture track, else the first. Pictures that only
    /// illustrate chapters are none. Null for a movie without pictures.
    const isobmff::Track* videoTrack() const;
    bool hasAudio() const;

    /// The pictures' size and orientation. Decodes the first picture once, as only the coded stream tells how
    /// large it is and what shape its pixels have. Throws ZVError::noVideoTrack.
    const VideoFormat& videoFormat() const;

    /// The presentation times of the video track's pictures, hidden ones left out; empty where it shows none.
    /// A last picture that the file gives no length lasts as long as the one before it. Throws
    /// ZVError::noVideoTrack.
    const FrameIndex& frames() const;

    /// Where the presentation of what plays ends, the shown pictures or a sound track, in that track's ticks.
    CMTime duration() const;

    /// Frees what waits for the next grab: its tables take tens of megabytes for a recording of hours, and
    /// are read again when they are needed.
    void closeIdleReaders() const;

    /// What the media layer keeps for itself.
    struct Internals;
    Internals& internals() const { return *internals_; }

private:
    std::shared_ptr<Internals> internals_;
};

} // namespace zelvra
