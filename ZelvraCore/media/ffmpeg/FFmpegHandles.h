// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

/// The FFmpeg libraries' objects as values that close themselves, their error codes as MediaError, and
/// CMTime in their ticks.

#include "ZelvraCore/records/CMTime.h"
#include "ZelvraCore/records/MediaError.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/audio_fifo.h>
#include <libswresample/swresample.h>
#include <libswscale/swscale.h>
}

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace zelvra::media {

/// Calls a C library's own "free through a pointer to the pointer".
template <auto freeThrough>
struct Deleter {
    template <class Object>
    void operator()(Object* object) const {
        freeThrough(&object);
    }
};

struct OutputContextDeleter {
    void operator()(AVFormatContext* context) const { avformat_free_context(context); }
};
struct ScalerDeleter {
    void operator()(SwsContext* scaler) const { sws_freeContext(scaler); }
};
struct AudioFifoDeleter {
    void operator()(AVAudioFifo* fifo) const { av_audio_fifo_free(fifo); }
};

using InputContext = std::unique_ptr<AVFormatContext, Deleter<avformat_close_input>>;
/// Does not own the file that it writes to: see MuxerFile.
using OutputContext = std::unique_ptr<AVFormatContext, OutputContextDeleter>;
using CodecContext = std::unique_ptr<AVCodecContext, Deleter<avcodec_free_context>>;
using Frame = std::unique_ptr<AVFrame, Deleter<av_frame_free>>;
using Packet = std::unique_ptr<AVPacket, Deleter<av_packet_free>>;
using Resampler = std::unique_ptr<SwrContext, Deleter<swr_free>>;
using Scaler = std::unique_ptr<SwsContext, ScalerDeleter>;
using AudioFifo = std::unique_ptr<AVAudioFifo, AudioFifoDeleter>;

/// `object` as a handle. Throws std::bad_alloc if it is null, as the library had no memory for it.
template <class Handle>
Handle owned(typename Handle::pointer object) {
    if (object == nullptr) {
        throw std::bad_alloc();
    }
    return Handle(object);
}

inline Frame makeFrame() {
    return owned<Frame>(av_frame_alloc());
}
inline Packet makePacket() {
    return owned<Packet>(av_packet_alloc());
}

/// Keeps the libraries from writing to standard error: what matters comes as an error code, and a user gets
/// one line. Process-wide; may be called any number of times, from any thread.
void quietLibraries();

/// The library's own words for an error code, such as "Invalid data found when processing input".
std::string errorText(int code);

/// What an error code means for whoever reads a movie. Writers pass MediaError::Cause::unwritable themselves.
MediaError::Cause causeOfReading(int code);

/// Returns `code` when it is no error. Otherwise throws MediaError with the line "`what`: error text".
int throwOnError(int code, std::string_view what);
int throwOnError(int code, std::string_view what, MediaError::Cause cause);

/// `time` in ticks of `timeBase` seconds. Throws MediaError (outOfRange) for a time that is not numeric or
/// that 64 bits do not hold.
std::int64_t ticksOfTime(const CMTime& time, AVRational timeBase, Rounding rounding = Rounding::nearest);

} // namespace zelvra::media
