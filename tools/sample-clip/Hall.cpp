// SPDX-License-Identifier: GPL-3.0-or-later

#include "tools/sample-clip/Hall.h"

#include "tools/sample-clip/Game.h"

#include <numbers>
#include <optional>
#include <thread>

namespace zelvra::sample {
namespace {

using std::numbers::pi;

constexpr Colour white{0.97, 0.97, 0.95};
constexpr Colour navy{0.055, 0.115, 0.26};
constexpr Colour crimson{0.62, 0.07, 0.10};

constexpr double apronEnd = 3.2; ///< metres from the end lines to the boards
constexpr double apronFar = 2.2; ///< metres from the far side line to the boards
constexpr double apronNear = 4.0;
constexpr double boardHeight = 0.92;
constexpr double boardY = courtWidth + apronFar;
constexpr double boardLeft = -apronEnd;
constexpr double boardRight = courtLength + apronEnd;
constexpr int pixelsPerMetre = 130;

/// A painted picture that is sampled by position.
class Texture {
public:
    Texture(double width, double height)
        : width_(static_cast<int>(width * pixelsPerMetre)),
          height_(static_cast<int>(height * pixelsPerMetre)),
          surface_(cairo_image_surface_create(CAIRO_FORMAT_RGB24, width_, height_)),
          context_(cairo_create(surface_.get())) {
        cairo_scale(context_.get(), pixelsPerMetre, pixelsPerMetre);
    }

    cairo_t* context() const { return context_.get(); }

