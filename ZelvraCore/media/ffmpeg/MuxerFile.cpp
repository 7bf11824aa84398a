// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/media/ffmpeg/MuxerFile.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace zelvra::media {

namespace {

constexpr int bufferSize = 64 * 1024;

} // namespace

MuxerFile::View::View(MuxerFile& owner, bool writes) : file(owner) {
    auto* buffer = static_cast<unsigned char*>(av_malloc(bufferSize));
    context = avio_alloc_context(buffer, bufferSize, writes ? 1 : 0, this, &MuxerFile::read,
                                 &MuxerFile::write, &MuxerFile::seek);
    if (context == nullptr) {
        av_free(buffer);
        throw std::bad_alloc();
    }
}

MuxerFile::View::~View() {
    av_freep(&context->buffer);
    avio_context_free(&context);
}

MuxerFile::MuxerFile(const std::filesystem::path& path, AVFormatContext& context)
    : name_(path.string()), descriptor_(::open(path.c_str(), O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0666)) {
    if (descriptor_ < 0) {
        throw MediaError::cannotWrite(name_, systemReason(errno));
    }
    writing_ = std::make_unique<View>(*this, true);
    context.pb = writing_->context;
    context.opaque = this;
    context.io_open = openAgain;
    context.io_close2 = closeAgain;
}

MuxerFile::~MuxerFile() {
    ::close(descriptor_);
}

void MuxerFile::throwIfFailed() const {
    if (error_ != 0) {
        throw MediaError::cannotWrite(name_, systemReason(error_));
    }
}

void MuxerFile::flush() {
    avio_flush(writing_->context);
    throwIfFailed();
}

template <class Byte>
int MuxerFile::write(void* view, Byte* bytes, int size) {
    auto& [file, position, context] = *static_cast<View*>(view);
    for (int written = 0; written < size;) {
        const ssize_t count =
            ::pwrite(file.descriptor_, bytes + written, static_cast<std::size_t>(size - written), position);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            return file.fail(errno);
        }
        written += static_cast<int>(count);
        position += count;
        file.end_ = std::max(file.end_, position);
    }
    return size;
}

int MuxerFile::read(void* view, std::uint8_t* bytes, int size) {
    auto& [file, position, context] = *static_cast<View*>(view);
    ssize_t count = 0;
    do {
        count = ::pread(file.descriptor_, bytes, static_cast<std::size_t>(size), position);
    } while (count < 0 && errno == EINTR);
    if (count < 0) {
        return file.fail(errno);
    }
    if (count == 0) { // too early if another program has made the file shorter
        return position < file.end_ ? file.fail(EIO) : AVERROR_EOF;
    }
    position += count;
    return static_cast<int>(count);
}

std::int64_t MuxerFile::seek(void* view, std::int64_t offset, int whence) {
    auto& [file, position, context] = *static_cast<View*>(view);
    switch (whence & ~AVSEEK_FORCE) {
    case AVSEEK_SIZE: return file.end_;
    case SEEK_SET: break;
    case SEEK_CUR: offset += position; break;
    case SEEK_END: offset += file.end_; break;
    default: return AVERROR(EINVAL);
    }
    if (offset < 0) {
        return file.fail(EINVAL);
    }
    position = offset;
    return position;
}

int MuxerFile::openAgain(AVFormatContext* context, AVIOContext** opened, const char* /*url*/, int flags,
                         AVDictionary** /*options*/) {
    auto& file = *static_cast<MuxerFile*>(context->opaque);
    if ((flags & AVIO_FLAG_WRITE) != 0) {
        return file.fail(EACCES); // it writes no other file
    }
    try {
        *opened = std::make_unique<View>(file, false).release()->context;
        return 0;
    } catch (const std::bad_alloc&) {
        return file.fail(ENOMEM); // an exception must not pass through the library, which is C
    }
}

int MuxerFile::closeAgain(AVFormatContext* /*context*/, AVIOContext* opened) {
    const std::unique_ptr<View> closing(static_cast<View*>(opened->opaque));
    return 0;
}

int MuxerFile::fail(int error) {
    error_ = error_ != 0 ? error_ : error;
    return AVERROR(error);
}

} // namespace zelvra::media
