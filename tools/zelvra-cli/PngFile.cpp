// SPDX-License-Identifier: GPL-3.0-or-later

#include "tools/zelvra-cli/PngFile.h"

#include "ZelvraCore/files/AtomicFile.h"
#include "ZelvraCore/records/MediaError.h"

#include <cairo.h>
#include <cstdint>
#include <memory>
#include <vector>

namespace zelvra::cli {
namespace {

struct SurfaceClose {
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
};
using Surface = std::unique_ptr<cairo_surface_t, SurfaceClose>;

/// Cairo keeps a pixel as one number, 0x00RRGGBB.
Surface opaqueSurface(const Image::Raster& raster) {
    Surface surface(cairo_image_surface_create(CAIRO_FORMAT_RGB24, raster.width, raster.height));
    cairo_surface_flush(surface.get());
    unsigned char* rows = cairo_image_surface_get_data(surface.get());
    const std::ptrdiff_t stride = cairo_image_surface_get_stride(surface.get());
    const std::uint8_t* rgba = raster.rgba.data();
    for (int y = 0; rows != nullptr && y < raster.height; ++y) {
        auto* row = reinterpret_cast<std::uint32_t*>(rows + y * stride);
        for (int x = 0; x < raster.width; ++x, rgba += 4) {
            row[x] = static_cast<std::uint32_t>(rgba[0]) << 16 | static_cast<std::uint32_t>(rgba[1]) << 8 |
                     rgba[2];
        }
    }
    cairo_surface_mark_dirty(surface.get());
    return surface;
}

using Bytes = std::vector<std::uint8_t>;

cairo_status_t append(void* bytes, const unsigned char* data, unsigned length) {
    try {
        auto& content = *static_cast<Bytes*>(bytes);
        content.insert(content.end(), data, data + length);
        return CAIRO_STATUS_SUCCESS;
    } catch (const std::bad_alloc&) {
        return CAIRO_STATUS_NO_MEMORY; // an exception must not pass through the library, which is C
    }
}

} // namespace

void writePng(const Image& image, const std::filesystem::path& file) {
    Bytes content;
    const cairo_status_t status =
        cairo_surface_write_to_png_stream(opaqueSurface(image.raster()).get(), append, &content);
    if (status != CAIRO_STATUS_SUCCESS) {
        throw MediaError::cannotWrite(file.string(), cairo_status_to_string(status));
    }
    files::AtomicFile output(file);
    output.write(0, content);
    output.commit();
}

} // namespace zelvra::cli
