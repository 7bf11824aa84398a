// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/media/ffmpeg/LibraryVersions.h"

namespace zelvra::media {

#if LIBAVCODEC_VERSION_INT >= AV_VERSION_INT(61, 13, 100) // FFmpeg 7.1

std::span<const std::uint8_t> sideData(const AVStream& stream, AVPacketSideDataType type) {
    const AVCodecParameters& parameters = *stream.codecpar;
    const AVPacketSideData* found =
        av_packet_side_data_get(parameters.coded_side_data, parameters.nb_coded_side_data, type);
    return found != nullptr ? std::span<const std::uint8_t>(found->data, found->size)
                            : std::span<const std::uint8_t>();
}

std::span<const AVSampleFormat> sampleFormats(const AVCodec& encoder) {
    const void* formats = nullptr;
    int count = 0;
    const int code =
        avcodec_get_supported_config(nullptr, &encoder, AV_CODEC_CONFIG_SAMPLE_FORMAT, 0, &formats, &count);
    if (code < 0 || formats == nullptr) {
        return {};
    }
    return {static_cast<const AVSampleFormat*>(formats), static_cast<std::size_t>(count)};
}

#else

std::span<const std::uint8_t> sideData(const AVStream& stream, AVPacketSideDataType type) {
    std::size_t size = 0;
    const std::uint8_t* data = av_stream_get_side_data(&stream, type, &size);
    return {data, data != nullptr ? size : 0};
}

std::span<const AVSampleFormat> sampleFormats(const AVCodec& encoder) {
    std::size_t count = 0;
    while (encoder.sample_fmts != nullptr && encoder.sample_fmts[count] != AV_SAMPLE_FMT_NONE) {
        ++count;
    }
    return {encoder.sample_fmts, count};
}

#endif

} // namespace zelvra::media
