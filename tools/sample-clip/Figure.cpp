// SPDX-License-Identifier: GPL-3.0-or-later

#include "tools/sample-clip/Figure.h"

#include <array>
#include <numbers>
#include <vector>

namespace zelvra::sample {
namespace {

using std::numbers::pi;

constexpr Vec up{0, 0, 1};

struct Skeleton {
    struct Side {
        Vec hip, knee, ankle, toe, shoulder, elbow, hand;
    };
    std::array<Side, 2> sides; ///< the player's left and right
    Vec pelvis, neck, head, facing;
};

/// The joint between two bones that reach from `root` to `target`, bent towards `bend`.
Vec joint(Vec root, Vec& target, double upper, double lower, Vec bend) {
    const Vec line = target - root;
    const double reach = std::clamp(length(line), 0.05, (upper + lower) * 0.999);
    const Vec direction = unit(line);
    target = root + direction * reach;
    const double along = (upper * upper - lower * lower + reach * reach) / (2 * reach);
    const double aside = std::sqrt(std::max(0.0, upper * upper - along * along));
    return root + direction * along + unit(bend - direction * dot(bend, direction), up) * aside;
}

/// A foot's place in its cycle relative to the body: on the floor it moves back, in the air forward.
struct Step {
    double forward = 0, lift = 0;
};
Step stepAt(double cycle, double reach, double lift) {
    constexpr double onFloor = 0.45;
    const double phase = cycle - std::floor(cycle);
    if (phase < onFloor) {
        return {mix(reach, -reach, phase / onFloor), 0};
    }
    const double swing = (phase - onFloor) / (1 - onFloor);
    const double eased = swing * swing * (3 - 2 * swing);
    return {mix(-reach, reach, eased), lift * std::sin(pi * swing) * (1.25 - 0.5 * swing)};
}

class Poser {
public:
    Poser(const PlayerState& state, double size, Vec ball)
        : state_(state),
          size_(size),
          ball_(ball),
          speed_(length(state.velocity)),
          facing_(state.facing),
          right_{state.facing.y, -state.facing.x, 0},
          course_(speed_ > 0.2 ? unit(state.velocity) : state.facing) {}

    Skeleton pose() {
        placeBody();
        for (int side = 0; side < 2; ++side) {
            placeLeg(side);
            placeArm(side);
        }
        return skeleton_;
    }

private:
    void placeBody() {
        const double running = smoothStep(0.5, 4, speed_);
        const double bob = 0.035 * running * std::cos(4 * pi * state_.stride);
        const double hipHeight = (1.0 - 0.26 * state_.crouch - 0.05 * running + bob) * size_;
        const double lean = 0.05 + 0.045 * std::min(speed_, 6.0) + 0.42 * state_.crouch;
        skeleton_.facing = facing_;
        skeleton_.pelvis = state_.place + up * hipHeight - facing_ * (0.12 * state_.crouch);
        const Vec leanTo = unit(mix(facing_, course_, running));
        const Vec spine = unit(up + leanTo * (lean * 0.8));
        skeleton_.neck = skeleton_.pelvis + spine * (0.56 * size_);
        skeleton_.head = skeleton_.neck + unit(up + leanTo * (lean * 0.35)) * (0.20 * size_);
    }