    Colour at(double x, double y) const {
        const int px = std::clamp(static_cast<int>(x * pixelsPerMetre), 0, width_ - 1);
        const int py = std::clamp(static_cast<int>(y * pixelsPerMetre), 0, height_ - 1);
        const unsigned char* row = cairo_image_surface_get_data(surface_.get()) +
                                   std::ptrdiff_t{py} * cairo_image_surface_get_stride(surface_.get());
        const auto* pixel = row + std::ptrdiff_t{px} * 4;
        return {pixel[2] / 255.0, pixel[1] / 255.0, pixel[0] / 255.0};
    }

private:
    int width_;
    int height_;
    Surface surface_;
    Context context_;
};

void fillRectangle(cairo_t* cr, double x, double y, double width, double height, Colour colour) {
    cairo_rectangle(cr, x, y, width, height);
    setColour(cr, colour);
    cairo_fill(cr);
}

/// Maple planks along the court, each board of its own tone.
void paintPlanks(cairo_t* cr) {
    constexpr double plank = 0.075;
    setColour(cr, {0.62, 0.45, 0.28}); // colour of the joints
    cairo_paint(cr);
    const int rows = static_cast<int>((boardY + apronNear) / plank) + 1;
    for (int row = 0; row < rows; ++row) {
        const double y = row * plank - apronNear;
        int board = 0;
        for (double x = boardLeft - 2 * chance(row); x < boardRight; ++board) {
            const double size = 0.9 + 1.5 * chance(row, board);
            const double tone = 0.94 + 0.11 * chance(row, board, 1);
            const double warmth = 0.98 + 0.05 * chance(row, board, 2);
            fillRectangle(cr, x, y, size - 0.004, plank - 0.003,
                          {0.800 * tone * warmth, 0.610 * tone, 0.400 * tone / warmth});
            x += size;
        }
    }
}

void paintMarkings(cairo_t* cr) {
    // Around the court the floor is painted.
    cairo_set_fill_rule(cr, CAIRO_FILL_RULE_EVEN_ODD);
    cairo_rectangle(cr, boardLeft, -apronNear, boardRight - boardLeft, apronNear + boardY);
    cairo_rectangle(cr, -0.0, -0.0, courtLength, courtWidth);
    setColour(cr, {navy.red, navy.green, navy.blue, 0.93});
    cairo_fill(cr);

    for (const bool right : {false, true}) {
        cairo_save(cr);
        if (right) {
            cairo_translate(cr, courtLength, 0);
            cairo_scale(cr, -1, 1);
        }
        fillRectangle(cr, 0, courtWidth / 2 - 2.45, 5.8, 4.9,
                      {crimson.red, crimson.green, crimson.blue, 0.86});
        cairo_set_line_width(cr, 0.05);
        setColour(cr, white);
        cairo_rectangle(cr, 0.025, courtWidth / 2 - 2.45, 5.775, 4.9);
        cairo_stroke(cr);
        cairo_arc(cr, 5.8, courtWidth / 2, 1.8, -pi / 2, pi / 2);
        cairo_stroke(cr);
        // Three-point line: straight along the sides, then round the basket.
        const double reach = courtWidth / 2 - 0.9;
        const double meets = leftHoop.x + std::sqrt(6.75 * 6.75 - reach * reach);
        cairo_move_to(cr, 0, courtWidth - 0.9);
        cairo_line_to(cr, meets, courtWidth - 0.9);
        cairo_arc_negative(cr, leftHoop.x, courtWidth / 2, 6.75, std::asin(reach / 6.75),
                           -std::asin(reach / 6.75));
        cairo_line_to(cr, 0, 0.9);
        cairo_stroke(cr);
        cairo_arc(cr, leftHoop.x, courtWidth / 2, 1.25, -pi / 2, pi / 2);
        cairo_stroke(cr);
        for (const double mark : {1.75, 2.6, 3.45, 4.3}) {
            for (const double side : {-1.0, 1.0}) {
                fillRectangle(cr, mark, courtWidth / 2 + side * 2.5 - 0.06, 0.06, 0.12, white);
            }
        }
        cairo_restore(cr);
    }
    cairo_set_line_width(cr, 0.05);
    setColour(cr, white);
    cairo_rectangle(cr, 0, 0, courtLength, courtWidth);
    cairo_stroke(cr);
    cairo_move_to(cr, courtLength / 2, 0);
    cairo_line_to(cr, courtLength / 2, courtWidth);
    cairo_stroke(cr);
    cairo_arc(cr, courtLength / 2, courtWidth / 2, 1.8, 0, 2 * pi);
    setColour(cr, {navy.red, navy.green, navy.blue, 0.92});
    cairo_fill_preserve(cr);
    setColour(cr, white);
    cairo_stroke(cr);

    // Letters are upright for the camera: y grows away from it.
    const auto write = [&](const char* text, double x, double y, double size, Colour colour) {
        cairo_save(cr);
        cairo_translate(cr, x, y);
        cairo_scale(cr, 1, -1);
        drawText(cr, text, 0, 0, size, colour, Align::centre);
        cairo_restore(cr);
    };
    write("H", courtLength / 2, courtWidth / 2 - 0.95, 2.6, white);
    write("HARBOUR  HALL", 7, -1.55, 1.15, {1, 1, 1, 0.85});
    write("HARBOUR  HALL", 21, -1.55, 1.15, {1, 1, 1, 0.85});
}

Texture paintFloor() {
    Texture floor(boardRight - boardLeft, boardY + apronNear);
    cairo_translate(floor.context(), -boardLeft, apronNear);
    paintPlanks(floor.context());
    paintMarkings(floor.context());
    return floor;
}

/// Back-lit advertising of invented companies. y runs down from the upper edge.
Texture paintBoards() {
    struct Board {
        const char* text;
        Colour ground, ink;
    };
    const std::array<Board, 6> boards{{{"CITY FINALS", {0.04, 0.10, 0.30}, {1, 1, 1}},
                                       {"KESTREL TEA", {0.93, 0.93, 0.90}, {0.10, 0.35, 0.22}},
                                       {"MORROW BIKES", {0.86, 0.36, 0.05}, {1, 1, 1}},
                                       {"HARBOUR RADIO 97.2", {0.03, 0.03, 0.05}, {0.98, 0.80, 0.20}},
                                       {"NORDLYS GLASS", {0.05, 0.32, 0.42}, {0.90, 1, 1}},
                                       {"BREAD & SON", {0.55, 0.05, 0.09}, {1, 0.95, 0.85}}}};
    const double span = boardRight - boardLeft;
    Texture texture(span, boardHeight);
    const double width = span / 8;
    for (int i = 0; i < 8; ++i) {
        const Board& board = boards.at(static_cast<std::size_t>(i) % boards.size());
        fillRectangle(texture.context(), i * width, 0, width - 0.03, boardHeight, board.ground);
        double size = 0.52;
        cairo_set_font_size(texture.context(), size);
        drawText(texture.context(), board.text, (i + 0.5) * width, 0.65,
                 std::string(board.text).size() > 14 ? 0.38 : size, board.ink, Align::centre);
    }
    fillRectangle(texture.context(), 0, 0, span, 0.05, {0.75, 0.77, 0.8});
    return texture;
}

/// Light that the mirrored roof lamps add where the ray from the camera meets the floor.
double varnishGlow(Vec ray) {
    constexpr double roof = 13;
    const Vec floor = Camera::place + ray * (-Camera::place.z / ray.z);
    if (ray.z >= 0 || floor.y > boardY || floor.x < boardLeft || floor.x > boardRight) {
        return 0;
    }
    const Vec there = floor + Vec{ray.x, ray.y, -ray.z} * (roof / -ray.z);
    double glow = 0;
    for (const double x : {2.0, 8.0, 14.0, 20.0, 26.0}) {
        for (const double y : {14.0, 24.0, 34.0}) {
            const double dx = (there.x - x) / 1.5;
            const double dy = (there.y - y) / 3.2;
            const double squared = dx * dx + dy * dy;
            glow += squared < 9 ? std::exp(-squared) : 0;
        }
    }
    return 0.19 * glow;
}

/// Light from above falls off towards the walls.
double floodLight(Vec floor) {
    const double dx = (floor.x - courtLength / 2) / 25;
    const double dy = (floor.y - courtWidth / 2) / 17;
    return 1.08 * std::exp(-(dx * dx + dy * dy) * 0.8);
}

struct Painting {
    Texture floor = paintFloor();
    Texture boards = paintBoards();

