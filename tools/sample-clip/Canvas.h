// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "tools/sample-clip/Space.h"

#include <cairo.h>
#include <memory>
#include <string>

namespace zelvra::sample {

struct Colour {
    double red = 0, green = 0, blue = 0, alpha = 1;
};

inline Colour shaded(Colour colour, double factor) {
    return {std::min(1.0, colour.red * factor), std::min(1.0, colour.green * factor),
            std::min(1.0, colour.blue * factor), colour.alpha};
}

struct CairoClose {
    void operator()(cairo_t* context) const { cairo_destroy(context); }
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
    void operator()(cairo_pattern_t* pattern) const { cairo_pattern_destroy(pattern); }
};
using Surface = std::unique_ptr<cairo_surface_t, CairoClose>;
using Context = std::unique_ptr<cairo_t, CairoClose>;
using Pattern = std::unique_ptr<cairo_pattern_t, CairoClose>;

inline void setColour(cairo_t* cr, Colour colour) {
    cairo_set_source_rgba(cr, colour.red, colour.green, colour.blue, colour.alpha);
}

/// Draws a limb from (ax, ay) to (bx, by), `aRadius` and `bRadius` thick at its ends, lit from above.
void drawLimb(cairo_t* cr, double ax, double ay, double aRadius, double bx, double by, double bRadius,
              Colour colour);

/// Draws a soft dark ellipse.
void drawShadow(cairo_t* cr, double x, double y, double radiusX, double radiusY, double darkness);

enum class Align { left, centre, right };
/// Draws text in the clip's bold face with its base line at y. Returns its width.
double drawText(cairo_t* cr, const std::string& text, double x, double y, double size, Colour colour,
                Align align = Align::left);

void roundedRectangle(cairo_t* cr, double x, double y, double width, double height, double radius);

} // namespace zelvra::sample
