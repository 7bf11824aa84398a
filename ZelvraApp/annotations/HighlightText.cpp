// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/annotations/HighlightText.h"

#include "ZelvraApp/annotations/TimeText.h"

#include <charconv>
#include <cmath>
#include <set>

namespace zelvra {
namespace {

constexpr double defaultRadius = 0.06; ///< fraction of the picture's height

std::string quoted(std::string_view text) {
    return "\"" + std::string(text) + "\"";
}

double parseNumber(std::string_view text) {
    double number = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || stop != end || !std::isfinite(number)) {
        throw BadRequest("not a number: " + quoted(text));
    }
    return number;
}

Point parsePoint(std::string_view text) {
    const std::size_t colon = text.find(':');
    if (colon == std::string_view::npos) {
        throw BadRequest("not a point X:Y: " + quoted(text));
    }
    return {parseNumber(text.substr(0, colon)), parseNumber(text.substr(colon + 1))};
}

void setPart(HighlightRequest& request, std::string_view name, std::string_view value) {
    if (name == "at") {
        request.at = parseTime(value);
    } else if (name == "duration") {
        request.duration = parseTime(value);
    } else if (name == "kind") {
        request.kind = parseKind(value);
    } else if (name == "p1") {
        request.p1 = parsePoint(value);
    } else if (name == "p2") {
        request.p2 = parsePoint(value);
    } else if (name == "color") {
        request.color = parseColor(value);
    } else if (name == "stroke") {
        request.strokeWidthRatio = parseNumber(value);
    } else {
        throw BadRequest("unknown part of a highlight: " + quoted(name));
    }
}

/// The two points of the figure, from the given ones and defaults.
std::pair<Point, Point> ends(const HighlightRequest& request) {
    if (request.kind == HighlightShapeKind::circle) {
        const Point centre = request.p1.value_or(Point{0.5, 0.5});
        // The second point is above or below the centre, so the radius is a fraction of the height at any
        // width.
        return {centre, request.p2.value_or(Point{centre.x, centre.y + defaultRadius})};
    }
    if (request.p1.has_value() != request.p2.has_value()) {
        throw BadRequest(std::string(rawValue(request.kind)) + " needs both p1 and p2, or neither");
    }
    const bool arrow = request.kind == HighlightShapeKind::arrow;
    return {request.p1.value_or(arrow ? Point{0.3, 0.5} : Point{0.35, 0.35}),
            request.p2.value_or(arrow ? Point{0.7, 0.5} : Point{0.65, 0.65})};
}

} // namespace

Highlight makeHighlight(const HighlightRequest& request) {
    if (!request.at) {
        throw BadRequest("a highlight needs its time: at=T");
    }
    if (request.duration <= CMTime::zero()) {
        throw BadRequest("a highlight's duration must be above zero");
    }
    if (!(request.strokeWidthRatio >= 0)) {
        throw BadRequest("a highlight's stroke must not be below zero");
    }
    const auto [p1, p2] = ends(request);
    return {.id = request.id ? *request.id : Uuid::random(),
            .timestamp = *request.at,
            .duration = request.duration,
            .shape = {.id = request.shapeId ? *request.shapeId : Uuid::random(),
                      .kind = request.kind,
                      .p1 = p1,
                      .p2 = p2,
                      .strokeColor = request.color,
                      .strokeWidthRatio = request.strokeWidthRatio}};
}

Highlight parseHighlight(std::string_view text) {
    HighlightRequest request;
    std::set<std::string_view> seen;
    for (std::size_t begin = 0; begin <= text.size();) {
        const std::size_t end = std::min(text.find(',', begin), text.size());
        const std::string_view part = text.substr(begin, end - begin);
        const std::size_t equals = part.find('=');
        if (equals == std::string_view::npos) {
            throw BadRequest("not NAME=VALUE: " + quoted(part));
        }
        const std::string_view name = part.substr(0, equals);
        if (!seen.insert(name).second) {
            throw BadRequest("said twice: " + quoted(name));
        }
        setPart(request, name, part.substr(equals + 1));
        begin = end + 1;
    }
    return makeHighlight(request);
}

Color parseColor(std::string_view text) {
    unsigned value = 0;
    const char* end = text.data() + text.size();
    if (text.size() != 7 || text[0] != '#' ||
        text.find_first_not_of("0123456789abcdefABCDEF", 1) != std::string_view::npos ||
        std::from_chars(text.data() + 1, end, value, 16).ptr != end) {
        throw BadRequest("not a color #RRGGBB: " + quoted(text));
    }
    return {(value >> 16 & 255) / 255.0, (value >> 8 & 255) / 255.0, (value & 255) / 255.0, 1};
}

HighlightShapeKind parseKind(std::string_view text) {
    const std::optional<HighlightShapeKind> kind = highlightShapeKind(text);
    if (!kind) {
        throw BadRequest("not a kind (circle, arrow, rectangle): " + quoted(text));
    }
    return *kind;
}

} // namespace zelvra