    Colour boardAt(double along, double z) const { return boards.at(along - boardLeft, boardHeight - z); }

    /// What a ray from the camera hits before the stands; `nullopt` if it passes above everything.
    std::optional<Colour> seenAlong(Vec ray) const {
        double nearest = 1e9;
        if (ray.z < 0) {
            nearest = -Camera::place.z / ray.z;
        }
        const double toFar = ray.y > 0 ? (boardY - Camera::place.y) / ray.y : 1e9;
        const double endX = ray.x > 0 ? boardRight : boardLeft;
        const double toEnd = std::abs(ray.x) > 1e-9 ? (endX - Camera::place.x) / ray.x : 1e9;
        if (nearest <= std::min(toFar, toEnd)) {
            return floorAt(Camera::place + ray * nearest, ray);
        }
        const Vec point = Camera::place + ray * std::min(toFar, toEnd);
        if (point.z > boardHeight) {
            return std::nullopt;
        }
        return toFar < toEnd ? shaded(boardAt(point.x, point.z), 1.02)
                             : shaded(boardAt(point.y + 6, point.z), 0.9);
    }

private:
    Colour floorAt(Vec point, Vec ray) const {
        Colour colour = shaded(floor.at(point.x - boardLeft, point.y + apronNear), floodLight(point));
        const Vec upwards = unit(Vec{ray.x, ray.y, -ray.z});
        const Vec mirrored = point + upwards * ((boardY - point.y) / upwards.y);
        if (mirrored.z < boardHeight) {
            const Colour board = boardAt(mirrored.x, mirrored.z);
            const double share = 0.30 * std::pow(1 - upwards.z, 3) + 0.04;
            colour = {mix(colour.red, board.red, share), mix(colour.green, board.green, share),
                      mix(colour.blue, board.blue, share)};
        }
        return colour;
    }
};

std::uint32_t packed(double red, double green, double blue) {
    const auto level = [](double value) {
        return static_cast<std::uint32_t>(std::clamp(value * 255 + 0.5, 0.0, 255.0));
    };
    return 0xFF000000U | level(red) << 16 | level(green) << 8 | level(blue);
}

void path(cairo_t* cr, const Camera& camera, std::initializer_list<Vec> corners) {
    for (const Vec corner : corners) {
        const Projected at = camera.project(corner);
        cairo_line_to(cr, at.x, at.y);
    }
    cairo_close_path(cr);
}

Colour clothing(int seed) {
    constexpr std::array<Colour, 9> wardrobe{{{0.90, 0.90, 0.92},
                                              {0.07, 0.15, 0.36},
                                              {0.55, 0.08, 0.10},
                                              {0.20, 0.21, 0.24},
                                              {0.34, 0.42, 0.52},
                                              {0.62, 0.54, 0.42},
                                              {0.12, 0.30, 0.30},
                                              {0.86, 0.86, 0.90},
                                              {0.09, 0.18, 0.42}}};
    return wardrobe.at(static_cast<std::size_t>(chance(seed, 11) * wardrobe.size()));
}

Colour complexion(int seed) {
    return shaded({0.86, 0.64, 0.50}, 0.45 + 0.6 * chance(seed, 12));
}

/// Draws a spectator who sits (or stands, if excited) at `seat`.
void drawSpectator(cairo_t* cr, const Camera& camera, Vec seat, int seed, int moment, bool excited,
                   double light) {
    const double sway = 2 * pi * (moment / 4.0 + chance(seed, 3));
    const bool lively = chance(seed, 4) < 0.4;
    const bool stands = excited && chance(seed, 5) < 0.75;
    const double rise = (stands ? 0.34 : 0) + (lively ? 0.022 : 0.006) * std::sin(sway) * (excited ? 2.4 : 1);
    const Vec shift{(lively ? 0.03 : 0.008) * std::cos(sway), 0, rise};
    const Projected belly = camera.project(seat + shift + Vec{0, 0, 0.30});
    const Projected head = camera.project(seat + shift + Vec{0, 0, 0.86});
    const double unitSize = head.scale;
    const Colour cloth = shaded(clothing(seed), light);
    const Colour skin = shaded(complexion(seed), light);
    const double shoulderY = head.y + 0.27 * unitSize;
    for (const double side : {-1.0, 1.0}) {
        drawLimb(cr, head.x + side * 0.13 * unitSize, shoulderY, 0.085 * unitSize,
                 belly.x + side * 0.14 * unitSize, belly.y, 0.11 * unitSize, shaded(cloth, 0.9));
    }
    drawLimb(cr, head.x, shoulderY, 0.115 * unitSize, belly.x, belly.y, 0.15 * unitSize, cloth);
    if (stands && lively) {
        for (const double side : {-1.0, 1.0}) {
            drawLimb(cr, head.x + side * 0.19 * unitSize, shoulderY, 0.055 * unitSize,
                     head.x + side * (0.26 + 0.05 * std::sin(sway)) * unitSize, shoulderY - 0.55 * unitSize,
                     0.045 * unitSize, skin);
        }
    }
    drawLimb(cr, head.x, head.y + 0.15 * unitSize, 0.05 * unitSize, head.x, head.y, 0.05 * unitSize,
             shaded(skin, 0.8));
    drawLimb(cr, head.x, head.y + 0.035 * unitSize, 0.085 * unitSize, head.x, head.y - 0.03 * unitSize,
             0.10 * unitSize, skin);
    const bool longHair = chance(seed, 7) < 0.4;
    const Colour hair = shaded({0.20, 0.13, 0.09}, light * (0.4 + chance(seed, 6) * 2.4));
    cairo_arc(cr, head.x, head.y - 0.055 * unitSize, 0.112 * unitSize, pi * 0.95, 2.05 * pi);
    setColour(cr, hair);
    cairo_fill(cr);
    for (const double side : {-1.0, 1.0}) {
        if (longHair) {
            drawLimb(cr, head.x + side * 0.085 * unitSize, head.y - 0.05 * unitSize, 0.04 * unitSize,
                     head.x + side * 0.095 * unitSize, head.y + 0.13 * unitSize, 0.035 * unitSize, hair);
        }
    }
}

/// Blurs what is out of focus: a box of (2 radius + 1) pixels, along rows and then columns.
void soften(std::vector<std::uint32_t>& pixels, int width, int height, int radius) {
    const auto pass = [&](int lines, int count, std::ptrdiff_t lineStep, std::ptrdiff_t step) {
        std::vector<std::uint32_t> line(static_cast<std::size_t>(count));
        for (int l = 0; l < lines; ++l) {
            std::uint32_t* at = pixels.data() + l * lineStep;
            for (int i = 0; i < count; ++i) {
                std::uint32_t sums[3] = {0, 0, 0};
                for (int k = -radius; k <= radius; ++k) {
                    const std::uint32_t pixel = at[std::clamp(i + k, 0, count - 1) * step];
                    for (int channel = 0; channel < 3; ++channel) {
                        sums[channel] += pixel >> (8 * channel) & 0xFF;
                    }
                }
                const auto size = static_cast<std::uint32_t>(2 * radius + 1);
                line[static_cast<std::size_t>(i)] =
                    0xFF000000U | sums[2] / size << 16 | sums[1] / size << 8 | sums[0] / size;
            }
            for (int i = 0; i < count; ++i) {
                at[i * step] = line[static_cast<std::size_t>(i)];
            }
        }
    };
    pass(height, width, width, 1);
    pass(width, height, 1, width);
}

/// Draws the table and chairs in front of the far boards.
void drawBenches(cairo_t* cr, const Camera& camera) {
    const double y = courtWidth + 1.55;
    const auto sitting = [&](double x, int seed, Colour jersey) {
        const Vec seat{x, y, 0};
        const auto at = [&](double dx, double dy, double z) { return camera.project(seat + Vec{dx, dy, z}); };
        const auto limb = [&](Projected a, double ra, Projected b, double rb, Colour colour) {
            drawLimb(cr, a.x, a.y, ra * a.scale, b.x, b.y, rb * b.scale, colour);
        };
        const Colour skin = complexion(seed);
        limb(at(0, 0.1, 0.55), 0.19, at(0, 0.05, 0.92), 0.2, jersey);
        for (const double side : {-0.12, 0.12}) {
            limb(at(side * 1.6, -0.35, 0.48), 0.065, at(side * 1.7, -0.3, 0.08), 0.05, skin);
            limb(at(side, 0, 0.52), 0.10, at(side * 1.6, -0.35, 0.50), 0.085, shaded(jersey, 0.8));
            limb(at(side * 2, 0, 0.98), 0.055, at(side * 1.6, -0.25, 0.6), 0.04, skin);
        }
        limb(at(0, 0, 1.2), 0.09, at(0, 0, 1.26), 0.10, skin);
        const Projected hair = at(0, 0.02, 1.28);
        cairo_arc(cr, hair.x, hair.y, 0.1 * hair.scale, pi, 2 * pi);
        setColour(cr, {0.12, 0.09, 0.07});
        cairo_fill(cr);
    };
    for (int i = 0; i < 7; ++i) {
        sitting(3.6 + 0.85 * i, 900 + i, i == 6 ? Colour{0.16, 0.17, 0.20} : Colour{0.92, 0.92, 0.94});
        sitting(24.4 - 0.85 * i, 930 + i, i == 6 ? Colour{0.14, 0.14, 0.15} : Colour{0.70, 0.08, 0.11});
    }
    for (int i = 0; i < 4; ++i) {
        sitting(12.3 + 1.1 * i, 960 + i, {0.30, 0.33, 0.38});
    }
    path(cr, camera, {{11.5, y - 0.5, 0}, {16.5, y - 0.5, 0}, {16.5, y - 0.5, 0.76}, {11.5, y - 0.5, 0.76}});
    setColour(cr, {0.08, 0.14, 0.32});
    cairo_fill(cr);
    path(cr, camera,
         {{11.5, y - 0.5, 0.76}, {16.5, y - 0.5, 0.76}, {16.5, y - 0.1, 0.78}, {11.5, y - 0.1, 0.78}});
    setColour(cr, {0.75, 0.77, 0.80});
    cairo_fill(cr);
    const Projected label = camera.project({14, y - 0.5, 0.24});
    drawText(cr, "CITY FINALS", label.x, label.y, 0.4 * label.scale, {1, 1, 1, 0.9}, Align::centre);
}

} // namespace

Hall::Hall() : wide_(5000, 1700, 0, 0.34, 2300) {
    std::vector<std::thread> painters;
    painters.emplace_back([this] { paintGround(); });
    painters.emplace_back([this] {
        for (std::size_t moment = 0; moment < crowdMoments; ++moment) {
            crowd_.at(moment) = paintStands(static_cast<int>(moment), false);
            crowd_.at(moment + crowdMoments) = paintStands(static_cast<int>(moment), true);
        }
    });
    for (std::thread& painter : painters) {
        painter.join();
    }
}

void Hall::paintGround() {
    const Painting painting;
    ground_ = {wide_.width(), wide_.height(), {}};
    ground_.pixels.resize(static_cast<std::size_t>(wide_.width()) * static_cast<std::size_t>(wide_.height()));
    constexpr std::array<double, 2> within{0.25, 0.75};
    for (int y = 0; y < wide_.height(); ++y) {
        for (int x = 0; x < wide_.width(); ++x) {
            Colour sum{0, 0, 0};
            int met = 0;
            for (const double dy : within) {
                for (const double dx : within) {
                    if (const auto colour = painting.seenAlong(unit(wide_.ray(x + dx, y + dy)))) {
                        sum = {sum.red + colour->red, sum.green + colour->green, sum.blue + colour->blue};
                        ++met;
                    }
                }
            }
            std::uint32_t& pixel =
                ground_.pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(wide_.width()) +
                               static_cast<std::size_t>(x)];
            const double glow = met >= 2 ? varnishGlow(unit(wide_.ray(x + 0.5, y + 0.5))) : 0;
            pixel = met >= 2 ? packed(sum.red / met + glow, sum.green / met + glow * 0.98,
                                      sum.blue / met + glow * 0.92)
                             : 0;
        }
    }
    const Surface surface(cairo_image_surface_create_for_data(
        reinterpret_cast<unsigned char*>(ground_.pixels.data()), CAIRO_FORMAT_ARGB32, wide_.width(),
        wide_.height(), wide_.width() * 4));
    const Context context(cairo_create(surface.get()));
    drawBenches(context.get(), wide_);
    cairo_surface_flush(surface.get());
}

