// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/media/pixels/RgbConverter.h"

#include "ZelvraCore/media/VideoFormat.h"

#include <zimg.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <memory>

namespace zelvra::media {

namespace {

/// Of plane addresses and strides, for zimg and for the widest vector units.
constexpr int alignment = 64;

struct GraphDeleter {
    void operator()(zimg_filter_graph* graph) const { zimg_filter_graph_free(graph); }
};
using Graph = std::unique_ptr<zimg_filter_graph, GraphDeleter>;

struct AlignedDeleter {
    void operator()(void* memory) const { av_free(memory); }
};

[[noreturn]] void refuse() {
    throw MediaError(MediaError::Cause::unsupported,
                     "the movie's pictures have a colour format that cannot be shown");
}

const AVPixFmtDescriptor& descriptorOf(const AVFrame& frame) {
    const AVPixFmtDescriptor* format = av_pix_fmt_desc_get(static_cast<AVPixelFormat>(frame.format));
    if (format == nullptr) {
        refuse();
    }
    return *format;
}

bool isRgb(const AVPixFmtDescriptor& format) {
    return (format.flags & AV_PIX_FMT_FLAG_RGB) != 0;
}

/// The same colours as full-range R'G'B'.
ColorDescription colorOfRgb(const ColorDescription& color) {
    return {color.primaries, color.transfer, AVCOL_SPC_RGB, true, 0};
}

Frame allocateFrame(AVPixelFormat format, int width, int height) {
    Frame frame = makeFrame();
    frame->format = format;
    frame->width = width;
    frame->height = height;
    if (av_frame_get_buffer(frame.get(), alignment) < 0) {
        throw std::bad_alloc();
    }
    return frame;
}

int roundedUp(int value, int log2Unit) {
    return AV_CEIL_RSHIFT(value, log2Unit) << log2Unit;
}

/// zimg takes aligned planes, and whole chroma samples only.
bool fitsDirectly(const AVFrame& frame, const AVPixFmtDescriptor& format) {
    const bool whole = roundedUp(frame.width, format.log2_chroma_w) == frame.width &&
                       roundedUp(frame.height, format.log2_chroma_h) == frame.height;
    const auto aligned = [&](int plane) {
        return std::bit_cast<std::uintptr_t>(frame.data[plane]) % alignment == 0 &&
               frame.linesize[plane] % alignment == 0;
    };
    return whole && aligned(0) && (format.nb_components < 3 || (aligned(1) && aligned(2)));
}

void copyPlane(const AVFrame& from, AVFrame& to, int plane, std::size_t fromBytes, int fromRows,
               std::size_t toBytes, int toRows, std::size_t sampleBytes) {
    for (int y = 0; y < toRows; ++y) {
        const std::uint8_t* source =
            from.data[plane] + static_cast<std::ptrdiff_t>(std::min(y, fromRows - 1)) * from.linesize[plane];
        std::uint8_t* target = to.data[plane] + static_cast<std::ptrdiff_t>(y) * to.linesize[plane];
        std::memcpy(target, source, fromBytes);
        for (std::size_t x = fromBytes; x < toBytes; x += sampleBytes) {
            std::memcpy(target + x, source + fromBytes - sampleBytes, sampleBytes);
        }
    }
}

/// A copy in aligned memory, its right and bottom edges repeated up to whole chroma samples.
Frame padded(const AVFrame& frame, const AVPixFmtDescriptor& format) {
    Frame copy =
        allocateFrame(static_cast<AVPixelFormat>(frame.format), roundedUp(frame.width, format.log2_chroma_w),
                      roundedUp(frame.height, format.log2_chroma_h));
    const std::size_t sampleBytes = format.comp[0].depth > 8 ? 2 : 1;
    for (int plane = 0; plane < (format.nb_components < 3 ? 1 : 3); ++plane) {
        const bool chroma = plane > 0 && !isRgb(format);
        const int shiftX = chroma ? format.log2_chroma_w : 0;
        const int shiftY = chroma ? format.log2_chroma_h : 0;
        const auto rowBytes = [&](int width) {
            return static_cast<std::size_t>(AV_CEIL_RSHIFT(width, shiftX)) * sampleBytes;
        };
        copyPlane(frame, *copy, plane, rowBytes(frame.width), AV_CEIL_RSHIFT(frame.height, shiftY),
                  rowBytes(copy->width), AV_CEIL_RSHIFT(copy->height, shiftY), sampleBytes);
    }
    return copy;
}

/// Packed, palette and other rare formats, as planes.
Frame unpacked(const AVFrame& frame, const ColorDescription& color) {
    Frame planes = allocateFrame(AV_PIX_FMT_GBRP, frame.width, frame.height);
    const auto format = static_cast<AVPixelFormat>(frame.format);
    const Scaler scaler(sws_getContext(
        frame.width, frame.height, format, frame.width, frame.height, AV_PIX_FMT_GBRP,
        SWS_BICUBIC | SWS_ACCURATE_RND | SWS_FULL_CHR_H_INT | SWS_FULL_CHR_H_INP, nullptr, nullptr, nullptr));
    if (scaler == nullptr) {
        refuse();
    }
    const int* matrix = sws_getCoefficients(matrixOrGuess(color.matrix, frame.width, frame.height));
    constexpr int unity = 1 << 16;
    sws_setColorspaceDetails(scaler.get(), matrix, color.fullRange ? 1 : 0, matrix, 1, 0, unity, unity);
    if (sws_scale(scaler.get(), frame.data, frame.linesize, 0, frame.height, planes->data, planes->linesize) <
        0) {
        refuse();
    }
    return planes;
}

zimg_image_format describe(const AVFrame& frame, const AVPixFmtDescriptor& format,
                           const ColorDescription& color) {
    zimg_image_format result;
    zimg_image_format_default(&result, ZIMG_API_VERSION);
    result.width = static_cast<unsigned>(frame.width);
    result.height = static_cast<unsigned>(frame.height);
    result.pixel_type = format.comp[0].depth > 8 ? ZIMG_PIXEL_WORD : ZIMG_PIXEL_BYTE;
    result.depth = static_cast<unsigned>(format.comp[0].depth);
    result.pixel_range = color.fullRange ? ZIMG_RANGE_FULL : ZIMG_RANGE_LIMITED;
    if (isRgb(format)) {
        result.color_family = ZIMG_COLOR_RGB;
        result.matrix_coefficients = ZIMG_MATRIX_RGB;
        return result;
    }
    const int matrix = matrixOrGuess(color.matrix, frame.width, frame.height);
    result.color_family = format.nb_components < 3 ? ZIMG_COLOR_GREY : ZIMG_COLOR_YUV;
    result.matrix_coefficients = static_cast<zimg_matrix_coefficients_e>(matrix);
    result.subsample_w = format.nb_components < 3 ? 0 : format.log2_chroma_w;
    result.subsample_h = format.nb_components < 3 ? 0 : format.log2_chroma_h;
    const int location = std::clamp(color.chromaLocation - 1, 0, static_cast<int>(ZIMG_CHROMA_BOTTOM));
    result.chroma_location = static_cast<zimg_chroma_location_e>(location);
    return result;
}

Graph buildGraph(const zimg_image_format& source, const zimg_image_format& target) {
    zimg_graph_builder_params parameters;
    zimg_graph_builder_params_default(&parameters, ZIMG_API_VERSION);
    parameters.resample_filter = ZIMG_RESIZE_SPLINE36;
    parameters.resample_filter_uv = ZIMG_RESIZE_BICUBIC;
    parameters.filter_param_a_uv = 0; // Catmull-Rom: passes through the samples
    parameters.filter_param_b_uv = 0.5;
    Graph graph(zimg_filter_graph_build(&source, &target, &parameters));
    if (graph == nullptr) {
        refuse();
    }
    return graph;
}

/// The planes in the order that zimg wants: R, G, B, while FFmpeg keeps G, B, R.
std::array<int, 3> planeOrder(const AVPixFmtDescriptor& format) {
    return isRgb(format) ? std::array{2, 0, 1} : std::array{0, 1, 2};
}

template <class Buffer>
Buffer bufferOf(const AVFrame& frame, const AVPixFmtDescriptor& format) {
    Buffer buffer{};
    buffer.version = ZIMG_API_VERSION;
    const auto order = planeOrder(format);
    for (std::size_t plane = 0; plane < (format.nb_components < 3 ? 1U : order.size()); ++plane) {
        buffer.plane[plane].data = frame.data[order[plane]];
        buffer.plane[plane].stride = frame.linesize[order[plane]];
        buffer.plane[plane].mask = ZIMG_BUFFER_MAX;
    }
    return buffer;
}

void run(const zimg_filter_graph& graph, const zimg_image_buffer_const& source,
         const zimg_image_buffer& target) {
    std::size_t scratchSize = 0;
    zimg_filter_graph_get_tmp_size(&graph, &scratchSize);
    const std::unique_ptr<void, AlignedDeleter> scratch(av_malloc(std::max<std::size_t>(scratchSize, 1)));
    if (scratch == nullptr) {
        throw std::bad_alloc();
    }
    if (zimg_filter_graph_process(&graph, &source, &target, scratch.get(), nullptr, nullptr, nullptr,
                                  nullptr) != ZIMG_ERROR_SUCCESS) {
        refuse();
    }
}

/// `planes` holds the picture of `shownWidth` by `shownHeight` pixels at its upper left.
Frame scaleToRgb(const AVFrame& planes, const ColorDescription& color, int shownWidth, int shownHeight,
                 int width, int height) {
    const AVPixFmtDescriptor& format = descriptorOf(planes);
    Frame result = allocateFrame(AV_PIX_FMT_GBRP, width, height);
    zimg_image_format source = describe(planes, format, color);
    source.active_region.width = shownWidth;
    source.active_region.height = shownHeight;
    const AVPixFmtDescriptor& resultFormat = descriptorOf(*result);
    const zimg_image_format target = describe(*result, resultFormat, colorOfRgb(color));
    const Graph graph = buildGraph(source, target);
    run(*graph, bufferOf<zimg_image_buffer_const>(planes, format),
        bufferOf<zimg_image_buffer>(*result, resultFormat));
    return result;
}

} // namespace

bool isPlanar(const AVPixFmtDescriptor& format) {
    constexpr std::uint64_t excluded = AV_PIX_FMT_FLAG_PAL | AV_PIX_FMT_FLAG_BITSTREAM |
                                       AV_PIX_FMT_FLAG_HWACCEL | AV_PIX_FMT_FLAG_BAYER |
                                       AV_PIX_FMT_FLAG_FLOAT;
    if ((format.flags & excluded) != 0 || format.nb_components == 2) {
        return false;
    }
    const bool bigEndian = (format.flags & AV_PIX_FMT_FLAG_BE) != 0;
    const int depth = format.comp[0].depth;
    const int bytes = depth > 8 ? 2 : 1;
    if (depth < 8 || depth > 16 || (bytes == 2 && bigEndian != (std::endian::native == std::endian::big))) {
        return false;
    }
    unsigned planesSeen = 0;
    for (int index = 0; index < std::min<int>(format.nb_components, 3); ++index) {
        const AVComponentDescriptor& component = format.comp[index];
        const unsigned plane = 1U << component.plane;
        if (component.step != bytes || component.shift != 0 || component.offset != 0 ||
            component.depth != depth || (planesSeen & plane) != 0) {
            return false;
        }
        planesSeen |= plane;
    }
    return true;
}

Frame convertToRgb(const AVFrame& frame, const ColorDescription& color, int width, int height) {
    const AVPixFmtDescriptor& format = descriptorOf(frame);
    if (!isPlanar(format)) {
        return scaleToRgb(*unpacked(frame, color), colorOfRgb(color), frame.width, frame.height, width,
                          height);
    }
    if (!fitsDirectly(frame, format)) {
        return scaleToRgb(*padded(frame, format), color, frame.width, frame.height, width, height);
    }
    return scaleToRgb(frame, color, frame.width, frame.height, width, height);
}

} // namespace zelvra::media
