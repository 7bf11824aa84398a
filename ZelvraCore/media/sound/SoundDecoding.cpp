// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/media/sound/SoundDecoding.h"
#include "ZelvraCore/media/AssetIndex.h"

namespace zelvra::media {

std::uint32_t soundTrackId(const Asset& movie) {
    const isobmff::Track* track = movieOf(movie).firstTrack(isobmff::soundHandler);
    if (track == nullptr) {
        throw MediaError::cannot(MediaError::Cause::unsupported, "read", movie.path().string(),
                                 "the movie has no sound");
    }
    return track->id;
}

CodecContext openSoundDecoder(const AVStream& stream, const std::string& name) {
    const AVCodec* codec = avcodec_find_decoder(stream.codecpar->codec_id);
    if (codec == nullptr) {
        throw MediaError::cannot(MediaError::Cause::unsupported, "read", name,
                                 "there is no decoder for its sound");
    }
    auto decoder = owned<CodecContext>(avcodec_alloc_context3(codec));
    const std::string cannotRead = cannotDo("read", name);
    throwOnError(avcodec_parameters_to_context(decoder.get(), stream.codecpar), cannotRead);
    decoder->pkt_timebase = stream.time_base;
    throwOnError(avcodec_open2(decoder.get(), codec, nullptr), cannotRead, MediaError::Cause::unsupported);
    return decoder;
}

} // namespace zelvra::media