Hall::Layer Hall::paintStands(int moment, bool excited) const {
    // The stands end at the upper edge of the boards, which hide everything below.
    Layer layer{wide_.width(), 900, {}};
    layer.pixels.resize(static_cast<std::size_t>(layer.width) * static_cast<std::size_t>(layer.height));
    const Surface surface(
        cairo_image_surface_create_for_data(reinterpret_cast<unsigned char*>(layer.pixels.data()),
                                            CAIRO_FORMAT_RGB24, layer.width, layer.height, layer.width * 4));
    const Context context(cairo_create(surface.get()));
    cairo_t* cr = context.get();
    setColour(cr, {0.018, 0.022, 0.035});
    cairo_paint(cr);
    constexpr int rows = 17;
    for (int row = rows - 1; row >= 0; --row) {
        const double back = 0.9 + 0.85 * row;
        const double z = 0.65 + 0.46 * row;
        const double light = 0.74 * std::pow(0.90, row) + 0.10;
        const Vec bottomLeft{boardLeft - back, boardY + back - 0.4, z - 0.46};
        const Vec bottomRight{boardRight + back, boardY + back - 0.4, z - 0.46};
        const Vec raise{0, 0, 0.46};
        path(cr, wide_, {bottomLeft, bottomRight, bottomRight + raise, bottomLeft + raise});
        setColour(cr, shaded({0.10, 0.12, 0.17}, light));
        cairo_fill(cr);
        for (const double endX : {boardLeft - back, boardRight + back}) {
            path(cr, wide_,
                 {{endX, -6, z - 0.46},
                  {endX, boardY + back, z - 0.46},
                  {endX, boardY + back, z},
                  {endX, -6, z}});
            setColour(cr, shaded({0.08, 0.10, 0.15}, light));
            cairo_fill(cr);
        }
        const int seatsAtTheEnds = static_cast<int>((boardY + back + 4.2) / 0.58);
        for (int place = 0; place < seatsAtTheEnds; ++place) {
            const double y = boardY + back - 0.8 - 0.58 * place;
            for (const double side : {-1.0, 1.0}) {
                const int seed = row * 4096 + place * 2 + (side > 0) + 100000;
                if (chance(seed, 1) < 0.9) {
                    const double x = side < 0 ? boardLeft - back : boardRight + back;
                    drawSpectator(cr, wide_, {x, y + 0.1 * chance(seed, 2), z - 0.2}, seed, moment, excited,
                                  light * 0.9);
                }
            }
        }
        const int seatsAlong = static_cast<int>((boardRight - boardLeft + 2 * back - 1.1) / 0.56);
        for (int place = 0; place < seatsAlong; ++place) {
            const double x = boardLeft - back + 0.6 + 0.56 * place;
            const int seed = row * 4096 + place;
            const bool aisle = std::fmod(x + 40, 9.0) < 0.9;
            if (!aisle && chance(seed, 1) < 0.93) {
                drawSpectator(cr, wide_, {x + 0.12 * chance(seed, 2), boardY + back, z - 0.2}, seed, moment,
                              excited, light);
            }
        }
    }
    cairo_surface_flush(surface.get());
    soften(layer.pixels, layer.width, layer.height, 1);
    soften(layer.pixels, layer.width, layer.height, 1);
    return layer;
}

