// SPDX-License-Identifier: GPL-3.0-or-later

#include "tools/zelvra-cli/PngFile.h"

#include "ZelvraCore/records/MediaError.h"

#include <cairo.h>
#include <cstdint>
#include <memory>
#include <system_error>
#include <unistd.h>

namespace zelvra::cli {
namespace {

struct SurfaceClose {
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
};
using Surface = std::unique_ptr<cairo_surface_t, SurfaceClose>;

/// Cairo stores a pixel as one number, 0x00RRGGBB.
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

} // namespace

void writePng(const Image& image, const std::filesystem::path& file) {
    const Surface surface = opaqueSurface(image.raster());
    const std::filesystem::path sibling = file.parent_path() / (".zv_frame_" + std::to_string(::getpid()));
    const cairo_status_t status = cairo_surface_write_to_png(surface.get(), sibling.c_str());
    std::error_code error;
    if (status == CAIRO_STATUS_SUCCESS) {
        std::filesystem::rename(sibling, file, error);
    }
    if (status != CAIRO_STATUS_SUCCESS || error) {
        std::error_code ignored; // the first failure is the one that is reported
        std::filesystem::remove(sibling, ignored);
        throw MediaError(MediaError::Cause::unwritable,
                         "cannot write " + file.string() + ": " +
                             (error ? error.message() : cairo_status_to_string(status)));
    }
}

} // namespace zelvra::cli