    void placeLeg(int side) {
        const double hand = side == 0 ? -1 : 1;
        Skeleton::Side& part = skeleton_.sides.at(static_cast<std::size_t>(side));
        part.hip = skeleton_.pelvis + right_ * (0.11 * hand * size_);
        const double moving = smoothStep(0.15, 1.2, speed_);
        const double stride = 0.8 + 0.36 * speed_;
        const Step step = stepAt(state_.stride + (side == 0 ? 0 : 0.5), 0.45 * stride / 2 * moving,
                                 moving * mix(0.10, 0.42, smoothStep(1, 6, speed_)));
        const double wide = mix(0.13 + 0.17 * state_.crouch, 0.09, smoothStep(1.5, 5, speed_));
        const double inAir = std::min(1.0, state_.place.z * 4);
        Vec foot = state_.place + right_ * (wide * hand) + course_ * (step.forward * (1 - inAir)) +
                   up * (step.lift * (1 - inAir) + 0.08);
        foot = foot - facing_ * (0.22 * inAir * (side == 0 ? 1 : 0.3)) + up * (0.16 * inAir * (side == 0));
        part.ankle = foot;
        part.knee = joint(part.hip, part.ankle, 0.49 * size_, 0.48 * size_,
                          facing_ + right_ * (0.25 * hand * (0.4 + state_.crouch)));
        const double tiptoe = std::min(1.0, step.lift * 3 + inAir);
        part.toe = part.ankle + unit(facing_ + up * (-0.15 - 0.8 * tiptoe)) * 0.2 - up * 0.03;
    }

    Vec swingingHand(Vec shoulder, int side) const {
        const double hand = side == 0 ? -1 : 1;
        const double swing = std::sin(2 * pi * (state_.stride + (side == 0 ? 0.5 : 0) + 0.02));
        const double wide = smoothStep(0.8, 4.5, speed_);
        const Vec hanging = shoulder - up * 0.5 + facing_ * 0.14 + right_ * (0.10 * hand);
        const Vec running = shoulder - up * (0.30 - 0.12 * swing) + facing_ * (0.18 + 0.30 * swing) +
                            right_ * (0.06 * hand - 0.07 * hand * std::max(0.0, swing));
        return mix(hanging, running, wide);
    }

    Vec handTarget(Vec shoulder, int side) const {
        const double hand = side == 0 ? -1 : 1;
        const Vec free = swingingHand(shoulder, side);
        switch (state_.act) {
        case Act::moving: return free;
        case Act::guarding: {
            const double wave = 0.12 * std::sin(2 * pi * (state_.stride * 0.7 + 0.5 * side));
            return shoulder + right_ * (0.42 * hand) + facing_ * 0.30 +
                   up * ((side == 0 ? 0.16 : -0.16) + wave);
        }
        case Act::dribbling: {
            const bool nearHand = dot(ball_ - state_.place, right_) * hand > 0;
            if (!nearHand && ball_.z < 1.1) {
                return shoulder - up * 0.22 + facing_ * 0.28 + right_ * (0.16 * hand);
            }
            Vec palm = ball_ + up * 0.13;
            palm.z = std::max(palm.z, state_.place.z + 0.78);
            return palm;
        }
        case Act::holding: return ball_ + right_ * (0.12 * hand) - facing_ * 0.03;
        case Act::shooting: {
            const Vec atBall = ball_ + right_ * (0.11 * hand) - up * 0.05 - facing_ * 0.04;
            const Vec followed = shoulder + up * 0.58 + facing_ * 0.28 + right_ * (-0.04 * hand);
            const double released =
                length(ball_ - state_.place) > 3.0 ? 1 : smoothStep(0.5, 0.62, state_.actShare);
            return mix(mix(atBall, followed, released), free, smoothStep(0.85, 1, state_.actShare));
        }
        case Act::contesting: {
            const Vec high = shoulder + up * 0.62 + facing_ * 0.2 + right_ * (0.08 * hand);
            const Vec other = shoulder + up * 0.05 + facing_ * 0.25 + right_ * (0.35 * hand);
            return mix(free, side == 1 ? high : other, bump(-0.25, 1.25, state_.actShare));
        }
        case Act::celebrating: {
            const Vec high = shoulder + up * 0.56 + right_ * (0.2 * hand);
            return mix(free, high, bump(-0.1, 1.1, state_.actShare));
        }
        }
        return free;
    }

