// SPDX-License-Identifier: GPL-3.0-or-later

#include "tools/sample-clip/Canvas.h"

#include <numbers>

namespace zelvra::sample {

using std::numbers::pi;

void drawLimb(cairo_t* cr, double ax, double ay, double aRadius, double bx, double by, double bRadius,
              Colour colour) {
    const double along = std::atan2(by - ay, bx - ax);
    cairo_new_path(cr);
    cairo_arc(cr, ax, ay, aRadius, along + pi / 2, along - pi / 2);
    cairo_arc(cr, bx, by, bRadius, along - pi / 2, along + pi / 2);
    cairo_close_path(cr);

    // Across the limb, from its upper side to its lower one.
    double nx = -std::sin(along);
    double ny = std::cos(along);
    if (ny < 0 || (std::abs(ny) < 0.2 && nx < 0)) {
        nx = -nx;
        ny = -ny;
    }
    const double radius = std::max(aRadius, bRadius);
    const double mx = (ax + bx) / 2;
    const double my = (ay + by) / 2;
    const Pattern light(
        cairo_pattern_create_linear(mx - nx * radius, my - ny * radius, mx + nx * radius, my + ny * radius));
    const auto stop = [&](double at, double factor) {
        const Colour tone = shaded(colour, factor);
        cairo_pattern_add_color_stop_rgba(light.get(), at, tone.red, tone.green, tone.blue, tone.alpha);
    };
    stop(0, 1.0);
    stop(0.3, 1.12);
    stop(0.62, 0.88);
    stop(1, 0.58);
    cairo_set_source(cr, light.get());
    cairo_fill(cr);
}

void drawShadow(cairo_t* cr, double x, double y, double radiusX, double radiusY, double darkness) {
    const Pattern soft(cairo_pattern_create_radial(0, 0, 0, 0, 0, 1));
    cairo_pattern_add_color_stop_rgba(soft.get(), 0, 0.08, 0.04, 0.02, darkness);
    cairo_pattern_add_color_stop_rgba(soft.get(), 0.45, 0.08, 0.04, 0.02, darkness * 0.75);
    cairo_pattern_add_color_stop_rgba(soft.get(), 1, 0.08, 0.04, 0.02, 0);
    cairo_save(cr);
    cairo_translate(cr, x, y);
    cairo_scale(cr, radiusX, radiusY);
    cairo_set_source(cr, soft.get());
    cairo_arc(cr, 0, 0, 1, 0, 2 * pi);
    cairo_fill(cr);
    cairo_restore(cr);
}

double drawText(cairo_t* cr, const std::string& text, double x, double y, double size, Colour colour,
                Align align) {
    cairo_select_font_face(cr, "Inter", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_BOLD);
    cairo_set_font_size(cr, size);
    cairo_text_extents_t extents{};
    cairo_text_extents(cr, text.c_str(), &extents);
    const double shift = align == Align::left ? 0 : align == Align::centre ? 0.5 : 1;
    cairo_move_to(cr, x - extents.x_advance * shift, y);
    setColour(cr, colour);
    cairo_show_text(cr, text.c_str());
    cairo_new_path(cr);
    return extents.x_advance;
}

void roundedRectangle(cairo_t* cr, double x, double y, double width, double height, double radius) {
    cairo_new_sub_path(cr);
    cairo_arc(cr, x + width - radius, y + radius, radius, -pi / 2, 0);
    cairo_arc(cr, x + width - radius, y + height - radius, radius, 0, pi / 2);
    cairo_arc(cr, x + radius, y + height - radius, radius, pi / 2, pi);
    cairo_arc(cr, x + radius, y + radius, radius, pi, 3 * pi / 2);
    cairo_close_path(cr);
}

} // namespace zelvra::sample