namespace {

/// Mixes two pixels channel by channel, with `share` / 256 of the second.
std::uint32_t mixPixels(std::uint32_t a, std::uint32_t b, std::uint32_t share) {
    const std::uint32_t redBlue = ((a & 0xFF00FF) * (256 - share) + (b & 0xFF00FF) * share) >> 8 & 0xFF00FF;
    const std::uint32_t alphaGreen =
        ((a >> 8 & 0xFF00FF) * (256 - share) + (b >> 8 & 0xFF00FF) * share) & 0xFF00FF00;
    return redBlue | alphaGreen;
}

/// The layer's pixel at (x, y), interpolated between its neighbours.
std::uint32_t sample(const std::vector<std::uint32_t>& pixels, int width, int height, double x, double y) {
    const double cx = std::clamp(x - 0.5, 0.0, width - 1.001);
    const double cy = std::clamp(y - 0.5, 0.0, height - 1.001);
    const int ix = static_cast<int>(cx);
    const int iy = static_cast<int>(cy);
    const std::uint32_t* at =
        pixels.data() + static_cast<std::size_t>(iy) * static_cast<std::size_t>(width) + ix;
    const auto right = static_cast<std::uint32_t>((cx - ix) * 256);
    const auto down = static_cast<std::uint32_t>((cy - iy) * 256);
    const int below = iy + 1 < height ? width : 0;
    return mixPixels(mixPixels(at[0], at[1], right), mixPixels(at[below], at[below + 1], right), down);
}

} // namespace