    void placeArm(int side) {
        const double hand = side == 0 ? -1 : 1;
        Skeleton::Side& part = skeleton_.sides.at(static_cast<std::size_t>(side));
        const double twist = 0.09 * smoothStep(1, 5, speed_) * std::sin(2 * pi * state_.stride) * hand;
        part.shoulder = skeleton_.neck + right_ * (0.20 * hand * size_) - up * 0.05 + facing_ * twist;
        part.hand = handTarget(part.shoulder, side);
        part.elbow = joint(part.shoulder, part.hand, 0.31 * size_, 0.33 * size_,
                           right_ * (0.7 * hand) - facing_ * 0.7 - up * 0.6);
    }

    const PlayerState& state_;
    double size_;
    Vec ball_;
    double speed_;
    Vec facing_, right_, course_;
    Skeleton skeleton_;
};

/// A part of the body, queued so that parts are drawn in order of depth.
struct Part {
    double depth;
    Vec a, b;
    double aRadius, bRadius; ///< metres
    Colour colour;
};

std::vector<Part> limbs(const Skeleton& body, const Looks& looks) {
    const Colour socks{0.93, 0.93, 0.93};
    std::vector<Part> parts;
    const auto add = [&](Vec a, Vec b, double aRadius, double bRadius, Colour colour, double nearer = 0) {
        parts.push_back({length(mix(a, b, 0.5) - Camera::place) - nearer, a, b, aRadius, bRadius, colour});
    };
    for (const Skeleton::Side& side : body.sides) {
        add(side.knee, side.ankle, 0.062, 0.042, looks.skin);
        add(mix(side.knee, side.ankle, 0.58), side.ankle, 0.053, 0.046, socks, 0.01);
        add(side.ankle - (side.toe - side.ankle) * 0.25, side.toe, 0.052, 0.044, looks.shoes, 0.02);
        add(side.hip, side.knee, 0.085, 0.064, looks.skin);
        add(side.hip + up * 0.03, mix(side.hip, side.knee, 0.68), 0.118, 0.116, shaded(looks.jersey, 0.94),
            0.02);
        add(side.shoulder, side.elbow, 0.052, 0.042, looks.skin);
        add(side.elbow, side.hand, 0.042, 0.032, looks.skin, 0.01);
        add(side.hand, side.hand + unit(side.hand - side.elbow) * 0.07, 0.042, 0.034, looks.skin, 0.02);
    }
    return parts;
}

void fillPart(cairo_t* cr, const Camera& camera, const Part& part) {
    const Projected a = camera.project(part.a);
    const Projected b = camera.project(part.b);
    drawLimb(cr, a.x, a.y, part.aRadius * a.scale, b.x, b.y, part.bRadius * b.scale, part.colour);
}

/// Draws the trunk from hips to shoulders, with the number on the visible side.
void drawTrunk(cairo_t* cr, const Camera& camera, const Skeleton& body, const Looks& looks) {
    const Vec across = body.sides[1].shoulder - body.sides[0].shoulder;
    const Vec spine = body.neck - body.pelvis;
    const Vec depthwise = unit(cross(across, spine)) * 0.10;
    const auto at = [&](double x, double y, double z) {
        return camera.project(body.pelvis + across * x + spine * y + depthwise * z);
    };
    const double scale = at(0, 0.5, 0).scale;
    // Outline of a rounded box: both faces' corners, filled together with a round stroke.
    std::vector<Projected> corners;
    for (const double z : {-1.0, 1.0}) {
        corners.insert(corners.end(),
                       {at(-0.30, -0.12, z), at(0.30, -0.12, z), at(0.42, 0.55, z), at(0.36, 0.92, z * 0.6),
                        at(0.14, 1.0, z * 0.4), at(-0.14, 1.0, z * 0.4), at(-0.36, 0.92, z * 0.6),
                        at(-0.42, 0.55, z)});
    }
    const Projected top = at(0, 1, 0);
    const Projected bottom = at(0, -0.1, 0);
    const Pattern light(
        cairo_pattern_create_linear(top.x - 0.1 * scale, top.y, bottom.x + 0.1 * scale, bottom.y));
    for (const auto& [where, factor] : {std::pair{0.0, 1.08}, {0.45, 1.0}, {1.0, 0.74}}) {
        const Colour tone = shaded(looks.jersey, factor);
        cairo_pattern_add_color_stop_rgb(light.get(), where, tone.red, tone.green, tone.blue);
    }
    cairo_set_source(cr, light.get());
    cairo_set_line_join(cr, CAIRO_LINE_JOIN_ROUND);
    cairo_set_line_width(cr, 0.06 * scale);
    const std::size_t half = corners.size() / 2;
    for (std::size_t face = 0; face < 2; ++face) {
        for (std::size_t i = 0; i < half; ++i) {
            const Projected& corner = corners[face * half + i];
            i == 0 ? cairo_move_to(cr, corner.x, corner.y) : cairo_line_to(cr, corner.x, corner.y);
        }
        cairo_close_path(cr);
        cairo_fill_preserve(cr);
        cairo_stroke(cr);
    }
    for (std::size_t i = 0; i < half; ++i) {
        const std::size_t next = (i + 1) % half;
        for (const std::size_t k : {i, next, half + next, half + i}) {
            cairo_line_to(cr, corners[k].x, corners[k].y);
        }
        cairo_close_path(cr);
        cairo_fill_preserve(cr);
        cairo_stroke(cr);
    }
    // Arm holes in the trim's colour.
    for (const double side : {-1.0, 1.0}) {
        const Projected from = at(0.40 * side, 0.62, 0);
        const Projected to = at(0.34 * side, 0.95, 0);
        cairo_move_to(cr, from.x, from.y);
        cairo_line_to(cr, to.x, to.y);
        cairo_set_line_cap(cr, CAIRO_LINE_CAP_ROUND);
        cairo_set_line_width(cr, 0.035 * scale);
        setColour(cr, looks.trim);
        cairo_stroke(cr);
    }
    // Draws the number on the side towards the camera.
    const bool front = dot(body.facing, Camera::place - body.neck) > 0;
    const double z = front == (dot(depthwise, body.facing) > 0) ? 1.25 : -1.25;
    const double toRight = front ? -1 : 1; // the player's right is on the left seen from the front
    const Projected origin = at(0, 0.52, z);
    const Projected right = at(0.5 * toRight, 0.52, z);
    const Projected above = at(0, 0.92, z);
    cairo_save(cr);
    const cairo_matrix_t onCloth{(right.x - origin.x) * 2,
                                 (right.y - origin.y) * 2,
                                 (origin.x - above.x) * 2.5,
                                 (origin.y - above.y) * 2.5,
                                 origin.x,
                                 origin.y};
    cairo_matrix_t now;
    cairo_get_matrix(cr, &now);
    cairo_matrix_multiply(&now, &onCloth, &now);
    if (std::abs(onCloth.xx * onCloth.yy - onCloth.xy * onCloth.yx) > 50) {
        cairo_set_matrix(cr, &now);
        drawText(cr, std::to_string(looks.number), 0, 0.18, 0.56, looks.trim, Align::centre);
    }
    cairo_restore(cr);
}

void drawHead(cairo_t* cr, const Camera& camera, const Skeleton& body, const Looks& looks) {
    const Projected neck = camera.project(body.neck - up * 0.04);
    const Projected head = camera.project(body.head + body.facing * 0.02);
    drawLimb(cr, neck.x, neck.y, 0.062 * neck.scale, mix(neck.x, head.x, 0.6), mix(neck.y, head.y, 0.6),
             0.055 * neck.scale, shaded(looks.skin, 0.85));
    const double radius = 0.112 * head.scale;
    const Projected nose = camera.project(body.head + body.facing * 0.13 - up * 0.03);
    const Pattern light(cairo_pattern_create_radial(head.x - radius * 0.3, head.y - radius * 0.5,
                                                    radius * 0.1, head.x, head.y, radius * 1.25));
    const Colour bright = shaded(looks.skin, 1.15);
    const Colour dim = shaded(looks.skin, 0.62);
    cairo_pattern_add_color_stop_rgb(light.get(), 0, bright.red, bright.green, bright.blue);
    cairo_pattern_add_color_stop_rgb(light.get(), 1, dim.red, dim.green, dim.blue);
    const auto skull = [&] {
        cairo_save(cr);
        cairo_translate(cr, head.x, head.y);
        cairo_scale(cr, radius * 0.88, radius * 1.12);
        cairo_arc(cr, 0, 0, 1, 0, 2 * pi);
        cairo_restore(cr);
    };
    skull();
    cairo_set_source(cr, light.get());
    cairo_fill(cr);
    // Hair covers everything but the face: a cap shifted away from the direction of view.
    cairo_save(cr);
    skull();
    cairo_clip(cr);
    const Projected crown = camera.project(body.head - body.facing * 0.075 + up * 0.075);
    cairo_arc(cr, crown.x, crown.y, radius * 1.0, 0, 2 * pi);
    setColour(cr, looks.hair);
    cairo_fill(cr);
    cairo_restore(cr);
    // A hint of a face, if it is visible.
    if (dot(body.facing, Camera::place - body.head) > 0) {
        cairo_arc(cr, nose.x, nose.y, radius * 0.16, 0, 2 * pi);
        setColour(cr, shaded(looks.skin, 0.78));
        cairo_fill(cr);
    }
}

} // namespace

Looks looksOf(int player) {
    constexpr std::array<int, playerCount> numbers{4, 11, 23, 32, 15, 7, 10, 21, 34, 45};
    constexpr std::array<double, playerCount> heights{0.95, 0.98, 1.0, 1.05, 1.07,
                                                      0.96, 0.98, 1.0, 1.04, 1.07};
    constexpr std::array<Colour, 5> skins{
        {{0.80, 0.58, 0.44}, {0.48, 0.31, 0.22}, {0.90, 0.70, 0.56}, {0.38, 0.24, 0.17}, {0.66, 0.45, 0.32}}};
    constexpr std::array<Colour, 4> hairs{
        {{0.10, 0.07, 0.05}, {0.28, 0.17, 0.09}, {0.06, 0.05, 0.05}, {0.55, 0.38, 0.18}}};
    const auto i = static_cast<std::size_t>(player);
    Looks looks;
    looks.number = numbers.at(i);
    looks.height = heights.at(i);
    looks.skin = skins.at((i * 3 + (i > 4 ? 1 : 0)) % skins.size());
    looks.hair = looks.skin.red < 0.6 ? hairs[2] : hairs.at(i % hairs.size());
    if (player < 5) {
        looks.jersey = {0.95, 0.95, 0.96};
        looks.trim = {0.07, 0.16, 0.36};
        looks.shoes = {0.10, 0.14, 0.26};
    } else {
        looks.jersey = {0.74, 0.08, 0.11};
        looks.trim = {0.98, 0.96, 0.93};
        looks.shoes = {0.92, 0.92, 0.92};
    }
    return looks;
}

void drawPlayer(cairo_t* cr, const Camera& camera, const PlayerState& state, const Looks& looks, Vec ball) {
    const Skeleton body = Poser(state, looks.height, ball).pose();
    std::vector<Part> parts = limbs(body, looks);
    const double trunkDepth = length(mix(body.pelvis, body.neck, 0.5) - Camera::place);
    std::sort(parts.begin(), parts.end(), [](const Part& a, const Part& b) { return a.depth > b.depth; });
    bool trunkDrawn = false;
    for (const Part& part : parts) {
        if (!trunkDrawn && part.depth < trunkDepth) {
            drawTrunk(cr, camera, body, looks);
            trunkDrawn = true;
        }
        fillPart(cr, camera, part);
    }
    if (!trunkDrawn) {
        drawTrunk(cr, camera, body, looks);
    }
    drawHead(cr, camera, body, looks);
}

void drawPlayerOnFloor(cairo_t* cr, const Camera& camera, const PlayerState& state, const Looks& looks,
                       Vec ball) {
    const Skeleton body = Poser(state, looks.height, ball).pose();
    for (Part part : limbs(body, looks)) {
        part.a.z = -part.a.z;
        part.b.z = -part.b.z;
        part.colour.alpha = 0.13;
        fillPart(cr, camera, part);
    }
    Part trunk{0, body.pelvis, body.neck - up * 0.1, 0.17, 0.2, looks.jersey};
    trunk.a.z = -trunk.a.z;
    trunk.b.z = -trunk.b.z;
    trunk.colour.alpha = 0.15;
    fillPart(cr, camera, trunk);

    const Projected ground = camera.project({state.place.x, state.place.y, 0});
    const double flat = 0.40; // foreshortening of the floor seen from the camera
    const double fade = 1 / (1 + 1.4 * state.place.z);
    drawShadow(cr, ground.x, ground.y, 0.62 * ground.scale, 0.62 * flat * ground.scale, 0.34 * fade);
    for (const Skeleton::Side& side : body.sides) {
        const Projected foot =
            camera.project({mix(side.ankle.x, side.toe.x, 0.5), mix(side.ankle.y, side.toe.y, 0.5), 0});
        const double contact = std::clamp(1.2 - side.ankle.z * 3.5, 0.0, 1.0);
        drawShadow(cr, foot.x, foot.y, 0.19 * foot.scale, 0.19 * flat * foot.scale, 0.6 * contact);
    }
}

void drawBallShadow(cairo_t* cr, const Camera& camera, const BallState& ball) {
    const Projected ground = camera.project({ball.place.x, ball.place.y, 0});
    const double size = (0.15 + 0.03 * ball.place.z) * ground.scale;
    drawShadow(cr, ground.x, ground.y, size, size * 0.42, 0.55 / (1 + 0.6 * ball.place.z));
}

void drawBall(cairo_t* cr, const Camera& camera, const BallState& ball) {
    const Projected at = camera.project(ball.place);
    const double radius = ballRadius * at.scale;
    cairo_save(cr);
    cairo_translate(cr, at.x, at.y);
    const Pattern light(
        cairo_pattern_create_radial(-radius * 0.35, -radius * 0.45, radius * 0.1, 0, 0, radius));
    cairo_pattern_add_color_stop_rgb(light.get(), 0, 1.0, 0.66, 0.33);
    cairo_pattern_add_color_stop_rgb(light.get(), 0.55, 0.90, 0.44, 0.13);
    cairo_pattern_add_color_stop_rgb(light.get(), 1, 0.45, 0.18, 0.05);
    cairo_arc(cr, 0, 0, radius, 0, 2 * pi);
    cairo_set_source(cr, light.get());
    cairo_fill_preserve(cr);
    cairo_clip(cr);
    cairo_rotate(cr, ball.spin);
    setColour(cr, {0.15, 0.06, 0.03, 0.85});
    cairo_set_line_width(cr, std::max(1.0, radius * 0.10));
    cairo_move_to(cr, -radius, 0);
    cairo_line_to(cr, radius, 0);
    cairo_move_to(cr, 0, -radius);
    cairo_line_to(cr, 0, radius);
    cairo_stroke(cr);
    for (const double side : {-1.0, 1.0}) {
        cairo_arc(cr, side * radius * 1.25, 0, radius * 0.85, 0, 2 * pi);
        cairo_stroke(cr);
    }
    cairo_restore(cr);
}

} // namespace zelvra::sample
