// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/media/sound/SoundDecoding.h"

namespace zelvra {

std::uint32_t soundTrackId(const Asset& movie) {
    const isobmff::Track* track = movie.movie().firstTrack(isobmff::soundHandler);
    if (track == nullptr) {
        throw MediaError(MediaError::Cause::unsupported, movie.path().string() + ": the movie has no sound");
    }
    return track->id;
}

ffmpeg::CodecContext openSoundDecoder(const AVStream& stream, const std::string& name) {
    const AVCodec* codec = avcodec_find_decoder(stream.codecpar->codec_id);
    if (codec == nullptr) {
        throw MediaError(MediaError::Cause::unsupported, name + ": there is no decoder for its sound");
    }
    auto decoder = ffmpeg::owned<ffmpeg::CodecContext>(avcodec_alloc_context3(codec));
    ffmpeg::throwOnError(avcodec_parameters_to_context(decoder.get(), stream.codecpar), name);
    decoder->pkt_timebase = stream.time_base;
    ffmpeg::throwOnError(avcodec_open2(decoder.get(), codec, nullptr), name, MediaError::Cause::unsupported);
    return decoder;
}

} // namespace zelvra
