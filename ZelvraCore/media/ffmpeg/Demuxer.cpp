// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/media/ffmpeg/Demuxer.h"

#include <algorithm>
#include <limits>

namespace zelvra::media {

namespace {

constexpr int bufferSize = 64 * 1024;

int refuseToOpen(AVFormatContext* /*context*/, AVIOContext** /*file*/, const char* /*url*/, int /*flags*/,
                 AVDictionary** /*options*/) {
    return AVERROR(EACCES);
}

} // namespace

void Demuxer::BufferedFileDeleter::operator()(AVIOContext* file) const {
    av_freep(&file->buffer);
    avio_context_free(&file);
}

Demuxer::Demuxer(const files::ByteSource& bytes, std::uint32_t trackId) : reader_{&bytes, 0} {
    quietLibraries();
    openMovie();
    selectTrack(trackId);
}

void Demuxer::openMovie() {
    auto* buffer = static_cast<unsigned char*>(av_malloc(bufferSize));
    file_.reset(avio_alloc_context(buffer, bufferSize, 0, &reader_, readBytes, nullptr, seekBytes));
    if (file_ == nullptr) {
        av_free(buffer);
        throw std::bad_alloc();
    }
    InputContext context(owned<InputContext>(avformat_alloc_context()));
    context->pb = file_.get();
    context->io_open = refuseToOpen;
    // Opening frees the context when it fails.
    AVFormatContext* opening = context.release();
    throwOnError(avformat_open_input(&opening, nullptr, av_find_input_format("mov"), nullptr), cannotRead());
    context_.reset(opening);
}

void Demuxer::selectTrack(std::uint32_t trackId) {
    for (unsigned index = 0; index < context_->nb_streams; ++index) {
        AVStream* stream = context_->streams[index];
        const bool wanted = stream_ == nullptr && static_cast<std::uint32_t>(stream->id) == trackId;
        stream->discard = wanted ? AVDISCARD_DEFAULT : AVDISCARD_ALL;
        if (wanted) {
            stream_ = stream;
        }
    }
    if (stream_ == nullptr) {
        throw MediaError::cannot(MediaError::Cause::unsupported, "read", reader_.bytes->name(),
                                 "its track has no readable media");
    }
}

void Demuxer::seek(std::int64_t ticks) {
    throwOnError(av_seek_frame(context_.get(), stream_->index, ticks, AVSEEK_FLAG_BACKWARD), cannotRead());
}

bool Demuxer::read(AVPacket& packet) {
    for (;;) {
        const int code = av_read_frame(context_.get(), &packet);
        if (code == AVERROR_EOF) {
            return false;
        }
        throwOnError(code, cannotRead());
        if (packet.stream_index == stream_->index) {
            return true;
        }
        av_packet_unref(&packet);
    }
}

std::string Demuxer::cannotRead() const {
    return cannotDo("read", reader_.bytes->name());
}

int Demuxer::readBytes(void* reader, std::uint8_t* buffer, int size) {
    auto& [bytes, position] = *static_cast<Reader*>(reader);
    const std::uint64_t left = bytes->size() - std::min(position, bytes->size());
    const auto length = static_cast<std::size_t>(std::min<std::uint64_t>(left, static_cast<unsigned>(size)));
    if (length == 0) {
        return AVERROR_EOF;
    }
    try {
        bytes->read(position, {buffer, length});
    } catch (const MediaError&) {
        return AVERROR(EIO); // an exception must not pass through the library, which is C
    }
    position += length;
    return static_cast<int>(length);
}

std::int64_t Demuxer::seekBytes(void* reader, std::int64_t offset, int whence) {
    auto& [bytes, position] = *static_cast<Reader*>(reader);
    const auto size = static_cast<std::int64_t>(bytes->size());
    std::int64_t base = 0;
    switch (whence & ~AVSEEK_FORCE) {
    case AVSEEK_SIZE: return size;
    case SEEK_SET: break;
    case SEEK_CUR: base = static_cast<std::int64_t>(position); break;
    case SEEK_END: base = size; break;
    default: return AVERROR(EINVAL);
    }
    if (offset < -base || offset > std::numeric_limits<std::int64_t>::max() - base) {
        return AVERROR(EINVAL);
    }
    position = static_cast<std::uint64_t>(base + offset);
    return base + offset;
}

} // namespace zelvra::media