void Hall::paint(std::uint32_t* frame, const Camera& camera, double time, double excitement) const {
    const double crowdTime = time * 4;
    const auto moment = static_cast<std::size_t>(crowdTime) % crowdMoments;
    const auto next = (moment + 1) % crowdMoments;
    const auto share = static_cast<std::uint32_t>((crowdTime - std::floor(crowdTime)) * 256);
    const auto feet = static_cast<std::uint32_t>(excitement * 256);

    const auto crowdAt = [&](double x, double y) {
        const auto layer = [&](std::size_t index) {
            const Layer& crowd = crowd_.at(index);
            return sample(crowd.pixels, crowd.width, crowd.height, x, y);
        };
        const std::uint32_t calm = feet < 256 ? mixPixels(layer(moment), layer(next), share) : 0;
        if (feet == 0) {
            return calm;
        }
        return mixPixels(calm, mixPixels(layer(moment + crowdMoments), layer(next + crowdMoments), share),
                         feet);
    };
    const Vec across = wide_.inView(camera.ray(1, 0) - camera.ray(0, 0));
    for (int y = 0; y < camera.height(); ++y) {
        Vec ray = wide_.inView(camera.ray(0.5, y + 0.5));
        const double vignetteY = std::pow((y - camera.height() * 0.55) / camera.height(), 2) * 0.55;
        for (int x = 0; x < camera.width(); ++x, ray = ray + across) {
            const double px = wide_.width() / 2.0 + ray.x / ray.z * wide_.focal();
            const double py = wide_.height() / 2.0 - ray.y / ray.z * wide_.focal();
            std::uint32_t pixel = sample(ground_.pixels, ground_.width, ground_.height, px, py);
            const std::uint32_t alpha = pixel >> 24;
            if (alpha < 255) {
                // The ground's colours are already multiplied by its alpha.
                const std::uint32_t behind = mixPixels(crowdAt(px, py), 0, alpha);
                pixel = (pixel & 0xFFFFFF) + (behind & 0xFFFFFF);
            }
            const double dx = (x - camera.width() * 0.5) / camera.width();
            const double light = 1 - vignetteY - dx * dx * 0.5;
            *frame++ = mixPixels(0xFF000000U, pixel | 0xFF000000U, static_cast<std::uint32_t>(light * 256));
        }
    }
}

