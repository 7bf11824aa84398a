// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/files/ByteSource.h"
#include "ZelvraCore/media/ffmpeg/FFmpegHandles.h"

#include <cstdint>
#include <memory>
#include <string>

namespace zelvra::media {

/// The QuickTime/MP4 demuxer over a ByteSource: opens a movie, seeks, and reads the packets of one track. It
/// reads no other file and no network: media that the movie refers to elsewhere stays unread. Used by one
/// thread at a time.
class Demuxer {
public:
    /// Opens the movie and selects the track of that id. `bytes` outlives this. Throws MediaError.
    Demuxer(const files::ByteSource& bytes, std::uint32_t trackId);
    Demuxer(const Demuxer&) = delete;
    Demuxer& operator=(const Demuxer&) = delete;

    const AVStream& stream() const { return *stream_; }
    AVRational timeBase() const { return stream_->time_base; }
    /// The movie's tags: when, where and by which device it was taken. Owned by this.
    const AVDictionary* metadata() const { return context_->metadata; }

    /// Goes to the last sync sample whose decode time is at or before `ticks`, else to the first one.
    void seek(std::int64_t ticks);

    /// The track's next packet; false at its end. Throws MediaError when the file cannot be read.
    bool read(AVPacket& packet);

private:
    /// What the library calls back for bytes.
    struct Reader {
        const files::ByteSource* bytes = nullptr;
        std::uint64_t position = 0;
    };
    struct BufferedFileDeleter {
        void operator()(AVIOContext* file) const;
    };
    using BufferedFile = std::unique_ptr<AVIOContext, BufferedFileDeleter>;

    static int readBytes(void* reader, std::uint8_t* buffer, int size);
    static std::int64_t seekBytes(void* reader, std::int64_t offset, int whence);

    void openMovie();
    void selectTrack(std::uint32_t trackId);
    std::string cannotRead() const;

    Reader reader_;
    BufferedFile file_;
    InputContext context_;
    AVStream* stream_ = nullptr;
};

} // namespace zelvra::media
