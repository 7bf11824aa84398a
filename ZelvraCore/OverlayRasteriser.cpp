// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/OverlayRasteriser.h"

#include "ZelvraCore/records/ZVError.h"

#include <algorithm>
#include <cairo.h>
#include <cmath>
#include <memory>
#include <new>
#include <numbers>
#include <span>

namespace zelvra {

namespace {

/// Cairo keeps coordinates as 24.8 fixed-point numbers. Coordinates further out are moved to this distance.
constexpr double greatestCoordinate = 1 << 21;

double withinReach(double coordinate) {
    return std::clamp(coordinate, -greatestCoordinate, greatestCoordinate);
}

/// How much of each pixel one stroke covers, 0 to 255. Cairo's origin is the top left, like the raster's.
class StrokeMask {
public:
    StrokeMask(int width, int height, double lineWidth)
        : surface_(cairo_image_surface_create(CAIRO_FORMAT_A8, width, height)),
          context_(cairo_create(surface_.get())) {
        if (!isValid()) {
            throw ZVError::contextCreationFailed("overlay");
        }
        constexpr double curveTolerance = 0.02; // of a pixel
        cairo_set_tolerance(context_.get(), curveTolerance);
        cairo_set_antialias(context_.get(), CAIRO_ANTIALIAS_BEST);
        cairo_set_line_width(context_.get(), lineWidth);
        cairo_set_line_cap(context_.get(), CAIRO_LINE_CAP_ROUND);
        cairo_set_line_join(context_.get(), CAIRO_LINE_JOIN_ROUND);
    }

    /// The path of the next stroke is built in here.
    cairo_t* path() const { return context_.get(); }

    void stroke() {
        cairo_save(context_.get());
        cairo_set_operator(context_.get(), CAIRO_OPERATOR_CLEAR);
        cairo_paint(context_.get());
        cairo_restore(context_.get());
        cairo_stroke(context_.get());
        cairo_surface_flush(surface_.get());
        if (!isValid()) {
            throw ZVError::contextCreationFailed("makeImage");
        }
    }

    std::span<const std::uint8_t> row(int y) const {
        const auto stride = static_cast<std::size_t>(cairo_image_surface_get_stride(surface_.get()));
        const auto width = static_cast<std::size_t>(cairo_image_surface_get_width(surface_.get()));
        return {cairo_image_surface_get_data(surface_.get()) + static_cast<std::size_t>(y) * stride, width};
    }

private:
    struct Release {
        void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
        void operator()(cairo_t* context) const { cairo_destroy(context); }
    };

    bool isValid() const {
        return cairo_surface_status(surface_.get()) == CAIRO_STATUS_SUCCESS &&
               cairo_status(context_.get()) == CAIRO_STATUS_SUCCESS;
    }

    std::unique_ptr<cairo_surface_t, Release> surface_;
    std::unique_ptr<cairo_t, Release> context_;
};

/// The picture that is being drawn on. Pixels that no stroke reaches are never written.
class Canvas {
public:
    explicit Canvas(const Image& image)
        : raster_(std::make_shared<Image::Raster>(image.raster())),
          coverage_(image.coverage()
                        ? std::make_shared<Image::Coverage>(*image.coverage())
                        : std::make_shared<Image::Coverage>(raster_->rgba.size() / bytesPerPixel)) {}

    void blend(const StrokeMask& mask, const Color& color) {
        const auto width = static_cast<std::size_t>(raster_->width);
        for (int y = 0; y < raster_->height; ++y) {
            const std::span<const std::uint8_t> strength = mask.row(y);
            const std::size_t rowStart = static_cast<std::size_t>(y) * width;
            for (std::size_t x = 0; x < width; ++x) {
                if (strength[x] != 0) {
                    blendPixel(rowStart + x, color, color.alpha * strength[x] / 255.0);
                }
            }
        }
    }

    Image finished(const Image& original) const {
        return {raster_, original.color(), original.sharedDecoded(), coverage_};
    }

private:
    static constexpr std::size_t bytesPerPixel = 4;

    /// Source over destination, both premultiplied.
    void blendPixel(std::size_t index, const Color& color, double alpha) {
        std::uint8_t* pixel = raster_->rgba.data() + index * bytesPerPixel;
        const auto over = [alpha](double above, std::uint8_t below) {
            return static_cast<std::uint8_t>(std::lround(255.0 * alpha * above + (1.0 - alpha) * below));
        };
        pixel[0] = over(color.red, pixel[0]);
        pixel[1] = over(color.green, pixel[1]);
        pixel[2] = over(color.blue, pixel[2]);
        pixel[3] = over(1.0, pixel[3]);
        const auto drawn = static_cast<std::uint8_t>(std::ceil(255.0 * alpha));
        (*coverage_)[index] = std::max((*coverage_)[index], drawn);
    }

