// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/ZelvraCore/media/still/TestPictures.h"

#include "ZelvraCore/media/still/StillPicture.h"
#include "tests/support/MovieReading.h"
#include "tests/support/Process.h"

#include <cmath>
#include <cstring>

namespace zelvra::test {

namespace {

using namespace media;

DecodedPicture::Plane texturedPlane(int width, int height, int bitDepth, double phase) {
    const std::size_t bytes = bitDepth > 8 ? 2 : 1;
    // Rows with padding, as decoders have.
    DecodedPicture::Plane plane{width, height, static_cast<std::size_t>(width) * bytes + 16, {}};
    plane.bytes.resize(plane.stride * static_cast<std::size_t>(height));
    std::uint32_t noise = 1;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            noise = noise * 1664525u + 1013904223u;
            const double grain = static_cast<double>(noise >> 24) / 64 - 2;
            const double value = 120 + 60 * std::sin(x * 0.11 + phase) * std::cos(y * 0.07 - phase) + grain;
            const auto code = static_cast<std::uint16_t>(std::lround(value * (1 << (bitDepth - 8))));
            std::memcpy(plane.bytes.data() + static_cast<std::size_t>(y) * plane.stride +
                            static_cast<std::size_t>(x) * bytes,
                        &code, bytes);
        }
    }
    return plane;
}

} // namespace

DecodedPicture texturedPicture(int width, int height, ChromaFormat chroma, int bitDepth) {
    const ChromaSubsampling shared = subsamplingOf(chroma);
    DecodedPicture picture;
    picture.width = width;
    picture.height = height;
    picture.chroma = chroma;
    picture.bitDepth = bitDepth;
    picture.color = {1, 1, 1, false, 1};
    picture.planes[0] = texturedPlane(width, height, bitDepth, 0);
    for (std::size_t i = 1; i < 3 && chroma != ChromaFormat::monochrome; ++i) {
        picture.planes.at(i) =
            texturedPlane((width + shared.across - 1) / shared.across,
                          (height + shared.down - 1) / shared.down, bitDepth, static_cast<double>(i));
    }
    return picture;
}

Image imageOf(const DecodedPicture& picture) {
    const int width = picture.width * picture.pixelAspect.horizontal / picture.pixelAspect.vertical;
    Image::Raster raster{width, picture.height, {}};
    raster.rgba.assign(static_cast<std::size_t>(width) * static_cast<std::size_t>(picture.height) * 4, 255);
    return {std::make_shared<Image::Raster>(std::move(raster)), picture.color,
            std::make_shared<DecodedPicture>(picture)};
}

HighlightShape box(Color color) {
    return {Uuid{}, HighlightShapeKind::rectangle, {.3, .3}, {.7, .7}, color, .15};
}

DecodedClip decodeClip(const std::filesystem::path& movie) {
    const nlohmann::json stream = probe(movie, {"-show_streams"}).at("streams").at(0);
    DecodedClip clip;
    clip.pixelFormat = stream.at("pix_fmt");
    const std::string bytes = runChecked({"ffmpeg", "-v", "error", "-xerror", "-i", movie, "-vsync",
                                          "passthrough", "-f", "rawvideo", "-pix_fmt", clip.pixelFormat, "-"})
                                  .output;
    const std::size_t count = std::stoul(stream.at("nb_frames").get<std::string>());
    const std::size_t size = bytes.size() / count;
    for (std::size_t i = 0; i < count; ++i) {
        clip.frames.emplace_back(bytes.begin() + static_cast<std::ptrdiff_t>(i * size),
                                 bytes.begin() + static_cast<std::ptrdiff_t>((i + 1) * size));
    }
    return clip;
}

std::string pixelFormatName(const DecodedPicture& picture) {
    // It outputs monochrome H.264 with chroma planes of 128.
    const std::array<const char*, 4> names{"420p", "420p", "422p", "444p"};
    return std::string(picture.color.fullRange ? "yuvj" : "yuv") +
           names.at(static_cast<std::size_t>(picture.chroma)) +
           (picture.bitDepth > 8 ? std::to_string(picture.bitDepth) + "le" : "");
}

int sampleIn(const std::vector<std::uint8_t>& frame, const DecodedPicture& form, int plane, int x, int y) {
    const std::size_t bytes = form.bitDepth > 8 ? 2 : 1;
    std::size_t offset = 0;
    for (int i = 0; i < plane; ++i) {
        const DecodedPicture::Plane& before = form.planes.at(static_cast<std::size_t>(i));
        offset += static_cast<std::size_t>(before.width) * static_cast<std::size_t>(before.height) * bytes;
    }
    const DecodedPicture::Plane& wanted = form.planes.at(static_cast<std::size_t>(plane));
    offset +=
        (static_cast<std::size_t>(y) * static_cast<std::size_t>(wanted.width) + static_cast<std::size_t>(x)) *
        bytes;
    std::uint16_t code = 0;
    std::memcpy(&code, frame.data() + offset, bytes);
    return code;
}

} // namespace zelvra::test