void drawBasket(cairo_t* cr, const Camera& camera, bool right, double swish) {
    const Vec hoop = right ? rightHoop : leftHoop;
    const double out = right ? 1 : -1;
    const double boardX = hoop.x + out * 0.375;
    const double footX = hoop.x + out * 3.1;
    const auto beam = [&](Vec a, Vec b, double radius, Colour colour) {
        const Projected from = camera.project(a);
        const Projected to = camera.project(b);
        drawLimb(cr, from.x, from.y, radius * from.scale, to.x, to.y, radius * to.scale, colour);
    };
    const Colour steel{0.13, 0.16, 0.24};
    const Projected foot = camera.project({footX, hoop.y, 0});
    drawShadow(cr, foot.x, foot.y, 0.9 * foot.scale, 0.4 * foot.scale, 0.5);
    beam({footX, hoop.y, 0.2}, {footX - out * 0.25, hoop.y, 2.6}, 0.16, steel);
    beam({footX - out * 0.4, hoop.y, 0.16}, {footX + out * 0.9, hoop.y, 0.16}, 0.16, steel);
    beam({footX - out * 0.25, hoop.y, 2.6}, {boardX + out * 0.05, hoop.y, 3.45}, 0.08, steel);
    beam({footX - out * 0.1, hoop.y, 1.9}, {boardX + out * 0.05, hoop.y, 3.05}, 0.05, steel);

    const auto face = [&](double halfWidth, double bottom, double top) {
        path(cr, camera,
             {{boardX, hoop.y - halfWidth, bottom},
              {boardX, hoop.y + halfWidth, bottom},
              {boardX, hoop.y + halfWidth, top},
              {boardX, hoop.y - halfWidth, top}});
    };
    const double scale = camera.project({boardX, hoop.y, 3.4}).scale;
    face(0.9, 2.9, 3.95);
    setColour(cr, {0.86, 0.92, 0.97, 0.42});
    cairo_fill_preserve(cr);
    setColour(cr, {0.96, 0.97, 0.98});
    cairo_set_line_width(cr, 0.055 * scale);
    cairo_set_line_join(cr, CAIRO_LINE_JOIN_MITER);
    cairo_stroke(cr);
    face(0.295, 3.05, 3.5);
    cairo_set_line_width(cr, 0.045 * scale);
    cairo_stroke(cr);
    beam({boardX, hoop.y - 0.9, 2.9}, {boardX, hoop.y + 0.9, 2.9}, 0.035, crimson);

    constexpr int strands = 12;
    const auto ring = [&](int strand, double radius, double z) {
        const double angle = 2 * pi * strand / strands;
        return camera.project({hoop.x + radius * std::cos(angle), hoop.y + radius * std::sin(angle), z});
    };
    const double lift = 0.10 * std::sin(swish * pi * 2) * (1 - swish);
    const std::array<double, 4> radii{0.225, 0.175 + 0.05 * bump(0, 0.5, swish),
                                      0.14 + 0.07 * bump(0.1, 0.7, swish),
                                      0.12 + 0.05 * bump(0.2, 0.9, swish)};
    cairo_set_line_width(cr, std::max(1.2, 0.014 * scale));
    setColour(cr, {0.95, 0.95, 0.95, 0.9});
    for (int strand = 0; strand < strands; ++strand) {
        for (const int turn : {-1, 1}) {
            for (std::size_t level = 0; level < radii.size(); ++level) {
                const auto step = static_cast<int>(level);
                const Projected at =
                    ring(strand * 2 + turn * step, radii.at(level), hoop.z - 0.15 * step + lift * step);
                level == 0 ? cairo_move_to(cr, at.x, at.y) : cairo_line_to(cr, at.x, at.y);
            }
            cairo_stroke(cr);
        }
    }
    for (int strand = 0; strand <= 24; ++strand) {
        const double angle = 2 * pi * strand / 24;
        const Projected at =
            camera.project({hoop.x + 0.225 * std::cos(angle), hoop.y + 0.225 * std::sin(angle), hoop.z});
        strand == 0 ? cairo_move_to(cr, at.x, at.y) : cairo_line_to(cr, at.x, at.y);
    }
    cairo_set_line_width(cr, 0.035 * scale);
    setColour(cr, {0.95, 0.36, 0.08});
    cairo_stroke(cr);
}

} // namespace zelvra::sample
