// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/media/ffmpeg/FFmpegHandles.h"

#include <cstdint>
#include <filesystem>
#include <string>

namespace zelvra::media {

/// The file that a muxer of libavformat writes, and reads again to move its index to the front. The muxer
/// ignores some failures of seeks and reads, so this remembers the first failure of the system. Used by one
/// thread at a time.
class MuxerFile {
public:
    /// Creates the file, replacing one that is there, and makes `context` use it. `context` must not outlive
    /// this. Throws MediaError::unwritable.
    MuxerFile(const std::filesystem::path& path, AVFormatContext& context);
    MuxerFile(const MuxerFile&) = delete;
    MuxerFile& operator=(const MuxerFile&) = delete;
    ~MuxerFile();

    /// Throws MediaError::unwritable if any operation on the file has failed so far.
    void throwIfFailed() const;
    /// Writes what is buffered, then as `throwIfFailed`.
    void flush();

private:
    /// The library's view of the file. The muxer has one to write, and opens a second one to read.
    struct View {
        explicit View(MuxerFile& file, bool writes);
        View(const View&) = delete;
        View& operator=(const View&) = delete;
        ~View();

        MuxerFile& file;
        std::int64_t position = 0;
        AVIOContext* context = nullptr;
    };

    /// `Byte` is const in newer versions of the library.
    template <class Byte>
    static int write(void* view, Byte* bytes, int size);
    static int read(void* view, std::uint8_t* bytes, int size);
    static std::int64_t seek(void* view, std::int64_t offset, int whence);
    static int openAgain(AVFormatContext* context, AVIOContext** opened, const char* url, int flags,
                         AVDictionary** options);
    static int closeAgain(AVFormatContext* context, AVIOContext* opened);

    int fail(int error);

    std::string name_;
    int descriptor_ = -1;
    std::int64_t end_ = 0; ///< of what is written
    int error_ = 0;        ///< the first errno
    std::unique_ptr<View> writing_;
};

} // namespace zelvra::media
