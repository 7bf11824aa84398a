// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/media/ffmpeg/FFmpegHandles.h"

#include <array>
#include <limits>

extern "C" {
#include <libavutil/error.h>
#include <libavutil/log.h>
#include <libavutil/mathematics.h>
}

namespace zelvra::media {

void quietLibraries() {
    av_log_set_level(AV_LOG_QUIET);
}

std::string errorText(int code) {
    std::array<char, AV_ERROR_MAX_STRING_SIZE> text{};
    av_strerror(code, text.data(), text.size());
    return text.data();
}

MediaError::Cause causeOfReading(int code) {
    switch (code) {
    case AVERROR_INVALIDDATA:
    case AVERROR_EOF: return MediaError::Cause::corrupt;
    case AVERROR_DECODER_NOT_FOUND:
    case AVERROR_DEMUXER_NOT_FOUND:
    case AVERROR_PATCHWELCOME:
    case AVERROR(ENOSYS): return MediaError::Cause::unsupported;
    default: return MediaError::Cause::unreadable;
    }
}

int throwOnError(int code, std::string_view what) {
    return throwOnError(code, what, causeOfReading(code));
}

int throwOnError(int code, std::string_view what, MediaError::Cause cause) {
    if (code < 0) {
        throw MediaError(cause, std::string(what) + ": " + errorText(code));
    }
    return code;
}

namespace {

AVRounding roundingMode(Rounding rounding) {
    switch (rounding) {
    case Rounding::down: return AV_ROUND_DOWN;
    case Rounding::up: return AV_ROUND_UP;
    case Rounding::towardZero: return AV_ROUND_ZERO;
    case Rounding::nearest: break;
    }
    return AV_ROUND_NEAR_INF;
}

} // namespace

std::int64_t ticksOfTime(const CMTime& time, AVRational timeBase, Rounding rounding) {
    const AVRational unit{1, time.timescale};
    const std::int64_t ticks = time.isNumeric()
                                   ? av_rescale_q_rnd(time.value, unit, timeBase, roundingMode(rounding))
                                   : std::numeric_limits<std::int64_t>::min();
    if (ticks == std::numeric_limits<std::int64_t>::min()) {
        throw MediaError(MediaError::Cause::outOfRange, "the time lies beyond what a movie can hold");
    }
    return ticks;
}

} // namespace zelvra::media