    std::shared_ptr<Image::Raster> raster_;
    std::shared_ptr<Image::Coverage> coverage_;
};

/// A highlight's figure in the pixels of one picture, y downwards.
struct Outline {
    Point p1;
    Point p2;
    double lineWidth;
    double headLength; ///< of an arrow
};

Outline outlineInPixels(const HighlightShape& shape, double width, double height) {
    Outline outline;
    outline.p1 = {withinReach(shape.p1.x * width), withinReach(shape.p1.y * height)};
    outline.p2 = {withinReach(shape.p2.x * width), withinReach(shape.p2.y * height)};
    outline.lineWidth = withinReach(std::fmax(shape.strokeWidthRatio * height, 1.0));
    outline.headLength = std::max(4.0 * outline.lineWidth, 0.018 * height);
    return outline;
}

void addCircle(cairo_t* path, const Outline& outline) {
    const double radius = std::hypot(outline.p2.x - outline.p1.x, outline.p2.y - outline.p1.y);
    cairo_arc(path, outline.p1.x, outline.p1.y, radius, 0, 2 * std::numbers::pi);
    cairo_close_path(path);
}

void addRectangle(cairo_t* path, const Outline& outline) {
    cairo_rectangle(path, std::min(outline.p1.x, outline.p2.x), std::min(outline.p1.y, outline.p2.y),
                    std::abs(outline.p2.x - outline.p1.x), std::abs(outline.p2.y - outline.p1.y));
}

void addArrowShaft(cairo_t* path, const Outline& outline) {
    cairo_move_to(path, outline.p1.x, outline.p1.y);
    cairo_line_to(path, outline.p2.x, outline.p2.y);
}

void addArrowHead(cairo_t* path, const Outline& outline) {
    constexpr double halfOpening = std::numbers::pi / 7;
    const double backwards =
        std::atan2(outline.p2.y - outline.p1.y, outline.p2.x - outline.p1.x) + std::numbers::pi;
    const auto headPoint = [&](double angle) -> Point {
        return {outline.p2.x + outline.headLength * std::cos(angle),
                outline.p2.y + outline.headLength * std::sin(angle)};
    };
    const Point a = headPoint(backwards - halfOpening);
    const Point b = headPoint(backwards + halfOpening);
    cairo_move_to(path, a.x, a.y);
    cairo_line_to(path, outline.p2.x, outline.p2.y);
    cairo_line_to(path, b.x, b.y);
}

/// Each stroke is composited by itself, so that a translucent arrow is denser where head and shaft meet.
std::vector<void (*)(cairo_t*, const Outline&)> strokesOf(HighlightShapeKind kind) {
    switch (kind) {
    case HighlightShapeKind::circle: return {addCircle};
    case HighlightShapeKind::rectangle: return {addRectangle};
    case HighlightShapeKind::arrow: return {addArrowShaft, addArrowHead};
    }
    return {};
}

Color clampedToUnit(const Color& color) {
    const auto unit = [](double component) { return std::fmin(std::fmax(component, 0.0), 1.0); };
    return {unit(color.red), unit(color.green), unit(color.blue), unit(color.alpha)};
}

Canvas makeCanvas(const Image& image) {
    try {
        return Canvas(image);
    } catch (const std::bad_alloc&) {
        throw ZVError::contextCreationFailed("overlay");
    }
}

bool isDrawable(const HighlightShape& shape) {
    return !std::isnan(shape.p1.x) && !std::isnan(shape.p1.y) && !std::isnan(shape.p2.x) &&
           !std::isnan(shape.p2.y);
}

} // namespace

Image drawShape(const Image& image, const HighlightShape& shape) {
    if (image.width() <= 0 || image.height() <= 0) {
        throw ZVError::contextCreationFailed("overlay");
    }
    if (!isDrawable(shape)) {
        return image;
    }
    const Outline outline = outlineInPixels(shape, image.width(), image.height());
    StrokeMask mask(image.width(), image.height(), outline.lineWidth);
    Canvas canvas = makeCanvas(image);
    for (const auto& addPath : strokesOf(shape.kind)) {
        addPath(mask.path(), outline);
        mask.stroke();
        canvas.blend(mask, clampedToUnit(shape.strokeColor));
    }
    return canvas.finished(image);
}

} // namespace zelvra
